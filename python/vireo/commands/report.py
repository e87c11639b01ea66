"""`vireo report`: one HTML file, without outside parts, of how well each layer's track holds."""

import base64
import cgi
import os

import vireo
from vireo import project as vp
from vireo.commands import common
from vireo.commands.info import tracked_frames
from vireo.commands.sheet import Frames, draw, spread, temporary_folder

THUMBNAILS, THUMBNAIL_WIDTH, PER_ROW = 48, 192, 8
WIDTH, HEIGHT = 1000.0, 120.0
COLOURS = ["#e2703a", "#3a8ee2", "#4caf6d", "#b06be0"]
CORNERS = ["top left", "top right", "bottom right", "bottom left"]

PAGE = u"""<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><meta name="viewport" content="width=device-width, initial-scale=1">
<title>%(title)s</title><style>
:root { color-scheme: light dark; --line: #8886; --gap: #d33a }
body { font: 15px/1.45 system-ui, sans-serif; margin: 0 auto; max-width: 1100px; padding: 12px }
h1 { font-size: 1.4em; overflow-wrap: anywhere } h2 { font-size: 1.15em; margin: 1.6em 0 .3em }
svg.time { height: 120px } svg { width: 100%%; display: block; background: #8881; margin: 4px 0; touch-action: pan-y }
polyline { fill: none; stroke-width: 2; vector-effect: non-scaling-stroke } .gap { fill: var(--gap) }
.at { stroke: currentColor; stroke-dasharray: 3; vector-effect: non-scaling-stroke }
figure { margin: 0 } figcaption { font-size: .85em; opacity: .8 }
.thumbnail { background-repeat: no-repeat; margin: 6px 0; max-width: 100%% }
.pair { display: flex; flex-wrap: wrap; gap: 12px } .pair > * { flex: 1 1 280px; min-width: 0 }
table { border-collapse: collapse; font-size: .9em } td, th { padding: 2px 10px 2px 0; text-align: left }
.scroll { overflow-x: auto }
</style></head><body>
<h1>%(title)s</h1><p>%(summary)s</p>
<div class="scroll"><table>
<tr><th>layer</th><th>tracked</th><th>gaps</th><th>quality</th><th>visible</th></tr>%(table)s</table></div>
%(layers)s
<script>
document.querySelectorAll('section').forEach(function (section) {
  var shown = JSON.parse(section.dataset.thumbnails), first = +section.dataset.first, last = +section.dataset.last
  var thumbnail = section.querySelector('.thumbnail'), text = section.querySelector('.where')
  function point(event) {
    var box = event.currentTarget.getBoundingClientRect()
    var frame = Math.round(first + (last - first) * Math.min(1, Math.max(0, (event.clientX - box.left) / box.width)))
    section.querySelectorAll('.at').forEach(function (line) {
      var x = %(width)d * (last > first ? (frame - first) / (last - first) : 0)
      line.setAttribute('x1', x); line.setAttribute('x2', x) })
    text.textContent = 'frame ' + (frame + %(offset)d)
    if (!thumbnail || !shown.length) return
    var nearest = shown.reduce(function (best, each, i) {
      return Math.abs(each - frame) < Math.abs(shown[best] - frame) ? i : best }, 0)
    thumbnail.style.backgroundPosition = -(nearest %% %(per_row)d) * %(tw)d + 'px ' +
      -Math.floor(nearest / %(per_row)d) * thumbnail.dataset.height + 'px'
  }
  section.querySelectorAll('svg.time').forEach(function (chart) {
    chart.addEventListener('pointermove', point); chart.addEventListener('pointerdown', point) })
})
</script></body></html>
"""


def escaped(text):
    return cgi.escape(text, quote=True)


def gaps_of(frames, keyed):
    """The ranges of frames that have no key."""
    gaps = []
    for frame in frames:
        if frame not in keyed:
            if gaps and gaps[-1][1] == frame - 1:
                gaps[-1][1] = frame
            else:
                gaps.append([frame, frame])
    return gaps


