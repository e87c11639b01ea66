"""Joins what the module's tables say of its classes with the manual in the headers: classes, their members, and for each
its signatures and its text, in the words of Python."""

import re

import headers

# Operations that scripts know under another name.
LIBRARY_NAMES = {"Clip.export": "exportClip"}
TEXT_OF_COPY = "A copy: another handle on the same object, or a value of its own."
# The library's words in Python's, beside those that follow from the tables.
IN_WORDS = {"exportClip": "export", "begin()": "__enter__()", "qHash": "hash()",
            "Knob::View::defaultViewId()": "View()"}
# How the library's types look in Python; {0} and {1} are what a template is made of.
TYPES = [(re.compile(pattern + "$"), text) for pattern, text in [
    (r"void", "None"), (r"bool|float", "{match}"), (r"double", "float"), (r"int|unsigned int", "int"),
    (r"QString", "unicode"), (r"QStringList", "List[unicode]"), (r"QVariant|object", "Any"), (r"QPointF", "Tuple[float, float]"),
    (r"Fundo::Colour3<float>", "Tuple[float, float, float]"),
    (r"Lum_Matrix33", "Tuple[Tuple[float, float, float], ...]"),
    (r"QPair<(.*), (.*)>", "Tuple[{0}, {1}]"), (r"(?:QHash|QMap)<(\w+), (\w+)\*?>", "Dict[{0}, {1}]"),
    (r"(?:QVector|QList)<(.*)>", "List[{0}]"), (r"boost::optional<(.*)>", "Optional[{0}]"), (r"(.*)\*", "Optional[{0}]"),
    (r"Contour", "Union[BezierContour, XSplineContour]"), (r"ControlPoint", "Union[BezierControlPoint, XControlPoint]"),
    (r"ParameterOrSet", "Any"), (r"NameOrNames", "Union[unicode, Sequence[unicode]]"), (r"\w+", "{match}")]]
# What an argument may be beyond that.
TAKEN = [(r"List\[", "Sequence["), (r"\bView\b", "Union[View, int]"), (r"^unicode$", "Optional[unicode]"),
         (r"^Tuple\[(int|float)[^()]*\]$", r"Sequence[\1]")]
DEFAULTS = {"UINT_MAX": "4294967295", "-1": "4294967295", "double( UINT_MAX )": "4294967295.0", "0.f": "0.0",
            "1.f": "1.0", "685.f": "685.0", "false": "False", "NULL": "None", '""': "u''", "View( 0 )": "View(0)",
            "Color()": "(0.0, 0.0, 0.0)", "QStringList()": "[]"}


def python_type(text):
    text = re.sub(r"^const |&$", "", text).strip()
    for pattern, python in TYPES:
        found = pattern.match(text)
        if found:
            return python.format(*[python_type(one) for one in found.groups()], match=text)
    raise SystemExit("no Python type is known for %s" % text)


def taken_type(text):
    python = python_type(text)
    for pattern, wider in TAKEN:
        python = re.sub(pattern, wider, python)
    return python


def python_default(text):
    if text is None or text in DEFAULTS:
        return DEFAULTS.get(text)
    if text.startswith("Optional"):
        return "None"
    if text.startswith("QVector<"):
        return "[]"
    named = re.search(r'"(.*)"', text)
    return "u'%s'" % named.group(1) if named else text


class Parameter(object):
    def __init__(self, row, declared):
        self.name = row["keyword"] or declared.name
        self.type = taken_type(declared.type)
        self.keyword = bool(row["keyword"])
        self.default = python_default(row["default"])

    def __str__(self):
        return self.name + ("" if self.default is None else "=" + self.default)


class Signature(object):
    """One way to call an operation."""

    def __init__(self, rows, declared):
        self.parameters = [Parameter(row, one) for row, one in zip(rows, declared.parameters)]
        self.result = python_type(declared.result or "void")
        if declared.result.endswith("*") and not re.search(r"\b[Nn]ull (when|where)\b", declared.comment):
            self.result = self.result[len("Optional["):-1]

    def listed(self, form):
        """The parameters as `form` has them, with the / behind those that have no keyword."""
        listed = [form(one) for one in self.parameters]
        places = [i for i, one in enumerate(self.parameters) if not one.keyword]
        return listed[:len(places)] + ["/"] * bool(places) + listed[len(places):]

    def __str__(self):
        return "(%s)" % ", ".join(self.listed(str))


