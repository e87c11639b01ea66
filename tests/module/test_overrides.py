"""What the library calls in Python: isNull of handles, and the events and notifications of Qt."""

import contextlib
import sys
import warnings

from StringIO import StringIO

from support import *

OVERRIDABLE = [name for name in HANDLES if not name.endswith("Point")]
QT_CLASSES = {"Project": (u"f",), "Clip": (u"f",), "ColorParameters": (), "ProgressWatcher": ()}
USER, TIMER, CHILD_ADDED = 1000, 1, 68
UNHANDLED = 2  # a press of a mouse button
GONE = "Internal C++ object (PySide.QtCore.%s) already deleted."


@contextlib.contextmanager
def printed():
    """What is printed to the standard error stream meanwhile."""
    stream, sys.stderr = sys.stderr, StringIO()
    try:
        yield sys.stderr
    finally:
        sys.stderr = stream


@contextlib.contextmanager
def warned():
    with warnings.catch_warnings(record=True) as issued:
        warnings.simplefilter("always")
        yield issued


def derived(name, **members):
    """An instance of a subclass with these members."""
    cls = type("My" + name, (getattr(vp, name),), members)
    return cls(*QT_CLASSES[name] if name in QT_CLASSES else [make(name)])


class IsNull(ModuleTest):
    def of(self, name, function):
        """An instance of a subclass whose isNull is that function, and its number."""
        one = derived(name, isNull=function)
        return one, second_extension.number_of(one)

    def test_the_library_and_the_truth_value_ask_the_override(self):
        for name in OVERRIDABLE:
            for null in (True, False, 1, 0, 0.5):
                one, known = self.of(name, lambda self: null)
                self.assertIs(bool(one), not null)
                for elsewhere in (False, True):
                    self.assertIs(recording.is_null(known, elsewhere), bool(null))
                self.assertEqual(recording.calls(), [])
                # Called as a method of the library's class, it is the library's own.
                recording.returns(name + ".isNull", not null)
                self.assertIs(getattr(vp, name).isNull(one), not null)
                recording.clear()

    def test_wrong_results_warn_and_count_as_not_null(self):
        for name in OVERRIDABLE:
            for wrong, kind in [("yes", "str"), (None, "NoneType"), ([], "list")]:
                one, known = self.of(name, lambda self: wrong)
                with warned() as issued:
                    self.assertIs(bool(one), True)
                text = "Invalid return value in function %s.isNull, expected bool, got %s." % (name, kind)
                self.assertEqual([(w.category, str(w.message)) for w in issued], [(RuntimeWarning, text)])

    def test_raised_errors_are_printed_and_count_as_not_null(self):
        def fails(self):
            raise KeyError("in isNull")

        one, known = self.of("Layer", fails)
        with printed() as text:
            self.assertIs(bool(one), True)
            self.assertIs(recording.is_null(known, True), False)
        self.assertEqual(text.getvalue().count("KeyError: 'in isNull'"), 2)

    def test_without_an_override_the_library_answers(self):
        for name in OVERRIDABLE:
            one = derived(name)
            recording.returns(name + ".isNull", True)
            self.assertIs(bool(one), False)
            self.assertIs(recording.is_null(second_extension.number_of(one)), True)

    def test_with_an_error_pending_nothing_is_called(self):
        one, known = self.of("Layer", lambda self: True)
        self.assertIs(recording.is_null(known, False, True), False)
        watcher = derived("ProgressWatcher", event=lambda self, event: 1 / 0)
        self.assertIs(recording.send(number(watcher), TIMER, False, True), False)
        watcher = derived("ProgressWatcher")  # not even Qt's own
        self.assertIs(recording.send(number(watcher), TIMER, False, True), False)

    def test_points_have_no_such_method(self):
        for name in set(HANDLES) - set(OVERRIDABLE):
            self.assertFalse(hasattr(make(name), "isNull"))
            one = derived(name, isNull=lambda self: True)
            self.assertIs(bool(one), True)

    def test_copies_that_the_library_is_given_are_not_overridden(self):
        one, known = self.of("Layer", lambda self: True)
        self.assertIs(bool(vp.Layer(one)), True)
        self.assertIs(bool(one.__copy__()), True)


