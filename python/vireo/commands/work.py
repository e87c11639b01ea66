"""`vireo track`, `vireo export`, `vireo render`: the long operations of a project."""

import os

import vireo
from vireo import project as vp
from vireo.commands import common

OPERATIONS = {"insert": vp.RenderInsertOperation, "remove": vp.RenderRemoveOperation,
              "stabilize": vp.RenderStabilizeOperation}
COLORIZE = {"Grayscale": vp.Grayscale, "ByMatteColor": vp.ByMatteColor, "ByLayer": vp.ByLayer}


def track(parser, arguments):
    parser.add_work()
    parser.add_save()
    options = parser.parse_args(arguments)
    project = common.open_project(options)
    layers, views = common.layers_of(project, options), common.views_of(project, options)
    first, last = common.frames_of(project, options)
    target = common.target_of(project, options)
    if not layers:
        raise common.Refused("there is no layer to track")
    lost = None
    try:
        project.track_layers(start_index=first, stop_index=last, layers=layers, views=views)
    except RuntimeError as error:
        lost = error  # what was found is kept: a track that ended is worth looking at
    if lost and not any(layer.parameter_set([u"transform"]).keyframes for layer in layers):
        raise common.Failed(common.text_of(lost))
    project.save_as(target)
    common.say(u"tracked %d layers, frames %d-%d: %s" % (len(layers), first, last, target))
    if lost:
        raise common.Failed(common.text_of(lost))


def add_files(parser):
    """What names the files that are written."""
    parser.add_argument("--path", required=True, metavar="FOLDER", help="where the files go")
    parser.add_argument("--prefix", default="", help="what a file name has before the number")
    parser.add_argument("--suffix", default=".png", help=".png, .exr, .jpg, .tif or .dpx")
    parser.add_argument("--index-width", type=int, default=4, metavar="DIGITS", help="of the number, at least (4)")


def add_export(parser):
    parser.add_work()
    add_files(parser)
    parser.add_argument("--colorize", choices=sorted(COLORIZE), default="Grayscale")
    parser.add_argument("--by-layer", action="store_true",
                        help="a sequence for each layer, its name and a point behind the prefix")
    parser.add_argument("--separate-streams", action="store_true", help="a sequence for each view")


def sequences(layers, options):
    """(prefix, layers) of each sequence that an export writes."""
    prefix = vireo.path(options.prefix)
    if not options.by_layer:
        return [(prefix, layers)]
    names = [u"%s%s." % (prefix, layer.name.replace(u"/", u"_")) for layer in layers]
    for name in names:
        if names.count(name) > 1:
            raise common.Refused(u"several layers would be written as '%s'" % name)
    return [(name, [layer]) for name, layer in zip(names, layers)]


def export(parser, arguments):
    add_export(parser)
    options = parser.parse_args(arguments)
    project = common.open_project(options)
    layers, views = common.layers_of(project, options), common.views_of(project, options)
    first, last = common.frames_of(project, options)
    folder = common.writable_folder(options.path)
    if not layers:
        raise common.Refused("there is no layer to export")
    for prefix, each in sequences(layers, options):
        clip = project.export_rendered_shapes(
            each, COLORIZE[options.colorize], u"Mattes", folder, prefix, vireo.path(options.suffix), first, last,
            index_width=options.index_width, views=views, separate_streams=options.separate_streams)
        stream = clip.get_info(clip.views[0])
        common.say(u"%s to %s" % (common.file_of(stream, stream.start_frame),
                                  os.path.basename(common.file_of(stream, stream.end_frame))))


def add_render(parser):
    parser.add_argument("operation", choices=sorted(OPERATIONS))
    parser.add_work(views=False)
    parser.add_argument("--view", type=int, default=0, metavar="ID")
    parser.add_argument("--output-dir", metavar="FOLDER", help="that results are written below; the project's otherwise")


def render(parser, arguments):
    add_render(parser)
    parser.add_save()
    options = parser.parse_args(arguments)
    project = common.open_project(options)
    layers = common.layers_of(project, options)
    first, last = common.frames_of(project, options)
    target = common.target_of(project, options)
    options.views = [options.view]
    common.views_of(project, options)
    if options.output_dir:
        project.set_output_dir(common.writable_folder(options.output_dir))
    if not project.get_output_dir():
        raise common.Refused("the project has no output folder: name one, --output-dir FOLDER")
    common.writable_folder(project.get_output_dir())
    clip = project.render(OPERATIONS[options.operation](), first, last, layers, view=options.view)
    project.save_as(target)
    stream = clip.get_info(clip.views[0])
    common.say(u"%s: %s and on; %s" % (clip.name, common.file_of(stream, stream.start_frame), target))