class Member(object):
    """A method, a property, a signal or the constructor of a class."""

    def __init__(self, owner, name, kind, signatures, text, writable=None, row=None):
        self.owner, self.name, self.kind, self.signatures, self.text = owner, name, kind, signatures, text
        self.writable = writable  # the type that a property takes; None where it is only read
        self.row = row or name    # of the table

    @property
    def type(self):
        return self.signatures[0].result


class Class(object):
    def __init__(self, manual, table, declared, by_hand):
        self.manual, self.name, self.table = manual, table["name"], table
        self.bases = [one for one in declared.bases if one in manual.declared or one == "QObject"]
        self.bases = [one for one in self.bases if one != "PyHandle"]
        self.declared = declared.declarations()
        self.signals = declared.declarations("signals")
        made_here = by_hand.declarations() if by_hand else []
        names = [one.name for one in made_here]
        self.operations = [one for one in self.declared if one.name not in names] + made_here
        self.names = {}  # of Python for those of the library, where they differ
        paragraphs = manual.comment_of(declared).split("\n\n")
        errors = [re.search(r"(?s)(?:^|(?<=\. ))Errors\b.*", one) for one in paragraphs]
        self.errors = " ".join(one.group() for one in errors if one)
        self.own_text = "\n\n".join(re.sub(r"(?s)(^|(?<=\. ))Errors\b.*", "", one).strip()
                                    for one in paragraphs).strip()

    def fill(self):
        self.text = self.manual.words(self.own_text, self)
        self.members = list(self.made()) + list(self.methods()) + list(self.properties()) + list(self.sent())

    def find(self, name, rows):
        """The declaration of an operation: the one with as many parameters, and of several that whose first fits."""
        wanted = LIBRARY_NAMES.get("%s.%s" % (self.name, name), name)
        found = [one for one in self.operations if one.name == wanted and len(one.parameters) == len(rows)]
        fitting = [one for one in found if not rows or fits(rows[0]["type"], one.parameters[0].type)]
        if not found:
            self.manual.lacking.append("%s.%s is declared nowhere with %d parameters" % (self.name, name, len(rows)))
        return (fitting or found or [None])[0]

    def comment(self, declared, *others):
        for one in (declared,) + others:
            if one and one.comment:
                as_function = re.match(r"As (\w+)\(\)\.$", one.comment)
                return self.manual.functions[as_function.group(1)].comment if as_function else one.comment
        return ""

    def signatures(self, operation):
        """What an operation can be called with, and what the manual says of it."""
        name, found, texts = operation["name"] or self.name, [], []
        for rows in operation["signatures"]:
            if name == "__copy__":
                continue
            declared = self.find(name, rows)
            if declared:
                if operation["name"] is None:
                    declared.result = ""
                found.append(Signature(rows, declared))
                comment = self.comment(declared)
                texts += [comment] if comment and comment not in texts else []
        return found, "\n\n".join(texts)

    def member(self, name, kind, signatures, text, **more):
        if not text and kind != "constructor":
            self.manual.lacking.append("%s.%s has no sentence in the manual" % (self.name, name))
        return Member(self, name, kind, signatures, self.manual.words(text, self), **more)

    def made(self):
        if self.table["construction"]:
            yield self.member(self.name, "constructor", *self.signatures(self.table["construction"]))

    def methods(self):
        accessors = [one["method"] for one in self.table["accessors"]]
        for operation in self.table["operations"]:
            if operation["name"] not in accessors:
                yield self.member(operation["name"], "method", *self.signatures(operation))
        for name in ["__getitem__"] if self.table["hasSubscript"] else []:
            yield self.member(name, "subscript", *self.signatures(
                {"name": name, "signatures": [[{"type": "", "keyword": None, "default": None}]]}))
        if self.table["isValue"]:
            yield Member(self, "__copy__", "method", [], TEXT_OF_COPY)

    def properties(self):
        operations = dict((one["name"], one) for one in self.table["operations"])
        accessors = self.table["accessors"]
        for getter, setter in zip(accessors, accessors[1:] + [None]):
            if getter["isSetter"]:
                continue
            signatures, text = self.signatures(operations[getter["method"]])
            writable = None
            if setter and setter["isSetter"]:
                set_signatures, set_text = self.signatures(operations[setter["method"]])
                writable = set_signatures[0].parameters[0].type if set_signatures else "Any"
                text = "\n\n".join(one for one in (text, set_text) if one)
            yield self.member(getter["property"], "property", signatures, text, writable=writable,
                              row=getter["method"])

    def sent(self):
        for name in self.table["signals"]:
            name, types = re.match(r"(\w+)\((.*)\)", name).groups()
            declared = [one for one in self.signals if one.name == name]
            rows = [{"keyword": None, "default": None}] * len(declared[0].parameters if declared else [])
            yield self.member(name, "signal", [Signature(rows, declared[0])] if declared else [],
                              self.comment(*declared) if declared else "")


