"""Reads headers as the platform's are written: classes, functions and enumerations, each with the comment above it."""

import re

CLASS = re.compile(r"((?:^//.*\n)*)^class (\w+)(.*)\n\{\n((?:.*\n)*?)\};", re.M)
ENUMERATION = re.compile(r"((?:^//.*\n)*)^enum (\w+) \{([^}]*)\};", re.M)
DECLARATION = re.compile(r"(?P<result>.*?)(?P<name>~?\w+|operator[=!<]+)\((?P<parameters>.*)\)(?P<const> const)?")
NO_TYPE = re.compile(r"explicit |virtual | override")


def split(text):
    """What stands between the commas that are in no brackets."""
    return [one.strip() for one in re.split(r",\s+(?![^<]*>)", text) if one]


def text_of(comment):
    """The text of comment lines; an empty one parts paragraphs."""
    lines = [line.strip().lstrip("/").strip() for line in comment.strip().splitlines()]
    return re.sub(r" *\n *", "\n", " ".join(line or "\n\n" for line in lines)).strip()


class Parameter(object):
    def __init__(self, text):
        text, _, self.default = text.partition(" = ")
        self.type, self.name = re.match(r"(.*?)(\w*)$", text).groups()
        self.type = self.type.strip()


class Declaration(object):
    def __init__(self, found, comment, is_defined):
        self.result = re.sub("^ *static ", "", found["result"]).strip()
        self.name = found["name"]
        self.const = found["const"]
        self.parameters = [Parameter(one) for one in split(found["parameters"])]
        self.comment = comment
        self.is_defined = is_defined  # in the header

    @property
    def formal(self):
        """The parameters as a definition has them."""
        return ", ".join("%s %s" % (one.type, one.name) for one in self.parameters)


def declarations(text):
    """The functions that a part of a header declares, each with the comment right above it or behind it."""
    comment, statement = "", ""
    for line in text.splitlines():
        line = line.strip()
        if not statement and line.startswith("//"):
            comment += line + "\n"
            continue
        code, _, behind = line.partition("//")
        statement += code + " "
        is_whole = not line or re.search(r"[;}]\s*$", statement) and statement.count("{") == statement.count("}")
        if not is_whole:
            continue
        head = re.sub(r"\)\s+:\s.*", ")", statement.partition("{")[0].partition(";")[0])
        found = DECLARATION.match(NO_TYPE.sub("", " ".join(head.split())))
        if found:
            yield Declaration(found.groupdict(""), text_of(comment or behind),
                              "{" in statement or "= default" in statement)
        comment, statement = "", ""


class Class(object):
    def __init__(self, comment, name, bases, body):
        self.name = name
        self.comment = text_of(comment)
        self.bases = re.findall(r"public (\w+)", bases)
        self.handle = (re.findall(r"PyHandle<[\w:]+>", bases) or [None])[0]
        self.body = body
        sections = re.split(r"^(public|protected|private|signals):\n", body, flags=re.M)
        self.sections = dict(zip(sections[1::2], sections[2::2]))

    @property
    def public(self):
        return self.sections.get("public", "")

    def declarations(self, section="public"):
        return list(declarations(self.sections.get(section, "")))


def classes(text):
    """The classes of a header. Its opening comment is of its one class too, and of those that have none."""
    found = [Class(*one.groups()) for one in CLASS.finditer(text)]
    opening = text_of(re.match(r"(?://.*\n)*", text).group())
    for one in found:
        if len(found) == 1 or not one.comment:
            one.comment = (opening + "\n\n" + one.comment).strip()
    return found


def functions(text):
    """The functions outside of classes."""
    return list(declarations(re.sub(r"^(namespace .*|\}.*|#.*|template.*|class \w+;)$", "", CLASS.sub("", text),
                                    flags=re.M)))


def enumerations(text):
    """(name, comment, ((item, value), ...)) of each."""
    for comment, name, body in ENUMERATION.findall(text):
        yield name, text_of(comment), [(item, int(value)) for item, value in re.findall(r"(\w+) = (\d+)", body)]
