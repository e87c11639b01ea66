"""`vireo sheet`: some frames of a project side by side, as plate, matte, and matte over plate."""

import contextlib
import json
import os
import shutil
import subprocess
import tempfile

from vireo import project as vp
from vireo.commands import common


@contextlib.contextmanager
def temporary_folder():
    folder = tempfile.mkdtemp(prefix="vireo-")
    try:
        yield folder.decode("utf-8")
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def spread(first, last, count):
    """`count` frames of a range, the first and the last among them."""
    count = min(count, last - first + 1)
    return sorted({first + (last - first) * i // max(1, count - 1) for i in range(count)})


class Frames(object):
    """Writes frames of a project, one at a time, as files that show what the project makes of them."""

    def __init__(self, project, layers, folder):
        self.project, self.layers, self.folder = project, layers, folder
        self.clip = layers[0].tracking_input_clip(True) if layers else project.default_trackable_clip
        if not self.clip:
            raise common.Refused("the project has no clip to show")

    def written(self, clip):
        stream = clip.get_info(clip.views[0])
        return common.file_of(stream, stream.start_frame)

    def plate(self, frame):
        """The file of the plate's frame; None where the clip has none."""
        shown = vp.Clip(u"")
        try:
            self.clip.export(shown, self.folder, u"plate.", u".png", u"", frame, frame)
        except (IOError, IndexError, ValueError):
            return None
        return self.written(shown)

    def matte(self, frame):
        return self.written(self.project.export_rendered_shapes(
            self.layers, vp.Grayscale, u"Matte", self.folder, u"matte.", u".png", frame, frame))


def draw(rows, columns, output, folder, width, **more):
    description = os.path.join(folder, u"sheet.json")
    with open(description, "w") as file:
        json.dump(dict(more, width=width, columns=columns, rows=rows), file)
    subprocess.check_call([common.program("vireo-contact-sheet"), description, output])


def sheet(parser, arguments):
    parser.add_work(views=False)
    parser.add_argument("--output", default="sheet.png", metavar="FILE")
    parser.add_argument("--count", type=int, default=4, help="how many frames, spread over the range (4)")
    parser.add_argument("--width", type=int, default=320, help="of each picture, in pixels (320)")
    options = parser.parse_args(arguments)
    project = common.open_project(options)
    layers = common.layers_of(project, options)
    first, last = common.frames_of(project, options)
    output = common.writable_file(options.output)
    if options.count < 1 or not 16 <= options.width <= 4096:
        raise common.Refused("--count is at least 1, --width from 16 to 4096")
    if not layers:
        raise common.Refused("there is no layer to show")
    with temporary_folder() as folder:
        frames, rows = Frames(project, layers, folder), []
        for frame in spread(first, last, options.count):
            plate, matte = frames.plate(frame), frames.matte(frame)
            if plate is None:
                raise common.Refused(u"frame %d of the clip '%s' cannot be read" % (frame, frames.clip.name))
            rows.append({"label": "frame %d" % (frame + project.first_frame_offset), "cells": [
                {"image": plate}, {"image": matte},
                {"image": plate, "matte": matte, "color": list(layers[0].matte_color)}]})
        draw(rows, ["plate", "matte", "matte over plate"], output, folder, options.width,
             title=os.path.basename(project.project_file))
    common.say(output)
