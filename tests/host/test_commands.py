"""The commands of the shell: what they make, and that bad input is one line that names it, and changes nothing."""

import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from running import environment, run, vireo

MAKE = """
import json, sys
from vireo import project as vp
folder = sys.argv[1].decode("utf-8")
project = vp.Project(vp.Clip(folder + u"/footage/plate.####.png", clip_name=u"Plate", validate=True))
corners = json.load(open(folder + "/footage/truth.json"))["frames"][0]["corners"]
layer = project.add_layer(None, u"Poster")
layer.add_bezier_contour(0.0, [vp.BezierControlPointData(x=float(x), y=float(y), corner=True) for x, y in corners])
project.add_layer(None, u"T\\xfcr <b>")
project.save_as(folder + u"/sh\\xf6t.vireo")
"""
FRAMES = 24


def contents(folder):
    found = {}
    for at, folders, names in os.walk(folder):
        for name in names + folders:
            path = os.path.join(at, name)
            found[path] = hashlib.sha1(open(path, "rb").read()).hexdigest() if os.path.isfile(path) else None
    return found


def browser():
    for folder in os.environ["PATH"].split(os.pathsep):
        if os.access(os.path.join(folder, "chromium"), os.X_OK):
            return os.path.join(folder, "chromium")
    return None


