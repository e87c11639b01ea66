"""The site is made without a warning, a link that leads nowhere fails it, and a type checker knows the module."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCE = os.environ["VIREO_SOURCE"]

SCRIPT = u"""from vireo import project as vp

project = vp.Project(u"shot.vireo")
layer = project.add_layer(None, name=u"Door")
project.track_layers(layers=[layer], stop_index=3, views=[0])
layer.matte_color = [1, 0, 0]
project.progress_watcher.progressChanged.connect(print)
points = [vp.BezierControlPointData(x=1.0, y=2.0, corner=True)]
layer.add_bezier_contour(0, points).control_points[0].update_point_data(1, points[0], view=vp.View(0))
project.track_layers(layer=[layer], stop=3)
layer.in_point = 4
project.trackable()
layer.link_to_track = 5
vp.Clip(u"plate.####.png").export(None, u"/out", u"a.", u".png", u"", 0)
project.render(vp.RenderInsertOperation(), 0, 9, [layer]).name.upper().frame
"""
FIRST_WRONG = 10


def has(program):
    return any(os.access(os.path.join(folder, program), os.X_OK) for folder in os.environ["PATH"].split(":"))


def run(*command, **environment):
    # The checkers run in a Python of their own, to which this one's path means nothing.
    kept = dict({name: value for name, value in os.environ.items() if name != "PYTHONPATH"}, **environment)
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=kept)
    text = process.communicate()[0].decode("utf-8")
    return process.returncode, text


class InAFolder(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w") as file:
            file.write(text.encode("utf-8"))
        return path


@unittest.skipUnless(has("sphinx-build"), "sphinx-build is not installed: the site was not made")
class Site(InAFolder):
    def make(self, source):
        made = os.path.join(self.folder, "made")
        code, text = run("sphinx-build", "-q", "-n", "-W", "--keep-going", "-c",
                         os.path.join(SOURCE, "tools", "reference"), "-d", made + "-trees", source, made)
        return code, text, made

    def test_it_is_made_and_finds_members(self):
        code, text, made = self.make(SOURCE)
        self.assertEqual((code, text), (0, ""))
        with open(os.path.join(made, "searchindex.js")) as index:
            self.assertIn("track_lay", index.read())

    def test_a_link_that_leads_nowhere_fails(self):
        for link in (u"[x](docs/nothing.md)", u"[x](#nothing)", u"![x](nothing.png)"):
            self.write("README.md", u"# Page\n\n%s\n" % link)
            self.assertNotEqual(self.make(self.folder)[0], 0, link)


@unittest.skipUnless(has("mypy"), "mypy is not installed: the stub was not tried in a type checker")
class TypeChecker(InAFolder):
    def test_it_knows_the_module_and_finds_each_wrong_line(self):
        path = self.write("script.py", SCRIPT)
        code, text = run("mypy", "--cache-dir", os.path.join(self.folder, "cache"), path,
                         MYPYPATH=os.environ["VIREO_SITE"])
        found = {int(line) for line in re.findall(r"script\.py:(\d+): error", text)}
        self.assertEqual(found, set(range(FIRST_WRONG, len(SCRIPT.splitlines()) + 1)), text)
        for wanted in ('Unexpected keyword argument "layer"', 'Unexpected keyword argument "stop"'):
            self.assertIn(wanted, text)


if __name__ == "__main__":
    unittest.main()
