"""Plays one random program, which tools/fuzz writes: every step may raise what it likes, and nothing may crash.

A program is text: one Python statement in a line, and below it, indented, the steps that its INNER runs. INNER is what a
statement passes as a slot, as a callback, as the body of an override or of a conversion. The names that steps use are
those of the module, the registers (Clip0, Clip1...; None at first), and what this file defines. The last line,
"end: ...", says how the process ends.

Programs that say "# recording library" find that in the engine's place, and tell it to fail.

    play.py SURFACE                  prints what the module offers, for the generator
    play.py FOLDER FOOTAGE [trace]   plays the program that the input holds; trace names each line before it runs
"""

import atexit
import gc
import inspect
import json
import os
import sys
import threading
import time
import weakref

REGISTERS = 3
DEEPEST = 5           # steps within steps
TIMES = 6             # how often the inner steps of one statement run
HANDLES = ("Layer", "LayerGroup", "BezierContour", "XSplineContour", "BezierControlPoint", "XControlPoint", "Parameter",
           "ParameterSet", "UndoGroup")
NULLABLE = ("Layer", "LayerGroup", "BezierContour", "XSplineContour", "Parameter", "ParameterSet")
MISSPELT = 97         # exit status of a program that does not compile
NOT_TOLD = (
    # end or stop the process, as they should; addresses of nothing
    "sleep", "msleep", "usleep", "exec_", "run", "wait", "terminate", "dump", "_binding_runtime_tables")


class Number(object):
    """A number to every conversion, each of which runs steps first."""

    def __init__(self, inner, value):
        self.inner, self.value = inner, value

    def __int__(self):
        self.inner()
        return int(self.value)

    def __float__(self):
        self.inner()
        return float(self.value)

    def __nonzero__(self):
        self.inner()
        return bool(self.value)

    __long__ = __index__ = __int__


class Items(object):
    """A sequence that runs steps whenever it is looked into."""

    def __init__(self, inner, items):
        self.inner, self.items = inner, items

    def __len__(self):
        self.inner()
        return len(self.items)

    def __getitem__(self, place):
        self.inner()
        return self.items[place]


MADE = {
    "Clip": "Clip(footage)", "Project": "Project(Clip(footage))", "ColorParameters": "ColorParameters()",
    "ProgressWatcher": "ProgressWatcher()", "Layer": "Project0.add_layer(None, u'again')",
    "LayerGroup": "Project0.add_group(u'again')", "UndoGroup": "Project0.undo_group()", "View": "View(0)",
    "BezierContour": "Layer0.add_bezier_contour(0.0, [BezierControlPointData(x=1.0, y=float(y)) for y in range(3)])",
    "XSplineContour": "Layer0.add_xspline_contour(0.0, [XControlPointData(x=1.0, y=float(y)) for y in range(3)])",
    "BezierControlPoint": "BezierContour0.control_point(0)", "XControlPoint": "XSplineContour0.control_point(0)",
    "Parameter": "Layer0.parameter_set().parameters[0]", "ParameterSet": "Layer0.parameter_set()",
    "RenderOperation": "RenderInsertOperation()", "QEvent": "QtCore.QEvent(QtCore.QEvent.User)",
    "StreamInfo": "Clip0.get_info(View(0))"}


class Registers(object):
    """The names of a program: a register that is empty, or whose object is gone, gives another object of its class.
    Every eighth time it gives what is in it."""

    def __init__(self, player):
        self.names, self.player, self.times = player.names, player, 0
        self.making = threading.local()

    def __getitem__(self, name):
        value = self.names[name]
        kind = name[:-1]
        if kind not in self.player.classes or self.lives(kind, value):
            return value
        self.times += 1
        depth = getattr(self.making, "depth", 0)
        if self.times % 8 == 0 or depth > 3:
            return value
        for place in range(REGISTERS):
            value = self.names["%s%d" % (kind, place)]
            if self.lives(kind, value):
                return value
        self.making.depth = depth + 1
        try:
            self.names[name] = eval(self.maker(kind), self.names, self)
        except Exception:
            sys.exc_clear()
        finally:
            self.making.depth = depth
        return self.names[name]

    @staticmethod
    def lives(kind, value):
        if value is None or not shiboken.isValid(value):
            return False
        try:
            return not (kind in NULLABLE and getattr(project, kind).isNull(value))
        except Exception:
            sys.exc_clear()
            return True

    def maker(self, kind):
        if recording and kind in HANDLES:
            return "handle('%s', 1)" % kind
        return MADE.get(kind, kind + "()" if kind in CLASSES else "QtCore.%s()" % kind)

    def __setitem__(self, name, value):
        self.names[name] = value

    def __delitem__(self, name):
        del self.names[name]


