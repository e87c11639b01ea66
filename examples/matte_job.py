"""The whole job: footage in, a tracked shape, mattes and a stabilized clip out, the project saved and opened again.

    vireo examples/matte_job.py [FOLDER [FRAMES]]

Makes footage of a textured surface that moves, turns and tilts (its corners are known in every frame) while a bar
passes in front of it, draws a shape around it on the first frame, and lets the project do the rest. Ends with a contact
sheet and the error of the track against what is known. Everything is written below FOLDER (vireo-demo).
"""
import json
import math
import os
import subprocess
import sys

from vireo import project as vp

FRAMES = int(sys.argv[2]) if len(sys.argv) > 2 else 60
SIZE = '640x360'


def program(name):
    """A program of ours, which lies beside the application; that may have been started by a link."""
    for folder in (os.path.dirname(os.path.realpath(sys.executable)), os.environ.get('VIREO_BIN', '')):
        if os.path.exists(os.path.join(folder, name)):
            return os.path.join(folder, name)
    return name


def make_footage(folder):
    subprocess.check_call([program('vireo-make-footage'), '--size', SIZE, '--frames', str(FRAMES), '--occluder', folder])
    with open(os.path.join(folder, 'truth.json')) as truth:
        return [frame['corners'] for frame in json.load(truth)['frames']]


def new_project(footage, folder):
    """A project over the footage, which is the application's current one where there is one."""
    clip = vp.Clip(os.path.join(footage, 'plate.####.png'), clip_name=u'Plate', validate=True)
    project = vp.Project(clip)
    results = os.path.join(folder, 'results')
    if not os.path.isdir(results):
        os.makedirs(results)
    project.set_output_dir(results, validate=True)
    return project


def draw_shape(project, corners):
    layer = project.add_layer(None, u'Poster')
    layer.matte_color = (0.1, 0.9, 0.3)
    layer.add_bezier_contour(0.0, [vp.BezierControlPointData(x=float(x), y=float(y), corner=True) for x, y in corners])
    return layer


def say(text):
    print text
    sys.stdout.flush()


def root_mean_square(values):
    return math.sqrt(sum(value * value for value in values) / len(values))


def corner_errors(layer, truth):
    """The distance of each tracked corner from the true one, in pixels, over all frames.

    The track carries the shape of the first frame along, so its corners are those of the first frame's truth, moved.
    """
    errors = []
    for frame, corners in enumerate(truth):
        (a, b, c), (d, e, f), (g, h, i) = layer.get_transform_matrix(float(frame))
        for (x, y), (true_x, true_y) in zip(truth[0], corners):
            w = g * x + h * y + i
            errors.append(math.hypot((a * x + b * y + c) / w - true_x, (d * x + e * y + f) / w - true_y))
    return errors


def file_of(clip, index):
    info = clip.get_info(clip.views[0])
    number = str(info.start_frame + index).zfill(info.index_width)
    return os.path.join(info.path, info.prefix + number + info.suffix)


def contact_sheet(folder, footage, mattes, stabilized, layer, truth):
    rows = []
    for frame in (0, FRAMES // 3, 2 * FRAMES // 3, FRAMES - 1):
        plate, matte = file_of(footage, frame), file_of(mattes, frame)
        rows.append({'label': 'frame %d' % frame, 'cells': [
            {'image': plate}, {'image': matte},
            {'image': plate, 'matte': matte, 'color': list(layer.matte_color), 'outline': truth[frame]},
            {'image': file_of(stabilized, frame)}]})
    description, sheet = os.path.join(folder, 'sheet.json'), os.path.join(folder, 'contact-sheet.png')
    with open(description, 'w') as out:
        json.dump({'width': 320, 'title': 'Track a shape, render mattes', 'rows': rows,
                   'columns': ['footage', 'matte', 'matte over footage, true outline', 'stabilized']}, out)
    subprocess.check_call([program('vireo-contact-sheet'), description, sheet])
    return sheet


def main(folder):
    footage_folder, matte_folder = os.path.join(folder, 'footage'), os.path.join(folder, 'mattes')
    if not os.path.isdir(matte_folder):
        os.makedirs(matte_folder)

    truth = make_footage(footage_folder)
    say('footage: %d frames of %s below %s' % (len(truth), SIZE, footage_folder))

    project = new_project(footage_folder, folder)
    layer = draw_shape(project, truth[0])
    say('shape:   %d points on frame 0' % len(layer.contours[0].control_points))

    project.track_layers(layers=[layer])
    say('track:   %d keyframes' % len(layer.parameter_set().keyframes))

    mattes = project.export_rendered_shapes([layer], vp.Grayscale, u'Mattes', matte_folder, u'matte.', u'.png',
                                            0, project.length - 1, index_width=4)
    say('mattes:  ' + file_of(mattes, 0) + ' and on')

    stabilized = project.render(vp.RenderStabilizeOperation(), 0, project.length - 1, [layer])
    say('stable:  ' + file_of(stabilized, 0) + ' and on')

    name = os.path.join(folder, 'poster.vireo')
    project.save_as(name)
    reopened = vp.Project(name)
    layer = reopened.find_layers(u'Poster')[0]
    say('project: saved as %s and opened again: %d layer, %d clips' % (name, len(reopened.layers), len(reopened.clips)))

    sheet = contact_sheet(folder, reopened.default_trackable_clip, mattes, stabilized, layer, truth)
    say('sheet:   ' + sheet)

    errors = corner_errors(layer, truth)
    say('error of the corners against the truth: %.3f pixels root mean square, %.3f at worst' % (
        root_mean_square(errors), max(errors)))


main(os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else 'vireo-demo'))