def fits(text, declared):
    """Whether a table's type can be that of a declaration."""
    name = text.rpartition(".")[2]
    return name == declared or re.search(r"\b%s\b" % {"unicode": "QString"}.get(name, name), declared) is not None


class Manual(object):
    def __init__(self, tables, paths, by_hand, errors):
        texts = [open(path).read() for path in paths]
        self.declared = dict((one.name, one) for text in texts for one in headers.classes(text))
        self.functions = dict((one.name, one) for text in texts for one in headers.functions(text))
        self.enumerations = [one for text in texts for one in headers.enumerations(text)]
        self.errors = dict(re.findall(r'table.insert\("(\w+)", PyExc_(\w+)\)', open(errors).read()))
        made_here = dict((one.name, one) for one in headers.classes(open(by_hand).read()))
        self.lacking = []
        self.classes = []
        for table in tables:
            name = table["name"]
            if name in self.declared:
                self.classes.append(Class(self, table, self.declared[name], made_here.get(name)))
            else:
                self.lacking.append("class %s is declared nowhere" % name)
        self.classes.sort(key=lambda one: one.name)
        self.properties = dict((accessor["method"], accessor["property"]) for table in tables
                               for accessor in table["accessors"])
        for one in self.classes:
            one.errors = self.words(self.errors_of(one), one)
            one.fill()
        for name, comment, items in self.enumerations:
            if not comment:
                self.lacking.append("enumeration %s has no sentence" % name)

    def comment_of(self, declared):
        """The comment of a class; the first of a header speaks for its one class."""
        if not declared.comment:
            self.lacking.append("class %s has no sentence" % declared.name)
        return declared.comment

    def errors_of(self, one):
        same = re.match(r"Errors as of (\w+)\.", one.errors)
        return [other for other in self.classes if other.name == same.group(1)][0].errors if same else one.errors

    def words(self, text, owner):
        """A text of the manual in the words of Python."""
        for library, python in IN_WORDS.items():
            text = text.replace(library, python)
        for library, python in self.errors.items():
            text = re.sub(r"\b%s\b" % library, python, text)
        text = re.sub(r"\bthrows?\b", lambda found: {"throw": "raise", "throws": "raises"}[found.group()], text)
        text = re.sub(r"(\w)::(\w)", r"\1.\2", text)
        text = re.sub(r"\b[gs]et_\w+", lambda found: self.properties.get(found.group(), found.group()), text)
        text = re.sub(r"\b(\w+)\(\)", lambda found: found.group(1) if found.group(1) in self.properties.values()
                      and found.group(1) not in ("parameters", "layers") else found.group(), text)
        text = re.sub(r"(?<!become )(?<!is )\b[nN]ull\b(?! handle)", "None", text)
        text = re.sub(r"\{([^{}]*)\}", r"[\1]", text)
        return text[:1].upper() + text[1:] + ("" if not text or text[-1] in ".:" else ".")
