"""Everything with everything, in a child process: seeded calls on objects of every class, alive and dead, that must end
without a crash. VIREO_SEED chooses other calls."""

import os
import random

from support import *

CALLS = 6000
KINDS = ["STRM_BadArgument", "STRM_OutOfRange", "STRM_BadState", "bad_alloc", "int", "PyTypeError"]


class Calls(object):
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.objects = []
        for name in sorted(CLASSES):
            self.objects += [make(name), make(name)]
        self.plain = [None, True, 0, 1, -1, 3L, 2 ** 31, 2 ** 70, 0.5, float("nan"), float("inf"), -1e300, "", "name",
                      u"\xe4", u"\U0001f600", [], [1, 2], ["a"], (), (1, 2), (1.0, 0.5, 0.0), {}, {u"a": 1}, set(),
                      vp.UpperFieldFirst, vp.LogColorspace, vp.Grayscale, vp.FloatConversion, Stranger(), object,
                      QtCore.QObject(), "a" * 10000, [None], [[]], "\x00", range(100)]

    def anything(self):
        chance = self.random.random()
        if chance < 0.45:
            return self.random.choice(self.objects)
        if chance < 0.55:
            return [self.random.choice(self.objects) for _ in range(self.random.randrange(3))]
        return self.random.choice(self.plain)

    def arguments(self):
        given = [self.anything() for _ in range(self.random.choice([0, 0, 1, 1, 1, 2, 2, 3, 4, 5, 8, 9, 12]))]
        names = ["view", "time", "index", "name", "layers", "views", "parent", "validate", "path", "color", "x", "other"]
        keywords = {self.random.choice(names): self.anything() for _ in range(self.random.choice([0, 0, 0, 1, 2]))}
        return given, keywords

    def orders(self):
        """Now and then the library fails, destroys something, or gives something else."""
        chance = self.random.random()
        name = self.random.choice(sorted(CLASSES))
        members = [m[0] for m in CLASSES[name].methods] + filter(None, sum([list(row[1:3]) for row in
                                                                            CLASSES[name].properties], []))
        function = "%s.%s" % (name, self.random.choice(members or ["isNull"]))
        if chance < 0.10:
            recording.throws(function, self.random.choice(KINDS), "at random")
        elif chance < 0.16:
            recording.throws(name + self.random.choice(["(copy)", ""]), self.random.choice(KINDS), "at random")
        elif chance < 0.20:
            recording.forget_engine()
        elif chance < 0.30:
            recording.clear()
        elif chance < 0.36:
            known = recording.make(self.random.choice(["Clip", "ProgressWatcher", "ColorParameters"]))
            recording.destroy(known, self.random.random() < 0.5)
        elif chance < 0.40:
            import shiboken
            shiboken.delete(self.random.choice([one for one in self.objects if shiboken.isValid(one)]))

    def step(self):
        self.orders()
        one = self.random.choice(self.objects)
        given, keywords = self.arguments()
        deed = self.random.randrange(7)
        if deed == 0:
            return getattr(vp, self.random.choice(sorted(CLASSES)))(*given, **keywords)
        members = [m for m in dir(type(one)) if m in ("__copy__", "__enter__", "__exit__") or not m.startswith("_")]
        member = self.random.choice(members)
        if member in ("deleteLater", "moveToThread", "killTimer", "startTimer", "setParent"):
            return None
        if deed == 1:
            return setattr(one, member, self.anything())
        if deed == 2:
            return self.random.choice([hash, repr, str, bool, len, iter, dir])(one)
        if deed == 3:
            other = self.anything()
            return self.random.choice([lambda: one == other, lambda: one != other, lambda: one < other,
                                       lambda: one >= other, lambda: one[other], lambda: {one: other}])()
        value = getattr(one, member)
        return value(*given, **keywords) if callable(value) else value

    def run(self):
        failures = {}
        for _ in range(CALLS):
            try:
                result = self.step()
            except KeyboardInterrupt:
                continue
            except Exception as error:
                failures[type(error).__name__] = failures.get(type(error).__name__, 0) + 1
                continue
            if type(result).__name__ in CLASSES and len(self.objects) < 400:
                self.objects[self.random.randrange(len(self.objects))] = result
            if self.random.random() < 0.05:
                name = self.random.choice(sorted(CLASSES))
                try:
                    self.objects.append(make(name))
                except Exception:
                    pass
        if failures.get("SystemError"):
            raise SystemExit("an error was left behind a result: %r" % failures)


class Random(ModuleTest):
    def test_nothing_crashes(self):
        seed = os.environ.get("VIREO_SEED", "1")
        status, output, errors = child("import sys, test_random_calls as t; t.Calls(int(sys.argv[1])).run(); print 'ended'",
                                       seed, PYTHONPATH=os.pathsep.join([os.path.dirname(os.path.abspath(__file__)),
                                                                         os.environ["PYTHONPATH"]]))
        self.assertEqual((status, output.splitlines()[-1:]), (0, [u"ended"]),
                         "VIREO_SEED=%s ends with %s\n%s" % (seed, status, errors[-3000:]))


if __name__ == "__main__":
    main()
