"""Work given to a Slurm of the test's own: what comes back is what one machine makes, whatever fails on the way."""

import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

import slurm

PROGRAM = os.environ["VIREO_PROGRAM"]
FRAMES = 40

MAKE = """
import json, sys
from vireo import project as vp
folder = sys.argv[1].decode("utf-8")
project = vp.Project(vp.Clip(folder + u"/plate.####.png", clip_name=u"Plate", validate=True))
(left, top), _, (right, bottom), _ = json.load(open(folder + "/truth.json"))["frames"][0]["corners"]
middle = (left + right) / 2
for name, a, b in ((u"Door", left, middle), (u"T\\xfcr {folder}", middle, right)):  # halves of the surface that moves
    layer = project.add_layer(None, name)
    corners = ((a, top), (b, top), (b, bottom), (a, bottom))
    contour = layer.add_bezier_contour(0.0, [vp.BezierControlPointData(x=x, y=y, corner=True) for x, y in corners])
    contour.control_points[0].update_point_data(39.0, vp.BezierControlPointData(x=a - 15.0))
project.save_as(folder + u"/shot.vireo")
"""

# The keys of a layer's track.
LOOK = """
import sys
from vireo import project as vp
project = vp.Project(sys.argv[1].decode("utf-8"))
layer = project.layer(int(sys.argv[2]))
print [(p.name_components, [(at.id, t, p.get(t, at)) for at, t in p.keyframes])
       for p in layer.parameter_set(["transform"]).parameters]
"""


def contents(folder):
    """The checksum of each file below a folder."""
    found = {}
    for at, _, names in os.walk(folder):
        for name in names:
            with open(os.path.join(at, name), "rb") as file:
                found[os.path.relpath(os.path.join(at, name), folder)] = hashlib.sha1(file.read()).hexdigest()
    return found


class FarmTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = os.path.realpath(tempfile.mkdtemp())
        cls.environment = dict(os.environ, PYTHONPATH=os.path.dirname(os.path.abspath(__file__)))
        subprocess.check_call([os.environ["VIREO_MAKE_FOOTAGE"], "--size", "320x180", "--frames", str(FRAMES), cls.folder])
        subprocess.check_call([PROGRAM, "-c", MAKE, cls.folder], env=cls.environment)
        cls.project = os.path.join(cls.folder, "shot.vireo")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def vireo(self, *words, **environment):
        process = subprocess.Popen((PROGRAM,) + words, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   env=dict(self.environment, **environment))
        printed, complaints = process.communicate()
        return process.returncode, printed, complaints

    def target(self, name):
        return os.path.join(self.folder, name)

    def exported(self, name, *words):
        target = self.target(name)
        code, _, complaints = self.vireo("export", self.project, "--path", target, *words)
        self.assertEqual(code, 0, complaints)
        return contents(target)


class AnyQueue(FarmTest):
    def test_the_printed_commands_do_the_work_in_any_order(self):
        target = self.target("printed")
        code, printed, complaints = self.vireo("farm", "export", "--project", self.project, "--path", target, "--chunk",
                                               "15", "--by-layer", "--print")
        self.assertEqual((code, complaints), (0, ""))
        commands = printed.splitlines()
        self.assertEqual(len(commands), 4)
        for command in commands[-2::-1] + commands[:1] + commands[-1:]:  # one of them twice
            subprocess.check_call(command, shell=True, env=self.environment, stdout=subprocess.PIPE)
        self.assertEqual(contents(target), self.exported("alone-by-layer", "--by-layer"))

    def test_without_a_queue_nothing_is_begun(self):
        target = self.target("never")
        code, _, complaints = self.vireo("farm", "export", self.project, "--path", target, PATH=self.folder)
        self.assertEqual((code, complaints.count("\n"), os.path.exists(target)), (2, 1, False), complaints)
        self.assertIn("sbatch", complaints)