class Finalized(object):
    def __init__(self, inner, *held):
        self.inner, self.held = inner, held

    def __del__(self):
        self.inner()


def derived(base, inner, manner, *names):
    """A subclass whose methods of these names run steps, and then end in the given manner."""
    times = [2000]  # what recurses in more places than one would not end

    def override(name):
        def method(self, *arguments):
            inner(self)
            if manner == "raise":
                raise ValueError(name)
            times[0] -= 1
            if manner == "recurse" and times[0] > 0:
                return getattr(self, name)(*arguments)
            return getattr(super(cls, self), name)(*arguments) if manner == "call" else manner
        return method

    cls = type("Derived" + base.__name__, (base,), dict((name, override(name)) for name in names))
    cls.told = QtCore.Signal(object)
    return cls


class Player(object):
    def __init__(self, lines, trace):
        self.names = dict(vars(project), QtCore=QtCore, shiboken=shiboken, gc=gc, weakref=weakref, sys=sys, os=os,
                          app=QtCore.QCoreApplication.instance() or QtCore.QCoreApplication([]), held=[], keywords={}, threads=[], Number=Number,
                          Items=Items, Finalized=Finalized, derived=derived, keep=self.keep, thread=self.thread,
                          loop=self.loop, atexit=atexit)
        self.classes = frozenset(known_classes())
        for name in self.classes:
            self.names.update(("%s%d" % (name, place), None) for place in range(REGISTERS))
        if recording:
            self.names.update(recording=recording, handle=support.handle)
        self.registers = Registers(self)
        self.trace = trace
        self.left = 40 * len(lines) + 400   # steps, however deep
        self.depth = threading.local()
        self.end = lines.pop()[len("end: "):] if lines[-1:] and lines[-1].startswith("end: ") else "pass"
        self.steps = self.parsed(iter(enumerate(lines, 1)), 0)[0]
        self.outcomes = {}

    def parsed(self, lines, depth, pending=None):
        """The steps of one block, and the line after it."""
        steps = []
        line = pending or next(lines, None)
        while line:
            number, text = line
            indent = (len(text) - len(text.lstrip())) // 4
            if indent < depth:
                break
            line = next(lines, None)
            inner = []
            if line and (len(line[1]) - len(line[1].lstrip())) // 4 > depth:
                inner, line = self.parsed(lines, depth + 1, line)
            if "INNER" in text:
                self.names["inner%d" % number] = self.block(inner)
                text = text.replace("INNER", "inner%d" % number)
            try:
                steps.append((number, compile(text.strip(), "line %d" % number, "exec")))
            except SyntaxError as error:
                sys.stderr.write("%s: %s\n" % (text, error))
                os._exit(MISSPELT)
        return steps, line

    def block(self, steps):
        times = [TIMES]

        def inner(*arguments):
            times[0] -= 1
            depth = getattr(self.depth, "now", 0)
            if depth >= DEEPEST or times[0] < 0:
                return
            self.depth.now = depth + 1
            try:
                self.play(steps)
            finally:
                self.depth.now = depth
        return inner

    def play(self, steps):
        for number, code in steps:
            self.left -= 1
            if self.left < 0:
                return
            if self.trace:
                os.write(2, "step %d\n" % number)
            outcome = "done"
            try:
                exec code in self.names, self.registers
            except Exception as error:
                outcome = type(error).__name__
                if self.trace:
                    os.write(2, "    %s: %s\n" % (outcome, str(error)[:200].replace("\n", " ")))
                sys.exc_clear()
            left = recording and recording.take_error()
            if left:
                os.write(2, "left an error behind: %s\n" % left.__name__)
                os.kill(os.getpid(), 6)
            self.outcomes[outcome] = self.outcomes.get(outcome, 0) + 1

    def keep(self, place, value):
        """Puts what a step gave into the registers of its class."""
        for one in value[:REGISTERS] if isinstance(value, (list, tuple)) else [value]:
            for base in type(one).__mro__:
                name = "%s%d" % (base.__name__, place % REGISTERS)
                if name in self.names:
                    self.names[name] = one
                    place += 1
                    break

    def thread(self, inner):
        if len(self.names["threads"]) > 4:
            return
        one = threading.Thread(target=inner)
        one.daemon = True
        self.names["threads"].append(one)
        one.start()

    def loop(self, times=2):
        for _ in range(times):
            self.names["app"].processEvents()
            QtCore.QCoreApplication.sendPostedEvents(None, QtCore.QEvent.DeferredDelete)

    def run(self):
        try:
            self.play(self.steps)
        finally:
            print >> sys.__stdout__, json.dumps(self.outcomes)
            sys.__stdout__.flush()
        if "daemons" not in self.end:
            limit = time.time() + 20
            for one in self.names["threads"]:
                one.join(max(0.1, limit - time.time()))
                if one.isAlive():
                    os.write(2, "a thread does not end\n")
                    os.kill(os.getpid(), 6)
        exec self.end.replace("daemons", "pass") in self.names