class Commands(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.made = os.path.realpath(tempfile.mkdtemp())
        subprocess.check_call([os.environ["VIREO_MAKE_FOOTAGE"], "--size", "320x180", "--frames", str(FRAMES),
                               os.path.join(cls.made, "footage")])
        code, _, complaints = vireo("-c", MAKE, cls.made, LC_ALL="C.UTF-8")
        assert code == 0, complaints
        cls.project = os.path.join(cls.made, "sh\xc3\xb6t.vireo")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.made)

    def setUp(self):
        self.folder = os.path.realpath(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def does(self, *words):
        code, printed, complaints = vireo(*words, LC_ALL="C.UTF-8", VIREO_BIN=os.environ["VIREO_BIN"])
        self.assertEqual(code, 0, complaints)
        return printed

    def test_the_way_from_a_track_to_mattes(self):
        tracked = self.path("tracked.vireo")
        self.does("track", self.project, "--layers", "Poster", "--frames", "0-7", "--save-as", tracked)
        told = json.loads(self.does("info", tracked, "--json"))
        self.assertEqual([layer["tracked"] for layer in told["layers"]], [[0, 7], None])
        self.assertEqual(told["clips"][0]["streams"][0]["missing"], 0)
        for words, files in [
                ((), ["%04d.png" % frame for frame in range(FRAMES)]),
                (("--frames", "2-3", "--prefix", "m_", "--suffix", ".exr", "--index-width", "2"), ["m_02.exr", "m_03.exr"]),
                (("--frames", "5", "--by-layer"), ["Poster.0005.png", "T\xc3\xbcr <b>.0005.png"])]:
            target = self.path("mattes%d" % len(words))
            self.does(*(("--project", tracked, "export", "--path", target) + words))
            self.assertEqual(sorted(os.listdir(target)), files)
        self.does("render", "stabilize", tracked, "--output-dir", self.folder, "--frames", "0-1")
        self.assertIn("stabilize", self.does("info", tracked))
        self.does("sheet", tracked, "--output", self.path("sheet.png"), "--count", "2")
        self.assertGreater(os.path.getsize(self.path("sheet.png")), 1000)
        self.does("farm", "export", tracked, "--path", self.path("f"), "--print")

    def test_missing_files_are_told(self):
        moved = os.path.join(self.made, "footage", "plate.0003.png")
        os.rename(moved, moved + ".away")
        try:
            told = self.does("info", self.project)
        finally:
            os.rename(moved + ".away", moved)
        self.assertIn("missing: 1 files, the first is " + moved, told)

    def test_bad_input_is_one_line_and_changes_nothing(self):
        other_version = self.path("newer.vireo")
        with open(self.project) as old, open(other_version, "w") as new:
            new.write(re.sub(r'"version": ?\d+', '"version": 999', old.read()))
        blocked = self.path("file")
        open(blocked, "w").close()
        before = contents(self.made), contents(self.folder)
        export = ("export", "--path", self.path("out"))
        rows = [((name,) + more + ("missing.vireo",), "missing.vireo") for name, more in (
            ("info", ()), ("track", ()), ("export", export[1:]), ("render", ("insert",)), ("sheet", ()),
            ("report", ()), ("farm", ("track",)))]
        rows += [(("info", other_version), "999"), (("info", self.folder), self.folder), (("info",), "no project"),
                 (export + (self.project, "--frames", "5-2"), "5-2"), (("track", self.project, "--frames", "x"), "'x'"),
                 (("report", self.project, "--frames", "0-99"), "0-99"), (("info", blocked), blocked),
                 (export + (self.project, "--layers", "N\xc3\xb6"), "N\xc3\xb6"), (("sheet", self.project, "--count", "0"), "--count"),
                 (export + (self.project, "--views", "7"), "7"), (export + (self.project, "--suffix", ".odd"), ".odd"),
                 (("export", self.project, "--path", blocked), blocked), (("export", self.project), "--path"),
                 (("render", "melt", self.project), "melt"), (("render", "insert", self.project), "--output-dir"),
                 (("sheet", self.project, "--output", self.path("none/x.png")), self.path("none")),
                 (("report", self.project, "--output", self.folder), self.folder), (("farm", "bake"), "bake"),
                 (("farm", "export", self.project, "--path", self.path("o"), "--chunk", "0"), "--chunk"),
                 (("farm", "task", self.folder, "0"), self.folder), (("track", self.project, "--odd"), "--odd")]
        for words, named in rows:
            code, printed, complaints = vireo(*words, LC_ALL="C.UTF-8")
            self.assertEqual((code, printed, complaints.count("\n")), (2, "", 1), (words, printed, complaints))
            self.assertIn(named, complaints)
            self.assertTrue(complaints.startswith("vireo " + words[0]), complaints)
        self.assertEqual((contents(self.made), contents(self.folder)), before)

    def test_a_script_of_that_name_and_modules_of_the_folder(self):
        for name, text in (("info", "print 'mine'"), ("json.py", "1 / 0"), ("tool.py", "import sys; print sys.argv[1:]")):
            with open(self.path(name), "w") as file:
                file.write(text)
        self.assertEqual(vireo("./info", cwd=self.folder)[:2], (0, "mine\n"))
        self.assertEqual(vireo("--", "info", cwd=self.folder)[:2], (0, "mine\n"))
        self.assertEqual(vireo("-m", "tool", "a", "-c", cwd=self.folder)[:2], (0, "['a', '-c']\n"))
        code, printed, complaints = vireo("info", self.project, cwd=self.folder, LC_ALL="C.UTF-8")
        self.assertEqual(code, 0, complaints)
        self.assertIn("Poster", printed)
        for name in ("info", "track", "export", "render", "sheet", "report"):
            self.assertIn("usage: vireo " + name, vireo(name, "--help")[1])

    def test_the_report_in_a_browser(self):
        page = self.path("report.html")
        self.does("report", self.project, "--layers", "Poster", "T\xc3\xbcr <b>", "--output", page)
        with open(page) as file:
            text = file.read()
        self.assertEqual(re.findall(r'(?:src|href)=|url\((?!data:)|@import|https?://', text), [])
        self.assertNotIn("<b>", text)
        if not browser() or os.environ.get("VIREO_BROWSER") != "yes":
            self.skipTest("chromium is not installed, or it is looked at in another configuration")
        for width in (1280, 390):
            # The page writes what it measures of itself into its title, which the browser prints with the page.
            with open(page, "w") as file:
                file.write(text.replace("</body>", "<script>document.querySelector('svg.time').dispatchEvent(new PointerEvent("
                                        "'pointermove', {clientX: innerWidth / 2}))\ndocument.title = ['wide', innerWidth, document."
                                        "documentElement.scrollWidth, document.querySelector('.where').textContent,"
                                        " getComputedStyle(document.querySelector('.thumbnail')).backgroundImage.length"
                                        "].join(' ')</script></body>"))
            common = [browser(), "--headless", "--no-sandbox", "--disable-gpu", "--user-data-dir=" + self.path("profile"),
                      "--window-size=%d,900" % width]
            code, printed, complaints = run(common + ["--dump-dom", "file://" + page], HOME=self.folder)
            found = re.search(r"<title>wide (\d+) (\d+) frame (\d+) (\d+)", printed)
            self.assertTrue(found, complaints[-500:])
            shown, wide, frame, picture = map(int, found.groups())
            self.assertLessEqual(wide, shown, "the page is wider than the window at %d" % width)
            self.assertTrue(0 < frame < FRAMES - 1 and picture > 1000, found.group())
            run(common + ["--hide-scrollbars", "--screenshot=" + self.path("%d.png" % width), "file://" + page], HOME=self.folder)
            self.assertGreater(os.path.getsize(self.path("%d.png" % width)), 5000)


if __name__ == "__main__":
    unittest.main()
