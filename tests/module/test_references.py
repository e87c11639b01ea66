"""Every operation a thousand times, on the interpreter that counts its references: the total stays what it was, and so
does the number of the library's objects."""

import gc
import sys

from support import *
from test_calls import CONSTRUCTORS, RECEIVED, RESULTS, asked
from test_conversions import FROM_PYTHON, TO_PYTHON
from test_errors import WAYS

ROUNDS = 1000
NOISE = 5


class References(ModuleTest):
    keep_engine = True

    def grows(self, work):
        """By how many references the total grows, and of which classes objects stay."""
        for _ in range(3):  # what is made once
            work()
        gc.collect()
        objects, references = self.alive(), sys.gettotalrefcount()
        for _ in range(ROUNDS):
            work()
        gc.collect()
        references = sys.gettotalrefcount() - references
        return references, sorted(set(self.alive()) ^ set(objects))

    def alive(self):
        return [(name, recording.counts(name)["alive"]) for name in sorted(CLASSES)]

    def holds(self, rows):
        def check(code, work):
            references, objects = self.grows(work)
            self.assertLessEqual(abs(references), NOISE, code)
            self.assertEqual(objects, [], code)

        recording.clear()
        self.each(rows, check)

    def compiled(self, code, *values, **told):
        """Runs the code, each time after the same orders to the library."""
        program, names = compile(code, code, "exec"), names_for(*values)

        def work():
            for order in told.get("orders", ()):
                order[0](*order[1:])
            try:
                exec(program, names)
            except Exception:
                sys.exc_clear()
            recording.clear()

        return work

    def test_calls(self):
        rows = [(code, self.compiled(code)) for code, _ in CONSTRUCTORS]
        rows += [(row[1], self.compiled(row[1], make(name))) for name in sorted(RECEIVED) for row in RECEIVED[name]]
        for name in sorted(RESULTS):
            for member in set(row[0] for row in RESULTS[name]):
                rows.append((member, self.compiled("a(b)", asked(name, member)[1], make(name))))
        for name, method, _, signature, keywords, _ in overloads():
            code = "a.%s(*b)" % method if method else "%s(*b)" % name
            rows.append((name + code, self.compiled(code, make(name), arguments(signature))))
        self.holds(rows)

    def test_failing_calls(self):
        rows = []
        for name in sorted(CLASSES):
            one = make(name)
            for row in CLASSES[name].methods:
                for given in ("()", "(Stranger())", "(*[None] * 20)", "(1, 2, 3, view=5, other=6)"):
                    code = "a.%s%s" % (row[0], given)
                    rows.append((code, self.compiled(code, one)))
            for row in CLASSES[name].properties:
                rows.append((row[0], self.compiled("a.%s = Stranger()" % row[0], one)))
            rows.append((name, self.compiled("%s(Stranger())" % name)))
            for slot in ("a == a", "a != 5", "a < a", "hash(a)", "repr(a)", "str(a)", "bool(a)", "a.__copy__()"):
                rows.append(("%s: %s" % (name, slot), self.compiled(slot, one)))
        self.holds(rows)

    def test_library_failures(self):
        self.holds([(code, self.compiled(code, make(name), orders=[(recording.throws, where, "STRM_BadArgument", "")]))
                    for name, code, where in WAYS])

    def test_results(self):
        clip = recording.make("Clip")
        orders = [(recording.returns, function, told) for function, told in [
            ("Project.get_layers", [1, 2]), ("Project.get_clips", [(u"a", clip)]),
            ("Project.get_views", [(u"a", u"b", (0, 0, 1))]), ("Project.get_default_trackable_clip", clip),
            ("Layer.getAllContours", [4, 5]), ("ParameterSet.get_subsets#1", [2, 3]),
            ("ParameterSet.get_name_components#2", [u"x"]), ("Parameter.get_keyframes", [(1, 2.5)]),
            ("Parameter.get", u"text")]]
        objects = [vp.Project(u"f"), handle("Layer", 1), handle("ParameterSet", 1), handle("Parameter", 1)]
        self.holds([(code, self.compiled(code, *objects, orders=orders)) for code in (
            "a.layers", "a.clips", "a.views", "a.default_trackable_clip", "b.contours", "b.parent", "c['x']",
            "c[['x']]", "c['y']", "c[5]", "d.keyframes", "d.get()", "a.undo_group().__enter__()")])
        recording.destroy(clip)

    def test_conversions(self):
        self.holds([((name, row[0]), self.compiled("a(b, c)", convert, name, row[0]))
                    for convert, table in [(second_extension.from_python, FROM_PYTHON),
                                           (second_extension.to_python, TO_PYTHON)]
                    for name in table for row in table[name]])

    def test_life(self):
        class Null(vp.Layer):
            def isNull(self):
                return True

        class Watcher(vp.ProgressWatcher):
            def event(self, event):
                return True

        layer, watcher = handle("Layer", 1), Watcher()
        known = number(watcher)

        def made_and_destroyed():
            one, library_number = made("Clip")
            recording.destroy(library_number)
            try:
                one.name
            except RuntimeError:
                sys.exc_clear()
            recording.clear()

        def connected():
            watcher.started.connect(list)
            watcher.started.disconnect(list)

        self.holds([("subclass", lambda: bool(Null(layer))), ("event", lambda: recording.send(known, 1000)),
                    ("library's", made_and_destroyed), ("parent", lambda: vp.Clip(u"f", parent=watcher)),
                    ("signal", connected)])


if __name__ == "__main__":
    main()
