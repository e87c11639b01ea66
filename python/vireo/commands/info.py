"""`vireo info`: what a project holds."""

import json
import os

from vireo import project as vp
from vireo.commands import common

UNKNOWN = 2 ** 32 - 1


def of_stream(clip, view):
    stream = clip.get_info(view)
    known = stream.start_frame != UNKNOWN and stream.end_frame != UNKNOWN
    numbers = range(stream.start_frame, stream.end_frame + 1) if known else []
    missing = [number for number in numbers if not os.path.exists(common.file_of(stream, number))]
    return {"view": int(view.id), "files": os.path.join(stream.path, u"%s%s%s" % (
        stream.prefix, u"#" * max(1, stream.index_width), stream.suffix)),
        "frames": [int(stream.start_frame), int(stream.end_frame)] if known else None,
        "missing": len(missing) if known else None,
        "first_missing": common.file_of(stream, missing[0]) if missing else None}


def of_clip(clip):
    return {"name": clip.name, "frame_size": [int(side) for side in clip.frame_size], "frame_rate": clip.frame_rate,
            "streams": [of_stream(clip, view) for view in clip.views]}


def tracked_frames(layer, view):
    """The frames of a view that the track has keyframes at."""
    transform = layer.parameter_set([u"transform"])
    return sorted({time for at, time in transform.keyframes if at == view}) if transform else []


def of_layer(layer):
    tracked = tracked_frames(layer, vp.View(0))
    clip = layer.tracking_input_clip()
    return {"name": layer.name, "group": layer.parent.name if layer.parent else None, "visibility": layer.visibility,
            "locked": layer.locked, "in_point": int(layer.in_point()), "out_point": int(layer.out_point()),
            "contours": len(layer.contours), "points": sum(len(one.control_points) for one in layer.contours),
            "keyframes": len(layer.parameter_set().keyframes),
            "tracked": [tracked[0], tracked[-1]] if tracked else None, "clip": clip.name if clip else None,
            "link_to_track": layer.link_to_track.name if layer.link_to_track else None}


def of_project(project):
    return {"project_file": project.project_file, "length": int(project.length), "frame_rate": project.frame_rate,
            "first_frame_offset": int(project.first_frame_offset),
            "in_out_range": [int(frame) for frame in project.in_out_range],
            "output_dir": project.get_output_dir(), "notes": project.notes,
            "views": [view.name for view in project.views],
            "layers": [of_layer(layer) for layer in project.layers],
            "clips": [of_clip(clip) for _, clip in sorted(project.clips.items())]}


def number(value):
    return u"%g" % value


def lines(told):
    yield u"%(project_file)s" % told
    yield u"  %d frames at %s per second, numbered from %d, work range %s" % (
        told["length"], number(told["frame_rate"]), told["first_frame_offset"], u"%d-%d" % tuple(told["in_out_range"]))
    yield u"  views: %s" % u", ".join(told["views"])
    yield u"layers: %d" % len(told["layers"])
    for one in told["layers"]:
        yield u"  %s%s: frames %d-%d, %d contours of %d points, %d key times, %s%s%s" % (
            one["group"] + u" / " if one["group"] else u"", one["name"], one["in_point"], one["out_point"],
            one["contours"], one["points"], one["keyframes"],
            u"tracked %s-%s" % tuple(map(number, one["tracked"])) if one["tracked"] else u"not tracked",
            u", follows " + one["link_to_track"] if one["link_to_track"] else u"",
            u"" if one["visibility"] else u", hidden")
    yield u"clips: %d" % len(told["clips"])
    for clip in told["clips"]:
        yield u"  %s: %dx%d at %s per second" % (clip["name"], clip["frame_size"][0], clip["frame_size"][1],
                                                 number(clip["frame_rate"]))
        for stream in clip["streams"]:
            yield u"    view %d: %s, %s" % (stream["view"], stream["files"], u"%d-%d" % tuple(stream["frames"])
                                            if stream["frames"] else u"frames unknown")
            if stream["missing"]:
                yield u"      missing: %d files, the first is %s" % (stream["missing"], stream["first_missing"])


def info(parser, arguments):
    parser.add_project()
    parser.add_argument("--json", action="store_true", help="for programs")
    options = parser.parse_args(arguments)
    told = of_project(common.open_project(options))
    common.say(json.dumps(told, indent=2, sort_keys=True) if options.json else u"\n".join(lines(told)))
