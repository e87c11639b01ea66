"""Includes point down: what a room may see compiles with its include paths, and what it may not is not found."""

import glob
import json
import os
import re
import shlex
import subprocess
import unittest

SOURCE = os.environ["VIREO_SOURCE"]
BUILD = os.environ["VIREO_BUILD"]

RUNTIME = ["binding/scopes", "runtime/shiboken/src", "runtime/pyside/src", "python"]
MODEL = ["engine/orrery/errors", "engine/stratum", "engine/knob", "platform"]
CLIPS = ["engine/orrery/sequences", "engine/orrery/files", "engine/orrery/handles", "engine/pixels/src"] + MODEL
PROJECT = ["engine/orrery/clips", "embedding"] + CLIPS

# Each room: a header that only it has, if any, and the rooms that it sees.
ROOMS = {
    "python": ("Python.h", []),
    "runtime/shiboken/src": ("shiboken.h", ["python"]),
    "runtime/pyside/src": ("pyside.h", ["binding/scopes", "runtime/shiboken/src", "python"]),
    "platform": ("orrery/layer.h", []),
    "binding/scopes": ("interpreter_scopes.h", []),
    "binding": ("call_protocol.h", RUNTIME),
    "runtime/pyside/qtcore": ("object_shim.h", RUNTIME + ["binding"]),
    "shiboken/vireo/project": ("vireo/project_types.h", RUNTIME + ["binding", "platform"]),
    "engine/fundo": (None, ["platform"]),
    "engine/knob": ("engine/knob/animation.h", ["platform"]),
    "engine/stratum": ("engine/stratum/manager.h", ["engine/knob", "platform"]),
    "engine/pixels/src": ("engine/pixels/pixels.h", []),
    "engine/orrery/errors": ("engine/errors/arguments.h", ["engine/knob", "platform"]),
    "engine/orrery/files": ("engine/files/paths.h", ["engine/orrery/errors", "engine/knob", "platform"]),
    "engine/orrery/sequences": ("engine/sequences/name.h", ["engine/orrery/files", "engine/orrery/errors", "engine/knob", "engine/pixels/src", "platform"]),
    "engine/orrery/handles": ("engine/handles/access.h", MODEL),
    "engine/orrery/clips": ("engine/clips/data.h", CLIPS),
    "engine/orrery/project": ("engine/project/data.h", PROJECT),
    "engine/orrery/document": ("engine/document/document.h", ["engine/orrery/project"] + PROJECT),
    "engine/orrery/operations": ("engine/operations/progress.h", ["engine/orrery/project"] + PROJECT),
    "engine/orrery/python": (None, ["engine/orrery/handles", "embedding", "runtime/shiboken/src", "python"] + MODEL),
    "embedding": ("engine/embedding.h", []),
    "host": (None, ["embedding", "platform", "python"]),
}
UNNAMED = set(["engine/pixels/footage", "engine/pixels/loader"]) # tools of the pixel library


def commands():
    """The compiler and what it is told of include paths, by the folder of the sources."""
    found = {}
    with open(os.path.join(BUILD, "compile_commands.json")) as database:
        for entry in json.load(database):
            room = os.path.relpath(os.path.dirname(os.path.join(entry["directory"], entry["file"])), SOURCE)
            words = shlex.split(entry["command"].encode())
            if words[words.index("-o") + 1].startswith("tests/"):
                continue # the tests compile some of the engine's sources with paths of their own
            compiler = words[:[word[:1] for word in words].index("-")]
            paths = [word for i, word in enumerate(words)
                     if re.match("-(I|D|std|isystem)", word) or words[i - 1] == "-isystem"]
            found[room] = compiler + paths + ["-fPIC", "-E", "-x", "c++", "-"]
    return found


class Rooms(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.commands = dict((room, command) for room, command in commands().items() if room in ROOMS)

    def errors(self, room, headers):
        process = subprocess.Popen(self.commands[room], stdin=subprocess.PIPE, stdout=open(os.devnull, "w"),
                                   stderr=subprocess.PIPE)
        return process.communicate("".join("#include <%s>\n" % header for header in headers))[1]

    def test_every_room_is_compiled(self):
        headers_only = ["binding/scopes", "embedding", "platform", "python"]
        self.assertEqual(sorted(set(ROOMS) - set(self.commands)), headers_only)
        found = [glob.glob(os.path.join(SOURCE, pattern)) for pattern in ("engine/*/*.cpp", "engine/*/*/*.cpp")]
        rooms = set(os.path.relpath(os.path.dirname(path), SOURCE) for path in sum(found, []))
        self.assertEqual(sorted(rooms - set(ROOMS) - UNNAMED), [])

    def test_a_room_sees_what_is_below(self):
        for room in self.commands:
            headers = [ROOMS[below][0] for below in ROOMS[room][1]]
            self.assertEqual((room, self.errors(room, headers)), (room, ""))

    def test_a_room_sees_nothing_else(self):
        for room in self.commands:
            for other, (header, _) in ROOMS.items():
                if header and other != room and other not in ROOMS[room][1]:
                    errors = self.errors(room, [header])
                    self.assertTrue("%s: No such file" % header in errors, "%s sees <%s>\n%s" % (room, header, errors))

    def test_no_path_leads_around(self):
        climbing = re.compile(r'#include [<"][^>"]*\.\./')
        for room in self.commands:
            for path in glob.glob(os.path.join(SOURCE, room, "*.*")):
                with open(path) as text:
                    self.assertEqual((path, climbing.findall(text.read())), (path, []))


if __name__ == "__main__":
    unittest.main()
