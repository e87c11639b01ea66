"""The reference as pages: one per class, one for the enumerations, and a list of all."""

import re

HEAD = {"method": "Methods", "subscript": "Subscript", "property": "Properties", "signal": "Signals"}
MADE = "<!-- Made by tools/docs from the manual in platform/orrery and the module's tables. -->\n\n"


def anchor(name):
    return name.strip("_").lower() if name.startswith("__") else name.lower()


class Pages(object):
    def __init__(self, manual):
        self.manual = manual
        self.places = {}
        for one in manual.classes:
            self.places[one.name] = one.name + ".md"
            for member in one.members:
                if member.kind in HEAD and not member.name.startswith("_"):
                    self.places["%s.%s" % (one.name, member.name)] = "%s.md#%s" % (one.name, member.name.lower())
        for name, _, _ in manual.enumerations:
            self.places[name] = "enumerations.md#" + name.lower()

    def linked(self, text, owner=None):
        """The text as Markdown, where the names of classes and of their members lead to them."""
        text = re.sub(r"([*<>\[\]])", r"\\\1", text)

        def link(found):
            name = found.group().rstrip("()")
            place = self.places.get(name)
            return "[%s](%s)" % (found.group(), place) if place and name != owner else found.group()

        return re.sub(r"\b[A-Z]\w+(?:\.\w+)?(?:\(\))?", link, re.sub(r"(?<!\w)_(?=\w)", r"\\_", text))

    def typed(self, text):
        return "`%s`" % text

    def arguments(self, member):
        rows = []
        for signature in member.signatures:
            for one in signature.parameters:
                row = "| `%s` | `%s` | %s | %s |\n" % (one.name, one.type.replace("|", "\\|"),
                                                      "" if one.default is None else "`%s`" % one.default,
                                                      "yes" if one.keyword else "")
                rows += [row] if row not in rows else []
        return "| argument | type | default | by keyword |\n|---|---|---|---|\n" + "".join(rows) + "\n" if rows else ""

    def member(self, member):
        text = "### %s\n\n" % member.name.replace("__", "\\_\\_")
        if member.kind == "property":
            text += "`%s`%s\n\n" % (member.type, "" if member.writable is None else ", can be set"
                                    if member.writable == member.type else ", takes `%s`" % member.writable)
            if member.writable is None:
                text = text.rstrip() + ", read only\n\n"
        elif member.signatures:
            text += "```python\n%s\n```\n\n" % "\n".join(
                member.name + str(one) + ("" if one.result == "None" else " -> " + one.result)
                for one in member.signatures)
        return text + self.linked(member.text, member.owner.name) + "\n\n" + (
            self.arguments(member) if member.kind == "method" else "")

    def page(self, one):
        text = MADE + "# %s\n\n" % one.name
        base = [self.linked(name) if name != "QObject" else "`PySide.QtCore.QObject`" for name in one.bases]
        text += "A %s.\n\n" % base[0] if base else ""
        text += self.linked(one.text, one.name) + "\n\n"
        for member in one.members:
            if member.kind == "constructor":
                text += "```python\n%s\n```\n\n" % "\n".join(one.name + str(each) for each in member.signatures)
                text += (self.linked(member.text, one.name) + "\n\n" if member.text else "") + self.arguments(member)
        text += self.linked(one.errors, one.name) + "\n\n" if one.errors else ""
        for kind in ("method", "subscript", "property", "signal"):
            members = [self.member(member) for member in one.members if member.kind == kind]
            text += "## %s\n\n" % HEAD[kind] + "".join(members) if members else ""
        return text.rstrip() + "\n"

    def enumerations(self):
        text = MADE + "# Enumerations\n\nTheir items stand on the type and in the module: `Colorspace.LogColorspace` " \
                      "and `LogColorspace`. Only items are taken where one is asked for; `int()` gives the number.\n"
        for name, comment, items in self.manual.enumerations:
            text += "\n## %s\n\n%s\n\n| item | number |\n|---|---|\n" % (name, self.linked(comment))
            text += "".join("| `%s` | %d |\n" % item for item in items)
        return text

    def contents(self):
        text = MADE + "# Reference\n\nThe classes of `vireo.project`. In a signature, what stands before `/` has no " \
            "keyword; an unknown keyword is ignored.\n\n| class | |\n|---|---|\n"
        for one in self.manual.classes:
            first = re.match(r"(?s).*?[.:](?=\s|$)", one.text).group().rstrip(":")
            text += "| [%s](%s.md) | %s |\n" % (one.name, one.name, self.linked(" ".join(first.split()), one.name))
        return text + "| [Enumerations](enumerations.md) | %s |\n" % ", ".join(
            name for name, _, _ in self.manual.enumerations) + (
            "\n`get_current_project()`, inside an application only: %s\n" % self.linked(
                self.manual.words(self.manual.functions["getCurrentProject"].comment, None)))


def pages(manual):
    made = Pages(manual)
    result = dict((one.name, made.page(one)) for one in manual.classes)
    result.update({"enumerations": made.enumerations(), "README": made.contents()})
    return result