@unittest.skipIf(slurm.missing(), "left out, no Slurm: %s (tools/set-up --farm)" % slurm.missing())
class Farm(FarmTest):
    @classmethod
    def setUpClass(cls):
        FarmTest.setUpClass.__func__(cls)
        start = time.time()
        cls.slurm = slurm.Slurm(os.path.realpath(tempfile.mkdtemp()))
        try:
            cls.slurm.start()
        except Exception:
            cls.slurm.end()
            raise
        cls.environment = dict(cls.environment, SLURM_CONF=cls.slurm.environment["SLURM_CONF"])
        cls.told("Slurm is up after", start)

    @classmethod
    def tearDownClass(cls):
        cls.slurm.end()
        FarmTest.tearDownClass.__func__(cls)

    @staticmethod
    def told(what, start):
        sys.stderr.write("%s %.1f s\n" % (what, time.time() - start))

    def farm(self, kind, *words, **environment):
        start = time.time()
        answer = self.vireo("farm", kind, "--project", self.project, "--poll", "0.5", *words, **environment)
        self.told("farm %s took" % kind, start)
        return answer

    def test_what_fails_is_done_again_and_the_pixels_are_the_same(self):
        target = self.target("mattes")
        code, printed, complaints = self.farm(
            "export", "--path", target, "--chunk", "10", "--frames", "0-39",
            VIREO_FAIL="killed:1:%s;full:2:%s" % (self.folder, self.folder))
        self.assertEqual(code, 0, complaints + self.slurm.logs())
        self.assertTrue(os.path.exists(self.target("failed-1")) and os.path.exists(self.target("failed-2")))
        self.assertIn("4 tasks done", printed)
        self.assertEqual(contents(target), self.exported("alone"))  # nothing lost, nothing twice, nothing left over
        self.assertEqual(len(os.listdir(target)), FRAMES)

    def test_what_is_not_done_in_the_end_is_listed(self):
        target = self.target("partly")
        code, printed, complaints = self.farm("export", "--path", target, "--chunk", "20", "--retries", "0",
                                              VIREO_FAIL="full:1:%s:always" % self.folder)
        self.assertEqual(code, 1)
        self.assertIn("missing: frames 20-39", printed)
        self.assertIn("1 of 2 tasks are not done", complaints)
        self.assertEqual(len([name for name in os.listdir(target) if name.endswith(".png")]), 20)

    def keys(self, project, layer):
        code, printed, complaints = self.vireo("-c", LOOK, project, str(layer))
        self.assertEqual(code, 0, complaints)
        return printed

    def test_each_layer_is_tracked_as_alone(self):
        together = self.target("together.vireo")
        code, _, complaints = self.farm("track", "--frames", "0-9", "--save-as", together)
        self.assertEqual(code, 0, complaints + self.slurm.logs())
        for layer, name in enumerate(("Door", "T\xc3\xbcr {folder}")):
            alone = self.target("alone.vireo")
            self.assertEqual(self.vireo("track", self.project, "--layers", name, "--frames", "0-9", "--save-as", alone)[0], 0)
            self.assertEqual(self.keys(alone, layer), self.keys(together, layer))
            self.assertIn("9.0", self.keys(together, layer))

    def test_a_render_makes_the_same_frames_and_a_clip(self):
        alone, together = self.target("rendered.vireo"), self.target("farmed.vireo")
        words = ("insert", "--frames", "10-19", "--output-dir")
        self.assertEqual(self.vireo("render", *(words + (self.target("renders"), self.project, "--save-as", alone)))[0], 0)
        code, _, complaints = self.farm("render", *(words + (self.target("farmed"), "--chunk", "5", "--save-as", together)))
        self.assertEqual(code, 0, complaints + self.slurm.logs())
        self.assertEqual(contents(self.target("renders")), contents(self.target("farmed")))
        told = [self.vireo("info", project)[1].replace("farmed", "renders").replace("insert_1", "insert").splitlines()[-4:]
                for project in (alone, together)]
        self.assertEqual(told[0], told[1])


if __name__ == "__main__":
    unittest.main()
