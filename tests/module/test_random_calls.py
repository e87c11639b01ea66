"""Everything with everything, in a child process: seeded calls on objects of every class, alive and dead, with
arguments that fit and that do not, on a library that fails now and then. It must end without a crash. VIREO_SEED
chooses other calls."""

import os
import random

import shiboken

from support import *

CALLS = 8000
KINDS = ["STRM_BadArgument", "STRM_OutOfRange", "STRM_BadState", "bad_alloc", "int", "PyTypeError"]
NAMES = sorted(set(" ".join(KEYWORDS.values()).replace(",", "").split() + ["other"]))
APART = ("deleteLater", "moveToThread", "killTimer", "startTimer", "setParent")  # what would act after the call

PLAIN = [None, True, 0, 1, -1, 3L, 2 ** 31, 2 ** 70, 0.5, float("nan"), float("inf"), -1e300, "", "name", u"\xe4",
         u"\U0001f600", [], [1, 2], ["a"], (), (1, 2), (1.0, 0.5, 0.0), {}, {u"a": 1}, set(), vp.UpperFieldFirst,
         vp.LogColorspace, vp.Grayscale, vp.FloatConversion, Stranger(), object, QtCore.QObject(), "a" * 10000, [None],
         [[]], "\x00", range(100)]


class Calls(object):
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.objects = [make(name) for name in sorted(CLASSES) * 3]
        self.outcomes = {}

    def one(self, name=None):
        fitting = [one for one in self.objects if name in (None, type(one).__name__)]
        return self.random.choice(fitting or self.objects)

    def anything(self):
        chance = self.random.random()
        if chance < 0.45:
            return self.one()
        if chance < 0.55:
            return [self.one() for _ in range(self.random.randrange(3))]
        return self.random.choice(PLAIN)

    def fitting(self, text):
        kind = text.split(" = ")[0]
        if self.random.random() < 0.04:
            return self.anything()
        if kind == "list":
            name = self.random.choice(["Layer", "Layer", "View", "ViewInfo", "BezierControlPointData",
                                       "XControlPointData"])
            return [self.one(name) for _ in range(self.random.randrange(3))]
        if kind in FITTING and kind != "object":
            return self.random.choice(FITTING[kind])
        return self.one(kind.rsplit(".")[-1]) if kind.startswith("vireo") else self.anything()

    def arguments(self, signatures, least=0):
        if not signatures or self.random.random() < 0.15:
            given = [self.anything() for _ in range(self.random.choice([0, 1, 1, 2, 2, 3, 5, 8, 12]))]
        else:
            texts = [text for text in self.random.choice(signatures).split(", ") if text]
            given = [self.fitting(text) for text in texts[:self.random.randint(min(least, len(texts)), len(texts))]]
        count = self.random.choice([0, 0, 0, 1])
        return given, {self.random.choice(NAMES): self.anything() for _ in range(count)}

    def orders(self):
        """Now and then the library fails, gives something, or destroys something."""
        chance = self.random.random()
        name = self.random.choice(sorted(CLASSES))
        if chance < 0.05:
            rows = [row[0] for row in CLASSES[name].methods] + [row[1] for row in CLASSES[name].properties]
            where = ["%s.%s" % (name, row) for row in rows] + [name, name + "(copy)", "Knob::View.defaultViewId"]
            recording.throws(self.random.choice(where), self.random.choice(KINDS), "at random")
        elif chance < 0.06:
            recording.forget_engine()
        elif chance < 0.12:
            recording.clear()
            recording.returns("Layer.getAllContours", [1, 2, 3])
            recording.returns("Project.get_layers", [1, 2, 0])
            recording.returns("Project.get_progress_watcher", self.known("ProgressWatcher"))
            recording.returns("Project.get_clips", [(u"a", self.known("Clip"))])
            recording.returns("Project.undo_group", 3)
        elif chance < 0.14:
            one = self.one()
            if shiboken.isValid(one):
                shiboken.delete(one)
        elif chance < 0.16:
            known = recording.make(self.random.choice(["Clip", "ProgressWatcher", "ColorParameters"]))
            recording.destroy(known, self.random.random() < 0.5)

    def known(self, name):
        return recording.newest(name) or recording.make(name)

    def renew(self):
        place = self.random.randrange(len(self.objects))
        if not shiboken.isValid(self.objects[place]):
            self.objects[place] = make(self.random.choice(sorted(CLASSES)))

    def method(self, one):
        rows = CLASSES[type(one).__name__].methods
        if not rows:
            return repr(one)
        row = self.random.choice(rows)
        given, keywords = self.arguments(row[2:], least(row[1]))
        return getattr(one, row[0])(*given if row[1] != NONE else (), **keywords if row[1] not in (NONE, ONE) else {})

    def attribute(self, one):
        rows = CLASSES[type(one).__name__].properties
        if not rows:
            return str(one)
        name, _, writes, text = self.random.choice(rows)
        if not writes or self.random.random() < 0.5:
            return getattr(one, name)
        return setattr(one, name, self.fitting(text or "object"))

    def inherited(self, one):
        member = self.random.choice([m for m in dir(type(one)) if not m.startswith("_") and m not in APART])
        value = getattr(one, member)
        given, keywords = self.arguments(None)
        return value(*given, **keywords) if callable(value) else value

    def slot(self, one):
        other = self.anything()
        return self.random.choice([
            lambda: one == other, lambda: one != other, lambda: one < other, lambda: one >= other, lambda: one[other],
            lambda: {one: other}, lambda: bool(one), lambda: one.__copy__(), lambda: repr(one), lambda: len(one)])()

    def construction(self, one):
        name = self.random.choice(sorted(CLASSES))
        given, keywords = self.arguments(CLASSES[name].signatures or ["vireo.project." + name], 1)
        return getattr(vp, name)(*given, **keywords)

    def step(self):
        self.orders()
        one = self.one()
        deed = self.random.choice([self.method] * 4 + [self.attribute] * 3 + [self.inherited, self.slot,
                                                                              self.construction])
        return deed(one)

    def run(self):
        for _ in range(CALLS):
            try:
                result = self.step()
                left = recording.take_error()
                outcome = "left %s" % left.__name__ if left else "result"
            except Exception as error:
                result = None
                outcome = type(error).__name__
            self.outcomes[outcome] = self.outcomes.get(outcome, 0) + 1
            for one in result if isinstance(result, list) else [result]:
                if type(one).__name__ in CLASSES:
                    self.objects[self.random.randrange(len(self.objects))] = one
            try:
                self.renew()
            except Exception:
                pass  # the library was told to fail
        print self.outcomes


class Random(ModuleTest):
    def test_nothing_crashes(self):
        seed = os.environ.get("VIREO_SEED", "1")
        folder = os.path.dirname(os.path.abspath(__file__))
        status, output, errors = child("import sys, test_random_calls as t; t.Calls(int(sys.argv[1])).run()", seed,
                                       PYTHONPATH=os.pathsep.join([folder, os.environ["PYTHONPATH"]]))
        self.assertEqual(status, 0, "VIREO_SEED=%s ends with %s\n%s" % (seed, status, errors[-3000:]))
        outcomes = eval(output.splitlines()[-1])
        self.assertEqual([outcome for outcome in outcomes if outcome.startswith("left")], [], outcomes)
        self.assertGreater(outcomes["result"], CALLS / 2, outcomes)  # most calls get through


if __name__ == "__main__":
    main()