class Events(ModuleTest):
    def test_events_reach_an_override_and_are_invalid_afterwards(self):
        for name in QT_CLASSES:
            for elsewhere in (False, True):
                got = []
                one = derived(name, event=lambda self, event: got.append(event) or True)
                self.assertIs(recording.send(number(one), USER, elsewhere), True)
                self.assertIsInstance(got[0], QtCore.QEvent)
                self.raises(RuntimeError, GONE % "QEvent", got[0].type)

    def test_an_event_that_python_made_stays_valid(self):
        got = []
        one = derived("ProgressWatcher", event=lambda self, event: got.append(event) or True)
        event = QtCore.QEvent(QtCore.QEvent.User)
        self.assertIs(QtCore.QCoreApplication.sendEvent(one, event), True)
        self.assertIs(got[0], event)
        self.assertEqual(event.type(), QtCore.QEvent.User)

    def test_wrong_results_warn_and_leave_the_event_unhandled(self):
        for name in QT_CLASSES:
            one = derived(name, event=lambda self, event: None)
            with warned() as issued:
                self.assertIs(recording.send(number(one), USER), False)
            self.assertEqual([str(w.message) for w in issued], [
                "Invalid return value in function %s.event, expected bool, got NoneType." % name])
            self.assertIs(issued[0].category, RuntimeWarning)

    def test_raised_errors_are_printed_and_qt_goes_on(self):
        def fails(self, event):
            got.append(event)
            raise ValueError("in a handler")

        for name in QT_CLASSES:
            for handler, kind, event in [("event", USER, "QEvent"), ("timerEvent", TIMER, "QTimerEvent"),
                                         ("childEvent", CHILD_ADDED, "QChildEvent"), ("customEvent", USER, "QEvent")]:
                got = []
                one = derived(name, **{handler: fails})
                with printed() as text:
                    handled = recording.send(number(one), kind)
                self.assertIn("ValueError: in a handler", text.getvalue())
                self.assertEqual(len(got), 1)
                if handler == "event":
                    self.assertIs(handled, False)

    def test_the_particular_handlers_get_their_events(self):
        for name in QT_CLASSES:
            for handler, kind, reads in [("timerEvent", TIMER, lambda event: event.timerId()),
                                         ("childEvent", CHILD_ADDED, lambda event: event.added()),
                                         ("customEvent", USER, lambda event: int(event.type()))]:
                got = []
                one = derived(name, **{handler: lambda self, event: got.append((reads(event), event))})
                recording.send(number(one), kind)
                self.assertEqual(len(got), 1, handler)
                self.assertIn(got[0][0], (5, True, USER))
                self.raises(RuntimeError, None, got[0][1].type)

    def test_filters(self):
        for name in QT_CLASSES:
            got = []

            def watch(self, watched, event):
                got.append((watched, event))
                return len(got) == 1

            one, watched = derived(name, eventFilter=watch), vp.ProgressWatcher()
            watched.installEventFilter(one)
            self.assertIs(recording.send_through(number(watched), USER), True)
            self.assertIs(got[0][0], watched)
            self.raises(RuntimeError, GONE % "QEvent", got[0][1].type)
            one = derived(name, eventFilter=lambda self, watched, event: "x")
            watched.installEventFilter(one)
            with warned() as issued:
                recording.send_through(number(watched), USER)
            self.assertEqual([str(w.message) for w in issued], [
                "Invalid return value in function %s.eventFilter, expected bool, got str." % name])

    def test_notifications_name_the_signal(self):
        for name in QT_CLASSES:
            got = []
            one = derived(name, connectNotify=lambda self, signal: got.append(("connect", signal)),
                           disconnectNotify=lambda self, signal: got.append(("disconnect", signal)))

            def slot(*arguments):
                pass

            one.destroyed.connect(slot)
            one.destroyed.disconnect(slot)
            self.assertEqual(got[:1], [("connect", QtCore.SIGNAL("destroyed(QObject*)"))], name)
            self.assertEqual(got[-1][0], "disconnect")
            self.assertEqual(set(type(signal) for _, signal in got), {str})

    def test_what_the_library_made_never_calls_python(self):
        for name in QT_CLASSES:
            one, known = made(name)
            one.event = lambda event: 1 / 0
            self.assertIs(recording.send(known, UNHANDLED), False)
            recording.destroy(known)

    def test_without_an_override_qt_handles_the_event(self):
        for name in QT_CLASSES:
            one = derived(name)
            self.assertIs(recording.send(number(one), TIMER), True)
            self.assertIs(recording.send(number(one), UNHANDLED, True), False)

    def test_the_base_class_s_handler_can_be_called(self):
        got = []

        def event(self, event):
            got.append(event.type())
            return vp.Clip.event(self, event)

        one = derived("Clip", event=event, timerEvent=lambda self, event: got.append("timer"))
        self.assertIs(recording.send(number(one), TIMER), True)
        self.assertEqual(got[-1], "timer")


class Signals(ModuleTest):
    def test_the_library_s_signals_reach_python(self):
        for name, signal, values in [("Project", "settingChanged", (u"frame_rate",)), ("Project", "viewsChanged", ()),
                                     ("Clip", "settingChanged", (u"frame_rate",)),
                                     ("ProgressWatcher", "progressChanged", (0.5, u"frame 12")),
                                     ("ProgressWatcher", "finished", ()), ("ColorParameters", "propertyChanged", ())]:
            for one, known in (made(name), (make(name), None)):
                got = []
                getattr(one, signal).connect(lambda *arguments: got.append(arguments))
                recording.emit(known or number(one), signal, values)
                self.assertEqual(got, [values], (name, signal))

    def test_signals_from_another_thread_are_delivered(self):
        one, known = made("ProgressWatcher")
        got = []
        one.progressChanged.connect(lambda *arguments: got.append(arguments))
        recording.emit(known, "progressChanged", (0.5, u"x"), True)
        for _ in range(100):
            application.processEvents()
        self.assertEqual(got, [(0.5, u"x")])

    def test_a_signal_of_a_temporary_wrapper(self):
        project, known = vp.Project(u"f"), recording.make("ProgressWatcher")
        recording.returns("Project.get_progress_watcher", known)
        got = []
        project.progress_watcher.started.connect(lambda text: got.append(text))
        recording.emit(known, "started", (u"tracking",))
        self.assertEqual(got, [u"tracking"])

    def test_a_subclass_s_error_in_a_slot_is_printed(self):
        one = vp.ProgressWatcher()
        one.finished.connect(lambda: 1 / 0)
        with printed() as text:
            recording.emit(number(one), "finished")
        self.assertIn("ZeroDivisionError", text.getvalue())


if __name__ == "__main__":
    main()
