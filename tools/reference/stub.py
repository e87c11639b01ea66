"""The stub: the reference in the form that type checkers and editors read."""

import re

HEAD = '''# What vireo.project offers, for type checkers and editors. Made from the module's own tables.
from typing import Any, Callable, Dict, Generic, List, Optional, Sequence, Tuple, TypeVar, Union, overload

_Read = TypeVar("_Read")
_Taken = TypeVar("_Taken")

class _Property(Generic[_Read, _Taken]):
    """A property that takes more than it gives."""
    def __get__(self, instance: Any, owner: Any) -> _Read: ...
    def __set__(self, instance: Any, value: _Taken) -> None: ...

class _Signal:
    def connect(self, receiver: Callable[..., Any], type: Any = ...) -> bool: ...
    def disconnect(self, receiver: Callable[..., Any] = ...) -> bool: ...
    def emit(self, *arguments: Any) -> None: ...

class _QObject:
    """PySide.QtCore.QObject."""
%s
    destroyed: _Signal
    objectNameChanged: _Signal
''' % "\n".join("    def %s(self, *arguments: Any) -> Any: ..." % name for name in """blockSignals childEvent children
connect connectNotify customEvent deleteLater disconnect disconnectNotify dynamicPropertyNames emit event eventFilter findChild
findChildren inherits installEventFilter isWidgetType killTimer moveToThread objectName parent property receivers
removeEventFilter sender setObjectName setParent setProperty signalsBlocked startTimer thread timerEvent tr""".split())


def plain(text):
    return text.replace("unicode", "str").replace("QObject", "_QObject")


def function(name, signature, result):
    def parameter(one):
        return "%s: %s%s" % (one.name, plain(one.type), " = ..." if one.default is not None else "")

    listed = ["self"] + signature.listed(parameter)
    if listed[-1] == "/":
        listed = listed[:-1] + ["/"]
    return "    def %s(%s) -> %s: ...\n" % (name, ", ".join(listed), plain(result))


def functions(name, member, result=None):
    several = len(member.signatures) > 1
    for signature in member.signatures:
        yield ("    @overload\n" if several else "") + function(name, signature, result or signature.result)


def member_lines(one):
    for member in one.members:
        if member.kind == "constructor":
            for line in functions("__init__", member, "None"):
                yield line
        elif member.name == "__copy__":
            yield "    def __copy__(self) -> %s: ...\n" % one.name
        elif member.kind in ("method", "subscript"):
            for line in functions(member.name, member):
                yield line
        elif member.kind == "signal":
            yield "    %s: _Signal\n" % member.name
        elif member.writable is None:
            yield "    @property\n    def %s(self) -> %s: ...\n" % (member.name, plain(member.type))
        elif member.writable == member.type:
            yield "    %s: %s\n" % (member.name, plain(member.type))
        else:
            yield "    %s: _Property[%s, %s]\n" % (member.name, plain(member.type), plain(member.writable))
    if one.table["hasTruth"]:
        yield "    def __bool__(self) -> bool: ...\n"
    for operator in one.declared:
        if operator.name == "operator<":
            yield "    def __lt__(self, other: Union[%s, int]) -> bool: ...\n" % one.name


def stub(manual):
    parts = [HEAD]
    for name, _, items in manual.enumerations:
        parts.append("\nclass %s:\n    name: str\n    values: Dict[str, %s]\n    def __init__(self, value: int = ...) -> None: ...\n"
                     "    def __int__(self) -> int: ...\n%s\n%s" % (
                         name, name, "".join("    %s: %s\n" % (item, name) for item, _ in items),
                         "".join("%s: %s\n" % (item, name) for item, _ in items)))
    for one in manual.classes:
        bases = ", ".join(plain(base) for base in one.bases)
        parts.append("\nclass %s%s:\n%s" % (one.name, "(%s)" % bases if bases else "",
                                            "".join(member_lines(one)) or "    ...\n"))
    parts.append("\ndef get_current_project() -> Optional[Project]: ...\n")
    return "".join(parts)
