"""Writes the recorded classes: for each operation that the given headers declare and do not define, a definition that
notes its arguments and gives the answer that it was told. Only what is public is recorded."""

import os
import re
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "reference"))
import headers

# What an operation answers while it is told nothing; {0} is the object, {1} the argument.
ANSWERS = {
    "operator==": "plain({0}) == plain({1})",
    "operator!=": "!(plain({0}) == plain({1}))",
    "operator<": "plain({0}) < plain({1})",
    "isNull": "plain({0}) == plain(0)",
}
SUBJECTS = {"UndoGroup": "m_data"}  # copies of a group are one group
UNCOUNTED = ("View", "RenderOperation")  # made in their headers, or as a part of other objects only
BY_HAND = ("PyHandle", "PyTypeError", "SbkCleaner")


class Recorded(object):
    def __init__(self, declared):
        self.declared = declared
        self.name = declared.name
        self.subject = SUBJECTS.get(self.name, "*this")
        self.members = re.findall(r"^    [\w:<>, *]+ m_(\w+);$", declared.body, re.M)
        self.handle = declared.handle
        self.noted = not self.handle and self.name != "UndoGroup"  # the others are made with every result
        self.copies = "%s(const %s&" % (self.name, self.name) in declared.public

    def definitions(self):
        if "struct Data;" in self.declared.public:
            yield "struct %s::Data\n{};\n" % self.name
        for declaration in self.declared.declarations():
            if not declaration.is_defined:
                yield self.definition(declaration)

    def definition(self, declared):
        name = declared.name
        given = "".join(", " + one.name for one in declared.parameters)  # as arguments of a call behind others
        if name == self.name:
            body = self.constructor(given)
        elif name == "operator=" or name == "~" + self.name and self.name in UNCOUNTED:
            body = " = default;"
        elif name == "~" + self.name:
            body = ' { recording::%s(this, "%s"); }' % ("end" if self.copies else "gone", self.name)
        else:
            body = " { %s; }" % self.operation(declared.result, name, given)
        return "%s %s::%s(%s)%s%s\n" % (declared.result, self.name, name, declared.formal, declared.const, body)

    def constructor(self, given):
        copy = given == ", other"
        initial = ["QObject(parent)"] if ", parent" in given else []
        if self.handle and given:
            initial.append("%s(%s)" % (self.handle, given[2:]))
        for one in self.members:
            initial.append("m_%s(%s)" % (one, "other.m_" + one if copy else one if ", " + one in given else ""))
        note = 'call("%s"%s); ' % (self.name, given) if self.noted and not copy else ""
        return '%s { %srecording::begin%s(this, "%s"); }' % (
            " : " + ", ".join(initial) if initial else "", note, "Copy" if copy else "", self.name)

    def operation(self, result, name, given):
        noted = '"%s.%s", %s%s' % (self.name, name.replace("operator", ""), self.subject, given)
        field = name[4:] if name[4:] in self.members else None
        if name in ANSWERS:
            return "return answer(%s, %s)" % (ANSWERS[name].format("*this", given[2:]), noted)
        if field and name.startswith("get_"):
            return "return answer<%s>(m_%s, %s)" % (result, field, noted)
        if field:
            return "call(%s); m_%s = %s" % (noted, field, given[2:])
        return "%scall(%s)" % ("" if result == "void" else "return ", noted)


def recorded(text):
    """The definitions for one header."""
    for declared in headers.classes(text):
        for definition in [] if declared.name in BY_HAND else Recorded(declared).definitions():
            yield definition
    for name in re.findall(r"^unsigned int qHash\(const (\w+)& \w+\);", text, re.M):
        yield ('unsigned int qHash(const %s& one) { return answer(made<unsigned int>(plain(one)), "%s.qHash", one); }\n'
               % (name, name))


def main(output, *paths):
    with open(output, "w") as file:
        file.write('#include "call.h"\n\nusing namespace recording;\n\n')
        for path in paths:
            with open(path) as text:
                file.write("\n".join(recorded(text.read())) + "\n")


main(*sys.argv[1:])