def known_classes():
    """The classes of both modules, by name."""
    result = dict((name, getattr(project, name)) for name in CLASSES)
    for name, one in vars(QtCore).items():
        if isinstance(one, type(QtCore.QObject)) and name not in ("QCoreApplication", "Qt"):
            result[name] = one
    return result


def surface():
    """Every class with its constructors, methods, properties and signals: as the tests list them, and as it says
    itself what else it has."""
    result = {}
    for name, one in known_classes().items():
        told = CLASSES.get(name)
        methods = dict((row[0], list(row[2:])) for row in told.methods) if told else {}
        settable = dict((row[0], row[3] if row[2] else None) for row in told.properties) if told else {}
        signals = []
        for member in dir(one):
            value = getattr(one, member)
            if member in NOT_TOLD or member.startswith("__") and not hasattr(object, member):
                continue
            if type(value).__name__ == "Signal":
                signals.append(member)
            elif inspect.isdatadescriptor(value) and not member.startswith("__"):
                settable.setdefault(member, None)
            elif callable(value) and not isinstance(value, type) and not member.startswith("__"):
                methods.setdefault(member, [])
        result[name] = {
            "made": name not in ("UndoGroup", "RenderOperation", "Parameter", "ParameterSet", "QChildEvent"),
            "qobject": issubclass(one, QtCore.QObject), "ours": bool(told), "methods": methods, "signals": signals,
            "properties": settable, "constructors": told.signatures if told and told.signatures else [],
            "copies": bool(told and told.copies)}
    return {"classes": result, "keywords": KEYWORDS, "enumerations": ENUMERATIONS, "registers": REGISTERS}


if __name__ == "__main__":
    orders = sys.argv[1:]
    sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "module"))
    from surface import CLASSES, ENUMERATIONS, KEYWORDS
    text = "" if orders == ["SURFACE"] else sys.stdin.read()
    if "# PySide last" in text:
        import vireo.project as project
        from PySide import QtCore
        import shiboken
    else:
        import shiboken
        from PySide import QtCore
        import vireo.project as project
    recording = None
    if "# recording library" in text:
        import recording
        import support
    if orders == ["SURFACE"]:
        print json.dumps(surface())
    else:
        os.chdir(orders[0])
        sys.stderr = open(os.devnull, "w") if "trace" not in orders else sys.stderr
        player = Player([line for line in text.splitlines() if line.strip() and not line.startswith("#")],
                        "trace" in orders)
        player.names["footage"] = orders[1].decode("utf-8")
        player.run()
