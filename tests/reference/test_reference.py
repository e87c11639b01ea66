"""The reference and the live module say the same."""

import inspect
import os
import re
import unittest

import vireo
from PySide.QtCore import QObject
from vireo import project as vp

OWN = {"__copy__", "__getitem__", "__enter__", "__exit__"}  # of the special members, what the reference speaks of
CLASSES = {name: one for name, one in vars(vp).items()
           if isinstance(one, type) and one.__module__ == "vireo.project" and not hasattr(one, "values")}


def text(path):
    with open(path) as file:
        return file.read().decode("utf-8")


def live_members(one):
    inherited = set(dir(QObject)) if issubclass(one, QObject) else set(dir(object))
    bases = [base for base in one.__mro__[1:] if base in CLASSES.values()]
    return {name for name in dir(one) if (name not in inherited or name in vars(one))
            and (name in OWN or not name.startswith("__")) and not any(name in vars(base) for base in bases)}


class Stub(unittest.TestCase):
    classes = {}
    stub = text(os.path.join(os.path.dirname(vireo.__file__), "project.pyi"))
    for name, bases, body in re.findall(r"^class (\w+)(.*):\n((?:    .*\n|\n(?=    ))*)", stub, re.M):
        classes[name] = set(re.findall(r"^    (?:def )?(\w+)[(:]", body, re.M)), body

    def test_each_member_is_live_and_each_live_member_is_there(self):
        self.assertTrue(CLASSES)
        for name, one in CLASSES.items():
            members = {member for member in self.classes[name][0] if member in OWN or not member.startswith("__")}
            self.assertEqual(members, live_members(one), name)

    def test_properties_are_read_only_where_the_live_ones_are(self):
        for name, one in CLASSES.items():
            for member, live in vars(one).items():
                if isinstance(live, property):
                    stands = "@property\n    def %s(" % member in self.classes[name][1]
                    self.assertEqual(live.fset is None, stands, "%s.%s" % (name, member))

    def test_enumerations(self):
        for name in ("InterlaceMode", "Colorspace", "ColorizeOutput", "ColorConversion"):
            items = self.classes[name][0] - {"name", "values", "__init__", "__int__"}
            self.assertEqual(items, set(getattr(vp, name).values), name)
            self.assertFalse([item for item in items if not re.search("^%s: %s$" % (item, name), self.stub, re.M)])


class Docstrings(unittest.TestCase):
    def test_each_member_has_one(self):
        lacking = [name for name, one in CLASSES.items() if len(one.__doc__ or "") < 20]
        for name, one in CLASSES.items():
            lacking += ["%s.%s" % (name, member) for member in live_members(one)
                        if "Signal" not in type(getattr(one, member)).__name__ and member != "__getitem__"
                        and len((getattr(one, member).__doc__ or "").strip().splitlines()) < 3]
        self.assertEqual(lacking, [])

    def test_what_help_shows(self):
        shown = inspect.getdoc(vp.Project.track_layers)
        for wanted in ("track_layers(start_index=0, stop_index=4294967295, layers=[], views=[])",
                       "layers: Sequence[Layer]; [] (keyword)", "Returns None.", "RuntimeError names all layers"):
            self.assertIn(wanted, shown)
        self.assertIn("Frames per second", vp.Clip.frame_rate.__doc__)
        self.assertIn("progressChanged(fraction, text, /)", vp.ProgressWatcher.__doc__)
        everything = "".join(getattr(one, member).__doc__ or "" for one in CLASSES.values() for member in vars(one))
        for library_word in ("STRM_", "QVector", "nullptr", "::", "get_frame_rate"):
            self.assertNotIn(library_word, everything)


class Pages(unittest.TestCase):
    def test_what_is_committed_is_what_is_made(self):
        made, committed = os.environ["VIREO_MADE_REFERENCE"], os.environ["VIREO_REFERENCE"]
        self.assertEqual(sorted(os.listdir(made)), sorted(os.listdir(committed)), "run tools/docs --reference")
        for name in os.listdir(made):
            self.assertEqual(text(os.path.join(made, name)), text(os.path.join(committed, name)),
                             "docs/reference/%s is not up to date: run tools/docs --reference" % name)


if __name__ == "__main__":
    unittest.main()
