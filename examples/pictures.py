"""The pictures of docs/pictures.md: what each render operation makes of footage, and how shapes become mattes.

    vireo examples/pictures.py [FOLDER]

Makes small footage of a poster before a wall, tracks both, and writes results and contact sheets below FOLDER
(vireo-pictures).
"""
import json
import os
import subprocess
import sys

from vireo import project as vp

FRAMES = 24
SIZE = '480x270'


def program(name):
    """A program of ours, which lies beside the application."""
    folders = (os.path.dirname(os.path.abspath(sys.executable)), os.environ.get('VIREO_BIN', ''))
    return next((os.path.join(folder, name) for folder in folders if os.path.exists(os.path.join(folder, name))), name)


def make_footage(folder, *options):
    subprocess.check_call((program('vireo-make-footage'), '--size', SIZE, '--frames', str(FRAMES)) + options + (folder,))
    with open(os.path.join(folder, 'truth.json')) as truth:
        return [frame['corners'] for frame in json.load(truth)['frames']]


def bezier(points, corner=True, edge=0.0):
    return [vp.BezierControlPointData(x=float(x), y=float(y), corner=corner, edge_width=edge) for x, y in points]


def box(left, top, right, bottom):
    return [(left, top), (right, top), (right, bottom), (left, bottom)]


def project_over(footage, folder):
    project = vp.Project(vp.Clip(os.path.join(footage, 'plate.####.png'), clip_name=u'Plate', validate=True))
    project.set_output_dir(folder)
    return project


def file_of(clip, frame):
    info = clip.get_info(clip.views[0])
    return os.path.join(info.path, info.prefix + str(info.start_frame + frame).zfill(info.index_width) + info.suffix)


def contact_sheet(name, title, columns, rows, width=320):
    description = name + '.json'
    with open(description, 'w') as out:
        json.dump({'width': width, 'title': title, 'columns': columns,
                   'rows': [{'label': label, 'cells': cells} for label, cells in rows]}, out)
    subprocess.check_call([program('vireo-contact-sheet'), description, name + '.jpg'])
    os.remove(description)
    print name + '.jpg'


def rendered(project, operation, layers):
    return project.render(operation, 0, FRAMES - 1, layers)


def operations(folder):
    """A poster moves before a wall: a colour over it, the wall without it, and the poster standing still."""
    footage = os.path.join(folder, 'poster')
    corners = make_footage(footage)
    project = project_over(footage, folder)
    wall, poster = project.add_layer(None, u'Wall'), project.add_layer(None, u'Poster')
    wall.add_bezier_contour(0.0, bezier(box(20, 15, 460, 255)))
    poster.add_bezier_contour(0.0, bezier(corners[0]))
    poster.matte_color = (0.1, 0.7, 0.3)
    project.track_layers(layers=[wall, poster])
    project.parameter([u'render', u'insert_opacity']).set(0.6, 4294967295.0)
    project.parameter([u'render', u'illumination_model']).set(2, 4294967295.0)
    results = [rendered(project, operation, [poster]) for operation in (
        vp.RenderInsertOperation(), vp.RenderRemoveOperation(), vp.RenderStabilizeOperation())]
    clips = [project.default_trackable_clip] + results
    contact_sheet(os.path.join(folder, 'operations'), 'Insert, remove, stabilize',
                  ['footage', 'insert', 'remove', 'stabilize'],
                  [('frame %d' % frame, [{'image': file_of(clip, frame)} for clip in clips])
                   for frame in (0, FRAMES // 2, FRAMES - 1)])


def bar_at(frame):
    """Where the footage has it, to its full height."""
    width, height = map(int, SIZE.split('x'))
    left = width * (0.05 + 0.9 * frame / (FRAMES - 1))
    return box(round(left), 0.2 * height, round(left + 0.06 * width), height)


def removal(folder):
    """A bar passes before the poster and the wall: it is filled with what other frames show of each."""
    footage = os.path.join(folder, 'bar')
    corners = make_footage(footage, '--occluder')
    project = project_over(footage, folder)
    wall, poster, bar = [project.add_layer(None, name) for name in (u'Wall', u'Poster', u'Bar')]
    wall.add_bezier_contour(0.0, bezier(box(0, 0, 480, 270)))
    poster.add_bezier_contour(0.0, bezier(corners[0]))
    contour = bar.add_bezier_contour(0.0, bezier(bar_at(0)))
    for frame in range(FRAMES):
        for point, data in zip(contour.control_points, bezier(bar_at(frame))):
            point.set_point_data(float(frame), data)
    project.track_layers(layers=[wall, poster])
    project.parameter([u'render', u'illumination_model']).set(2, 4294967295.0)
    result = rendered(project, vp.RenderRemoveOperation(), [bar])
    frames = (FRAMES // 3, FRAMES // 2, 2 * FRAMES // 3)
    contact_sheet(os.path.join(folder, 'removal'), 'Remove what passes before tracked layers',
                  ['footage', 'removed'],
                  [('frame %d' % frame, [{'image': file_of(project.default_trackable_clip, frame)},
                                         {'image': file_of(result, frame)}]) for frame in frames], 480)


def shapes(folder):
    """One shape each: hard, with a feather to either side, through points without tangents, and with a hole."""
    project = vp.Project(None)
    project.length = 2
    project.add_clip(vp.Clip(u'', clip_name=u'Size', width=320, height=240, length=2), u'Size')
    circle = [(160, 40), (240, 120), (160, 200), (80, 120)]

    def matte(name, draw):
        layer = project.add_layer(None, unicode(name))
        draw(layer)
        clip = project.export_rendered_shapes([layer], vp.Grayscale, unicode(name), os.path.join(folder, 'shapes'),
                                              unicode(name) + u'.', u'.png', 0, 0)
        return {'image': file_of(clip, 0)}

    def spline(weight):
        return lambda layer: layer.add_xspline_contour(
            0.0, [vp.XControlPointData(x=float(x), y=float(y), **weight) for x, y in circle])

    def ring(layer):
        layer.add_bezier_contour(0.0, bezier(box(60, 40, 260, 200)))
        layer.add_bezier_contour(0.0, bezier(box(110, 80, 210, 160), edge=12.0))

    rows = [('Bezier', [matte('corners', lambda layer: layer.add_bezier_contour(0.0, bezier(circle))),
                        matte('outside', lambda layer: layer.add_bezier_contour(0.0, bezier(circle, edge=24.0))),
                        matte('inside', lambda layer: layer.add_bezier_contour(0.0, bezier(circle, edge=-24.0))),
                        matte('hole', ring)]),
            ('X-spline', [matte('curve', spline({})), matte('middle', spline({'weight': -0.4})),
                          matte('polygon', spline({'weight': 0.0})), matte('near', spline({'weight': 1.0}))])]
    contact_sheet(os.path.join(folder, 'shapes'), 'Shapes and mattes',
                  ['hard / through the points', 'feather outside / weight -0.4', 'feather inside / 0', 'a hole / 1'], rows)


def main(folder):
    if not os.path.isdir(folder):
        os.makedirs(folder)
    operations(folder)
    removal(folder)
    shapes(folder)


main(os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else 'vireo-pictures'))