class Track(object):
    """What is known of one layer's track over a range of frames."""

    def __init__(self, layer, first, last):
        self.layer, self.first, self.last = layer, first, last
        self.frames = range(first, last + 1)
        self.keyed = set(tracked_frames(layer, vp.View(0)))
        inside = [frame for frame in self.frames if layer.in_point() <= frame <= layer.out_point()]
        self.gaps = gaps_of(inside, self.keyed) if not layer.link_to_track else []
        self.quality, self.visible = self.values(u"quality"), self.values(u"visible")
        self.corners = [[layer.get_surface_position(corner, float(frame)) for frame in self.frames]
                        for corner in range(4)]

    def values(self, name):
        """A keyed value of the track by frame; None where the engine keeps none."""
        parameter = self.layer.parameter([u"track", name])
        return [float(parameter.get(float(frame), 0)) for frame in self.frames] \
            if parameter and parameter.keyframes else None

    def place(self, frame):
        return WIDTH * (frame - self.first) / max(1, self.last - self.first)

    def chart(self, label, lines, least, most):
        """Lines over time: (colour, value by frame) each."""
        scale = HEIGHT / (most - least or 1)
        drawn = u"".join(u'<rect class="gap" x="%.1f" y="0" width="%.1f" height="%d"/>' % (
            self.place(a - 0.5), max(2.0, self.place(b + 0.5) - self.place(a - 0.5)), HEIGHT) for a, b in self.gaps)
        for colour, values in lines:
            drawn += u'<polyline stroke="%s" points="%s"/>' % (colour, u" ".join(
                u"%.1f,%.1f" % (self.place(frame), HEIGHT - (value - least) * scale)
                for frame, value in zip(self.frames, values)))
        return u'<figure><svg class="time" viewBox="0 0 %d %d" preserveAspectRatio="none">%s' \
            u'<line class="at" x1="-9" x2="-9" y1="0" y2="%d"/></svg><figcaption>%s</figcaption></figure>' % (
                WIDTH, HEIGHT, drawn, HEIGHT, escaped(label))

    def paths(self, size):
        """The corners' ways over the frame."""
        ways = u"".join(u'<polyline stroke="%s" points="%s"/>' % (colour, u" ".join(
            u"%.1f,%.1f" % tuple(place) for place in way)) for colour, way in zip(COLOURS, self.corners))
        return u'<figure><svg viewBox="0 0 %d %d" style="max-width:640px">%s</svg><figcaption>where the corners go in the frame: %s' \
            u'</figcaption></figure>' % (size[0], size[1], ways, u", ".join(
                u'<span style="color:%s">%s</span>' % pair for pair in zip(COLOURS, CORNERS)))

    def charts(self, size):
        made = []
        if self.quality:
            made.append(self.chart(u"quality, from 0 to 1", [(COLOURS[1], self.quality)], 0.0, 1.0))
        if self.visible:
            made.append(self.chart(u"visible share, from 0 to 1", [(COLOURS[2], self.visible)], 0.0, 1.0))
        for axis, name in ((0, u"x"), (1, u"y")):
            lines = [(colour, [place[axis] for place in way]) for colour, way in zip(COLOURS, self.corners)]
            numbers = [value for _, values in lines for value in values]
            ends = [min(numbers), max(numbers)]
            made.append(self.chart(u"%s of the corners, %.0f to %.0f pixels%s" % (
                name, ends[0], ends[1], u", downwards" if axis else u""), lines, ends[axis], ends[1 - axis]))
        return u"".join(made) + self.paths(size)

    def mean(self, values):
        return u"%.3f (least %.3f)" % (sum(values) / len(values), min(values)) if values else u"not kept"


def thumbnails(project, layer, first, last):
    """The frames that are shown, and a picture of them all as a data URL with the height of one; none without files."""
    with temporary_folder() as folder:
        try:
            frames = Frames(project, [layer], folder)
        except common.Refused:
            return [], None, 0
        shown, cells = [], []
        for frame in spread(first, last, THUMBNAILS):
            plate = frames.plate(frame)
            if plate:
                shown.append(frame)
                cells.append({"image": plate, "matte": frames.matte(frame), "color": list(layer.matte_color)})
        if not cells:
            return [], None, 0
        width, height = frames.clip.frame_size
        picture = os.path.join(folder, u"all.jpg")
        rows = [{"label": "", "cells": cells[i:i + PER_ROW]} for i in range(0, len(cells), PER_ROW)]
        draw(rows, [""] * min(PER_ROW, len(cells)), picture, folder, THUMBNAIL_WIDTH, title="", plain=True)
        with open(picture, "rb") as file:
            return shown, "data:image/jpeg;base64," + base64.b64encode(file.read()), height * THUMBNAIL_WIDTH // width


def section(project, track):
    shown, picture, height = thumbnails(project, track.layer, track.first, track.last)
    clip = track.layer.tracking_input_clip(True)
    size = clip.frame_size if clip and all(clip.frame_size) else (1920, 1080)
    figure = u'<div class="thumbnail" data-height="%d" style="width:%dpx;height:%dpx;background-image:url(%s)"></div>' % (
        height, THUMBNAIL_WIDTH, height, picture) if picture else u"<p>No frame of the footage can be read.</p>"
    return u'<section data-thumbnails="%s" data-first="%d" data-last="%d"><h2>%s</h2>%s' \
        u'<p class="where">point at a frame</p>%s</section>' % (
            [int(frame) for frame in shown], track.first, track.last, escaped(track.layer.name), figure,
            track.charts(size))


def row(track, offset):
    gaps = u", ".join(u"%d-%d" % (a + offset, b + offset) for a, b in track.gaps)
    return u"<tr><td>%s</td><td>%d of %d frames</td><td>%s</td><td>%s</td><td>%s</td></tr>" % (
        escaped(track.layer.name), len(track.keyed.intersection(track.frames)), len(track.frames), gaps or u"none",
        track.mean(track.quality), track.mean(track.visible))


def report(parser, arguments):
    parser.add_work(views=False)
    parser.add_argument("--output", default="report.html", metavar="FILE")
    options = parser.parse_args(arguments)
    project = common.open_project(options)
    layers = [layer for layer in common.layers_of(project, options) if layer.contours]
    first, last = common.frames_of(project, options)
    output = common.writable_file(options.output)
    if not layers:
        raise common.Refused("there is no layer with a shape to report on")
    tracks = [Track(layer, first, last) for layer in layers]
    offset = project.first_frame_offset
    page = PAGE % {
        "title": escaped(os.path.basename(project.project_file)), "width": WIDTH, "offset": offset,
        "per_row": PER_ROW, "tw": THUMBNAIL_WIDTH,
        "summary": u"Frames %d to %d at %g per second; made by vireo %s. Frames without a key of the track are red." % (
            first + offset, last + offset, project.frame_rate, vireo.__version__),
        "table": u"".join(row(track, offset) for track in tracks),
        "layers": u"".join(section(project, track) for track in tracks)}
    with open(output, "w") as file:
        file.write(page.encode("utf-8"))
    common.say(output)
