"""Makes the reference of vireo.project in all its forms.

make.py CLASSES FOLDER SOURCES HEADER...: from what the tables say of the classes (JSON), what the module itself makes of
them (in SOURCES, the module's folder), and the platform's headers, writes documentation_table.inc, project.pyi and
reference/*.md into FOLDER. A member without a sentence is an error, and nothing is written.
"""

import json
import os
import re
import sys
import textwrap

import manual
import markdown
import stub

WIDTH = 88


def wrapped(text, indent=""):
    return "\n\n".join(textwrap.fill(" ".join(one.split()), WIDTH, initial_indent=indent, subsequent_indent=indent)
                       for one in text.split("\n\n") if one.strip())


def called(member):
    return "\n".join(member.name + str(one) for one in member.signatures) or member.name + "()"


def arguments(member):
    """The arguments of all signatures, each once."""
    seen = []
    for signature in member.signatures:
        for one in signature.parameters:
            line = "    %s: %s" % (one.name, one.type)
            line += "" if one.default is None else "; %s" % one.default
            seen += [line + (" (keyword)" if one.keyword else "")] if line not in "\n".join(seen) else []
    return seen


def docstring(member):
    parts = [called(member)] if member.kind != "property" else []
    if member.kind == "property":
        kind = member.type if member.writable in (None, member.type) else "%s; takes %s" % (member.type,
                                                                                           member.writable)
        parts.append(kind + ("" if member.writable else "; read only"))
    parts.append(wrapped(member.text))
    if member.kind != "property" and arguments(member):
        parts.append("Arguments:\n" + "\n".join(arguments(member)))
    if member.kind == "method" and member.signatures:
        parts.append("Returns %s." % member.type)
    if member.owner.errors and member.name != "isNull":
        parts.append(wrapped(member.owner.errors))
    return "\n\n".join(one for one in parts if one)


def class_docstring(one):
    parts = [wrapped(one.text)]
    for member in one.members:
        if member.kind == "constructor":
            parts = [called(member)] + parts + [wrapped(member.text)] + [
                "Arguments:\n" + "\n".join(arguments(member)) if arguments(member) else ""]
    sent = ["    %s%s: %s" % (member.name, member.signatures[0], " ".join(member.text.split()))
            for member in one.members if member.kind == "signal"]
    parts.append("Signals:\n" + "\n".join(sent) if sent else "")
    return "\n\n".join(part for part in parts + [wrapped(one.errors)] if part)


def table(classes):
    rows = {}
    for one in classes:
        rows[one.name] = class_docstring(one)
        for member in one.members:
            if member.kind in ("method", "property"):
                rows["%s.%s" % (one.name, member.row)] = docstring(member)
    quoted = lambda text: '"%s"' % re.sub(r'(["\\])', r"\\\1", text).replace("\n", "\\n")
    return "".join("{%s, %s},\n" % (quoted(name), quoted(rows[name])) for name in sorted(rows))


def main(tables, folder, sources, *paths):
    made = manual.Manual(json.load(open(tables)), paths, os.path.join(sources, "description", "hand_written.h"),
                         os.path.join(sources, "error_translation.cpp"))
    if made.lacking:
        sys.exit("\n".join("reference: " + line for line in sorted(set(made.lacking))))
    pages = dict(("reference/%s.md" % name, text) for name, text in markdown.pages(made).items())
    if not os.path.isdir(os.path.join(folder, "reference")):
        os.makedirs(os.path.join(folder, "reference"))
    for name, text in dict(pages, **{"documentation_table.inc": table(made.classes),
                                     "project.pyi": stub.stub(made)}).items():
        with open(os.path.join(folder, name), "w") as file:
            file.write(text.encode("utf-8") if isinstance(text, type(u"")) else text)


main(*sys.argv[1:])
