#!/usr/bin/env python3
"""Damaged images and projects against the module: each is read or refused, in bounded memory, and none ends a process.

The corpus is made by the module itself, small files in every format, and files that claim to be large. What a seed finds
is kept below BUILD/fuzz.
"""

import argparse
import json
import os
import pathlib
import random
import re
import select
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import zlib

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent.parent
TIMEOUT = 60           # seconds for one file
MEMORY = 2 << 20       # kilobytes that one file may take; the manual's limits make it less
NUMBERS = [0, 1, 2, 0x7f, 0x80, 0xff, 0x100, 0x7fff, 0x8000, 0xffff, 0x10000, 0x9c40, 0x7fffffff, 0x80000000, 0xffffffff]
VALUES = [None, True, -1, 0, 1, 2 ** 31, 2 ** 32 - 1, 1e9, 1e18, 1e308, 0.5, -0.0, "", "x", "\ufeff", "\0", "../x", "/", [],
          {}, [0], [0, 0, 1], [1e300]]
MAKE = """
import os, sys
sys.dont_write_bytecode = True
from vireo.project import *
footage, folder = sys.argv[1].decode("utf-8"), sys.argv[2].decode("utf-8")
for suffix in (u"png", u"exr", u"jpg", u"tif", u"dpx"):
    Clip(footage).export(None, folder, suffix + u".", u"." + suffix, u"", 0, 0)
project = Project(Clip(footage))
project.views = [ViewInfo(u"Left", u"L"), ViewInfo(u"Right", u"R")]
project.output_dir = folder
one, two = project.add_layer(None, u"one"), project.add_layer(None, u"two")
points = [BezierControlPointData(True, True, float(x), float(y)) for x, y in ((5, 5), (40, 8), (20, 40))]
contour = one.add_bezier_contour(0.0, points)
two.add_xspline_contour(0.0, [XControlPointData(x=float(x), y=float(y), weight=0.5) for x, y in ((5, 5), (40, 8), (20, 40))])
contour.control_points[0].set_point_data(9.0, BezierControlPointData(True, True, 7.0, 9.0))
two.link_to_track = one
one.parameter([u"opacity"]).set(0.5, 3.0, View(1))
project.add_group(u"group", [two])
project.save_as(os.path.join(folder, u"project"))
"""


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(width, height, data):
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) + \
        chunk(b"IDAT", zlib.compress(data)) + chunk(b"IEND", b"")


def with_checksums(data):
    """A PNG file whose pieces have the checksums that fit, so that damage gets as far as the decoder."""
    out, at = bytearray(data[:8]), 8
    while at + 12 <= len(data):
        size = struct.unpack_from(">I", data, at)[0]
        if at + 12 + size > len(data):
            break
        out += chunk(bytes(data[at + 4:at + 8]), bytes(data[at + 8:at + 8 + size]))
        at += 12 + size
    return bytes(out + data[at:])


class Bytes:
    """Damages a file as bytes: most often near its beginning, where headers are."""

    def __init__(self, rng):
        self.random = rng

    def damaged(self, data):
        data = bytearray(data)
        for _ in range(self.random.choice([1, 1, 1, 2, 3, 8])):
            self.random.choice([self.flip, self.flip, self.number, self.number, self.cut, self.copy, self.noise])(data)
        if bytes(data[:4]) == b"\x89PNG" and self.random.random() < 0.7:
            return with_checksums(bytes(data))
        return bytes(data)

    def place(self, data):
        end = min(len(data), self.random.choice([32, 256, 2048, len(data)]))
        return self.random.randrange(max(1, end))

    def flip(self, data):
        if data:
            data[self.place(data)] ^= 1 << self.random.randrange(8)

    def number(self, data):
        at, form = self.place(data), self.random.choice(["<I", ">I", "<H", ">H", "B"])
        packed = struct.pack(form, self.random.choice(NUMBERS) % (1 << 8 * struct.calcsize(form)))
        data[at:at + len(packed)] = packed

    def cut(self, data):
        del data[self.place(data):self.random.choice([len(data), self.place(data) + 1])]

    def copy(self, data):
        at, source = self.place(data), self.place(data)
        data[at:at] = data[source:source + self.random.choice([1, 4, 64, 4096])]

    def noise(self, data):
        at = self.place(data)
        data[at:at + 8] = bytes(self.random.randrange(256) for _ in range(8))


class Documents(Bytes):
    """Damages a project: as bytes, or its values as JSON."""

    def damaged(self, data):
        if self.random.random() < 0.3:
            return Bytes.damaged(self, data)
        document = json.loads(data.decode())
        for _ in range(self.random.choice([1, 1, 2, 5])):
            self.change(document)
        return json.dumps(document).encode()

    def change(self, document):
        places = []

        def walk(holder):
            for key in list(holder if isinstance(holder, dict) else range(len(holder))):
                places.append((holder, key))
                if isinstance(holder[key], (dict, list)):
                    walk(holder[key])
        walk(document)
        if not places:
            return
        holder, key = self.random.choice(places)
        other, other_key = self.random.choice(places)
        deed = self.random.randrange(4)
        if deed == 0:
            del holder[key]
        elif deed == 1 and isinstance(holder, list):
            holder.insert(key, holder[key])
        elif deed == 2:
            holder[key] = json.loads(json.dumps(other[other_key]))
        else:
            holder[key] = self.random.choice(VALUES)


