"""What the commands share: their options, opening projects, and saying what is wrong in one line."""

import argparse
import locale
import os
import sys

import vireo
from vireo import project as vp


class Refused(Exception):
    """Bad input: nothing was changed."""


class Failed(Exception):
    """The work was begun and could not be ended."""


def encoded(text):
    return text if isinstance(text, str) else text.encode(locale.getpreferredencoding() or "utf-8", "replace")


def say(text):
    sys.stdout.write(encoded(text) + "\n")
    sys.stdout.flush()


def complain(arguments, error, code):
    text = error if isinstance(error, (str, type(u""))) else text_of(error)
    sys.stderr.write("%s: %s\n" % (" ".join(["vireo"] + arguments[:1]), " ".join(encoded(text).split())))
    return code


def text_of(error):
    if isinstance(error, EnvironmentError) and error.filename:
        return u"%s: %s" % (vireo.path(error.filename), error.strerror)
    text = error.args[0] if len(error.args) == 1 else str(error)
    return text if isinstance(text, (str, type(u""))) else str(error)


class Parser(argparse.ArgumentParser):
    """Options by the API's words. A wrong one is refused in one line."""

    def error(self, message):
        raise Refused("%s; see %s --help" % (message, self.prog))

    def parse_args(self, arguments):
        """Takes the project also where options stand between it and another word."""
        options, rest = self.parse_known_args(arguments)
        if len(rest) == 1 and not rest[0].startswith("-") and not options.project:
            options.project = rest.pop()
        if rest:
            self.error("'%s' is not known" % " ".join(rest))
        return options

    def add_project(self):
        self.add_argument("project", nargs="?", metavar="PROJECT", help="the project's file")
        self.add_argument("--project", dest="named_project", metavar="PROJECT", help="the same")

    def add_work(self, views=True):
        self.add_project()
        self.add_argument("--layers", nargs="+", metavar="NAME", help="all that are visible where none is named")
        self.add_argument("--frames", metavar="FIRST-LAST", help="indexes from 0; the work range where none is given")
        if views:
            self.add_argument("--views", nargs="+", type=int, metavar="ID", help="the hero view where none is given")

    def add_save(self):
        self.add_argument("--save-as", metavar="FILE", help="where the project is saved; its own file otherwise")


def open_project(options):
    name = options.named_project or options.project
    if not name:
        raise Refused("no project is given")
    name = vireo.path(name)
    if not os.path.isfile(name):
        raise Refused("%s: %s" % (encoded(name), "is a folder" if os.path.isdir(name) else "there is no such file"))
    return vp.Project(name)


def layers_of(project, options):
    """The layers that the options name, and all that are visible for none."""
    if not options.layers:
        return [layer for layer in project.layers if layer.visibility]
    layers = []
    for name in map(vireo.path, options.layers):
        found = [layer for layer in project.layers if layer.name == name]
        if not found:
            raise Refused(u"no layer is named '%s'; there are %s" % (
                name, u", ".join(u"'%s'" % layer.name for layer in project.layers) or u"none"))
        layers += found
    return layers


def parse_frames(text):
    first, dash, last = text.partition("-")
    if not first.isdigit() or dash and not last.isdigit():
        raise Refused("'%s' is no range of frames, as 0-99 is one" % text)
    first, last = int(first), int(last if dash else first)
    if last < first:
        raise Refused("the range %s is empty" % text)
    return first, last


def frames_of(project, options):
    """The first and the last frame that the options ask for."""
    if not options.frames:
        return tuple(int(frame) for frame in project.in_out_range)
    first, last = parse_frames(options.frames)
    if last >= project.length:
        raise Refused("the range %s reaches past the project's last frame, %d" % (options.frames, project.length - 1))
    return first, last


def views_of(project, options):
    for view in options.views or []:
        if not 0 <= view < len(project.views):
            raise Refused("there is no view %d; the project has %d" % (view, len(project.views)))
    return options.views or []


def writable_folder(name):
    """The folder, which need not be there yet, as a path; refused where it could not be written."""
    name = os.path.abspath(vireo.path(name))
    present = name
    while not os.path.lexists(present):
        present = os.path.dirname(present)
    if not os.path.isdir(present) or not os.access(present, os.W_OK | os.X_OK):
        raise Refused(u"%s: %s cannot be written" % (name, u"it" if present == name else present))
    return name


def writable_file(name):
    name = os.path.abspath(vireo.path(name))
    if os.path.isdir(name):
        raise Refused(u"%s: is a folder" % name)
    folder = writable_folder(os.path.dirname(name))
    if not os.path.isdir(folder):
        raise Refused(u"%s: there is no such folder" % folder)
    return name


def target_of(project, options):
    """Where the project will be saved."""
    return writable_file(options.save_as or project.project_file)


def file_of(stream, number):
    """The file of a stream's frame of that number."""
    return os.path.join(stream.path, u"%s%s%s" % (stream.prefix, str(number).zfill(stream.index_width),
                                                  stream.suffix))


def program(name):
    """A program that lies beside the application, which may have been started by a link, or on the path."""
    folders = [os.path.dirname(os.path.realpath(sys.executable))] + os.environ.get("VIREO_BIN", "").split(os.pathsep) \
        + os.environ.get("PATH", "").split(os.pathsep)
    for folder in folders:
        if folder and os.access(os.path.join(folder, name), os.X_OK):
            return os.path.join(folder, name)
    raise Refused("the program %s is neither beside the application nor on the path" % name)
