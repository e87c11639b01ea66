"""Writes the recorded classes: for each operation that the given headers declare and do not define, a definition that
notes its arguments and gives the answer that it was told. Only what is public is recorded."""

import re
import sys

DECLARATION = re.compile(r"(?P<result>.*?)(?P<name>~?\w+|operator[=!<]+)\((?P<parameters>.*)\)(?P<const> const)?")
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


def names(parameters):
    """The names of parameters, as arguments of a call behind others."""
    return "".join(", " + re.search(r"\w+$", one).group()
                   for one in re.split(r",\s+(?![^<]*>)", parameters) if one)


class Recorded(object):
    def __init__(self, name, bases, body):
        self.name = name
        self.subject = SUBJECTS.get(name, "*this")
        self.members = re.findall(r"^    [\w:<>, *]+ m_(\w+);$", body, re.M)
        self.handle = re.search(r"PyHandle<[\w:]+>", bases)
        self.noted = not self.handle and name != "UndoGroup"  # the others are made with every result
        self.public = re.split(r"^(?:signals|protected|private):", body.split("public:\n")[1], flags=re.M)[0]
        self.copies = "%s(const %s&" % (name, name) in self.public

    def definitions(self):
        if "struct Data;" in self.public:
            yield "struct %s::Data\n{};\n" % self.name
        text = re.sub(r"//.*", "", self.public)
        text = re.sub(r"[^;{}]*\{[^{}]*\}", ";", text)
        for declaration in text.split(";"):
            declaration = re.sub(r"explicit |virtual | override| = boost::none", "", " ".join(declaration.split()))
            found = DECLARATION.match(declaration)
            if found and not declaration.endswith("= default"):
                yield self.definition(**found.groupdict(""))

    def definition(self, result, name, parameters, const):
        given = names(parameters)
        if name == self.name:
            body = self.constructor(given)
        elif name == "operator=" or name == "~" + self.name and self.name in UNCOUNTED:
            body = " = default;"
        elif name == "~" + self.name:
            body = ' { recording::%s(this, "%s"); }' % ("end" if self.copies else "gone", self.name)
        else:
            body = " { %s; }" % self.operation(result, name, given)
        return "%s%s::%s(%s)%s%s\n" % (result, self.name, name, parameters, const, body)

    def constructor(self, given):
        copy = given == ", other"
        initial = ["QObject(parent)"] if ", parent" in given else []
        if self.handle and given:
            initial.append("%s(%s)" % (self.handle.group(), given[2:]))
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
        return "%scall(%s)" % ("" if result == "void " else "return ", noted)


def recorded(text):
    """The definitions for one header."""
    for found in re.finditer(r"^class (\w+)(.*)\n\{\n((?:.*\n)*?)\};", text, re.M):
        for definition in [] if found.group(1) in BY_HAND else Recorded(*found.groups()).definitions():
            yield definition
    for name in re.findall(r"^unsigned int qHash\(const (\w+)& \w+\);", text, re.M):
        yield ('unsigned int qHash(const %s& one) { return answer(made<unsigned int>(plain(one)), "%s.qHash", one); }\n'
               % (name, name))


def main(output, *headers):
    with open(output, "w") as file:
        file.write('#include "call.h"\n\nusing namespace recording;\n\n')
        for header in headers:
            with open(header) as text:
                file.write("\n".join(recorded(text.read())) + "\n")


main(*sys.argv[1:])
