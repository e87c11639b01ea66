"""What the library calls in Python: isNull of handles, and the events and notifications of Qt."""

import contextlib
import sys
import warnings

from StringIO import StringIO

from support import *

OVERRIDABLE = [name for name in HANDLES if not name.endswith("Point")]
QT_CLASSES = ["Project", "Clip", "ColorParameters", "ProgressWatcher"]
USER, TIMER, CHILD_ADDED = 1000, 1, 68
UNHANDLED = 2  # a press of a mouse button
HANDLERS = [("timerEvent", TIMER, lambda event: event.timerId(), 5),
            ("childEvent", CHILD_ADDED, lambda event: event.added(), True),
            ("customEvent", USER, lambda event: int(event.type()), USER)]
GONE = "Internal C++ object (PySide.QtCore.%s) already deleted."


@contextlib.contextmanager
def printed():
    """What is printed to the standard error stream meanwhile."""
    stream, sys.stderr = sys.stderr, StringIO()
    try:
        yield sys.stderr
    finally:
        sys.stderr = stream


class OverrideTest(ModuleTest):
    def warns(self, function, name, operation, kind):
        """Holds the warning of an override that gave that kind of a result, and gives the function's own."""
        with warnings.catch_warnings(record=True) as issued:
            warnings.simplefilter("always")
            result = function()
        text = "Invalid return value in function %s.%s, expected bool, got %s." % (name, operation, kind)
        self.assertEqual([(w.category, str(w.message)) for w in issued], [(RuntimeWarning, text)])
        return result


class IsNull(OverrideTest):
    def test_the_library_and_the_truth_value_ask_the_override(self):
        for name in OVERRIDABLE:
            for null in (True, False, 1, 0, 0.5):
                one = derived(name, isNull=lambda self: null)
                self.assertIs(bool(one), not null)
                for elsewhere in (False, True):
                    self.assertIs(recording.is_null(number(one), elsewhere), bool(null))
                self.assertEqual(recording.calls(), [])
                # Called as a method of the library's class, it is the library's own.
                recording.returns(name + ".isNull", not null)
                self.assertIs(getattr(vp, name).isNull(one), not null)
                recording.clear()

    def test_wrong_results_warn_and_count_as_not_null(self):
        for name in OVERRIDABLE:
            for wrong, kind in [("yes", "str"), (None, "NoneType"), ([], "list")]:
                one = derived(name, isNull=lambda self: wrong)
                self.assertIs(self.warns(lambda: bool(one), name, "isNull", kind), True)

    def test_raised_errors_are_printed_and_count_as_not_null(self):
        def fails(self):
            raise KeyError("in isNull")

        one = derived("Layer", isNull=fails)
        with printed() as text:
            self.assertIs(bool(one), True)
            self.assertIs(recording.is_null(number(one), True), False)
        self.assertEqual(text.getvalue().count("KeyError: 'in isNull'"), 2)

    def test_without_an_override_the_library_answers(self):
        for name in OVERRIDABLE:
            one = derived(name)
            recording.returns(name + ".isNull", True)
            self.assertIs(bool(one), False)
            self.assertIs(recording.is_null(number(one)), True)

    def test_with_an_error_pending_nothing_is_called(self):
        one = derived("Layer", isNull=lambda self: True)
        self.assertIs(recording.is_null(number(one), False, True), False)
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
        one = derived("Layer", isNull=lambda self: True)
        self.assertIs(bool(vp.Layer(one)), True)
        self.assertIs(bool(one.__copy__()), True)


class Events(OverrideTest):
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
            self.assertIs(self.warns(lambda: recording.send(number(one), USER), name, "event", "NoneType"), False)

    def test_raised_errors_are_printed_and_qt_goes_on(self):
        def fails(self, event):
            raise ValueError("in a handler")

        for name in QT_CLASSES:
            for handler, kind in [("event", USER)] + [row[:2] for row in HANDLERS]:
                one = derived(name, **{handler: fails})
                with printed() as text:
                    handled = recording.send(number(one), kind)
                self.assertEqual(text.getvalue().count("ValueError: in a handler"), 1)
                self.assertFalse(handled and handler == "event")

    def test_the_particular_handlers_get_their_events(self):
        for name in QT_CLASSES:
            for handler, kind, reads, expected in HANDLERS:
                got = []
                one = derived(name, **{handler: lambda self, event: got.append((reads(event), event))})
                recording.send(number(one), kind)
                self.assertEqual([value for value, _ in got], [expected])
                self.raises(RuntimeError, None, got[0][1].type)

    def test_filters(self):
        for name in QT_CLASSES:
            got, watched = [], vp.ProgressWatcher()
            one = derived(name, eventFilter=lambda self, watched, event: got.append((watched, event)) or True)
            watched.installEventFilter(one)
            self.assertIs(recording.send_through(number(watched), USER), True)
            self.assertIs(got[0][0], watched)
            self.raises(RuntimeError, GONE % "QEvent", got[0][1].type)
            one = derived(name, eventFilter=lambda self, watched, event: "x")
            watched.installEventFilter(one)
            self.warns(lambda: recording.send_through(number(watched), USER), name, "eventFilter", "str")

    def test_notifications_name_the_signal(self):
        for name in QT_CLASSES:
            got = []
            one = derived(name, connectNotify=lambda self, signal: got.append(("connect", signal)),
                          disconnectNotify=lambda self, signal: got.append(("disconnect", signal)))
            one.destroyed.connect(run)
            one.destroyed.disconnect(run)
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