class Reader:
    """The process that opens files; another one when it ends."""

    def __init__(self, build, target):
        cache = (build / "CMakeCache.txt").read_text()
        sanitized = build / "sanitized-python2.7"
        found = re.search(r"^Python2_EXECUTABLE:\w+=(.*)$", cache, re.M)
        self.python = str(sanitized) if sanitized.exists() else found.group(1)
        self.environment = dict(os.environ, PYTHONPATH=str(build / "site"), PYTHONDONTWRITEBYTECODE="1",
                                ASAN_OPTIONS="detect_leaks=0:allocator_may_return_null=1", UBSAN_OPTIONS="print_stacktrace=1")
        self.target, self.folder, self.process = target, tempfile.mkdtemp(prefix="vireo-fuzz-"), None

    def close(self):
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    def stop(self):
        if self.process:
            self.process.kill()
            self.process.communicate()
        self.process = None

    def open(self, path):
        """(kilobytes, outcome); the outcome of a process that ended begins with FAULT."""
        if not self.process:
            out = os.path.join(self.folder, "out")
            os.makedirs(out, exist_ok=True)
            self.errors = open(os.path.join(self.folder, "errors"), "w+")
            self.process = subprocess.Popen([self.python, str(HERE / "open_files.py"), self.target, out], env=self.environment,
                                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=self.errors)
        self.process.stdin.write((str(path) + "\n").encode())
        self.process.stdin.flush()
        if not select.select([self.process.stdout], [], [], TIMEOUT)[0]:
            self.stop()
            return 0, "FAULT hangs"
        line = self.process.stdout.readline().decode(errors="replace").strip()
        if not line:
            status = self.process.wait()
            self.process = None
            self.errors.seek(0)
            said = [text for text in self.errors.read().splitlines() if "ERROR" in text or "error:" in text or "terminate" in text]
            return 0, "FAULT ended with %d: %s" % (status, said[0] if said else "")
        kilobytes, outcome = line.split(" ", 1)
        return int(kilobytes), outcome


def corpus(build, reader, target):
    """Name and content of the files that are damaged."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="vireo-corpus-"))
    try:
        footage = folder / "footage"
        footage.mkdir()
        subprocess.run([str(build / "bin" / "vireo-make-footage"), "--size", "32x24", "--frames", "1", str(footage)],
                       check=True, env=reader.environment)
        subprocess.run([reader.python, "-c", MAKE, str(footage / "plate.####.png"), str(folder)], check=True,
                       env=reader.environment)
        files = {path.name: path.read_bytes() for path in folder.iterdir() if path.is_file()}
    finally:
        shutil.rmtree(folder)
    if target == "projects":
        return {"project": files["project"]}
    del files["project"]
    files["claims.0.png"] = png(40000, 40000, b"\0")
    tags = [(256, 4, 1, 40000), (257, 4, 1, 40000), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1), (273, 4, 1, 8),
            (277, 3, 1, 1), (278, 4, 1, 40000), (279, 4, 1, 4)]
    files["claims.0.tif"] = b"II*\0" + struct.pack("<I", 12) + b"\0\0\0\0" + struct.pack("<H", len(tags)) + \
        b"".join(struct.pack("<HHII", *tag) for tag in tags) + struct.pack("<I", 0)
    return files


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("target", choices=["images", "projects"])
    parser.add_argument("--steps", type=int, default=3000, help="files in all (%(default)s)")
    parser.add_argument("--seed", default="1")
    parser.add_argument("--build", type=pathlib.Path, default=SOURCE / "build" / "asan")
    options = parser.parse_args()
    build = options.build.resolve()
    rng = random.Random("%s %s" % (options.seed, options.target))
    damage = (Documents if options.target == "projects" else Bytes)(rng)
    reader = Reader(build, options.target)
    start, outcomes, faults, most = time.monotonic(), {}, {}, (0, "")
    kept = build / "fuzz"
    kept.mkdir(exist_ok=True)
    try:
        files = corpus(build, reader, options.target)
        for number in range(options.steps):
            name = rng.choice(sorted(files))
            data = files[name] if number < len(files) else damage.damaged(files[name])
            path = pathlib.Path(reader.folder) / name
            path.write_bytes(data)
            kilobytes, outcome = reader.open(path)
            path.unlink()
            most = max(most, (kilobytes, "%d, %s, %s" % (number, name, outcome)))
            if kilobytes > MEMORY:
                outcome = "FAULT takes %d MB" % (kilobytes >> 10)
            kind = re.split(r"[:(]", outcome)[0] if not outcome.startswith("FAULT") else outcome
            outcomes[kind] = outcomes.get(kind, 0) + 1
            if outcome.startswith(("FAULT", "MemoryError", "RuntimeError", "AttributeError", "TypeError")) and kind not in faults:
                faults[kind] = kept / ("%s-%s-%d-%s" % (options.target, options.seed, number, name))
                faults[kind].write_bytes(data)
                print("%s\n    %s" % (outcome, faults[kind]), flush=True)
    finally:
        reader.close()
    print("fuzz: %s, seed %s: %d files in %d s, %s; at most %d MB (%s)" % (
        options.target, options.seed, options.steps, time.monotonic() - start,
        ", ".join("%s %d" % row for row in sorted(outcomes.items())), most[0] >> 10, most[1]))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
