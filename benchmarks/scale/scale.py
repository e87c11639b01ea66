"""Whether the cost of an operation grows with the project: microseconds per item at several sizes, and memory.

scale.py [SIZE...]     1000 10000 100000 when no sizes are given
"""

import gc
import json
import os
import random
import subprocess
import sys
import tempfile
import time

SAMPLE = 1000  # operations on single items are done to at most so many of them


def resident():
    """Bytes of this process in memory."""
    with open('/proc/self/statm') as numbers:
        return int(numbers.read().split()[1]) * os.sysconf('SC_PAGE_SIZE')


class Record(object):
    """What one child process measured, in the order in which it was measured."""

    def __init__(self):
        self.rows = []

    def time(self, name, operation, count):
        """Processor time per item of one call of the operation, which handles so many."""
        start = time.clock()
        result = operation()
        self.rows.append((name, 'us', (time.clock() - start) / count * 1e6))
        return result

    def each(self, name, operation, items):
        def run():
            for item in items:
                operation(item)
        self.time(name, run, len(items))

    def bytes(self, name, make, count):
        """Memory per item of what the operation makes and the caller keeps."""
        before = resident()
        made = self.time(name, make, count)
        self.rows.append((name, 'bytes', (resident() - before) / float(count)))
        return made


def sample(items):
    items = list(items)
    random.Random(1).shuffle(items)
    return items[:SAMPLE]


def history(record, project, name, change):
    """One undoable step of the whole, undone and done again."""
    group = project.undo_group()
    with group:
        change()
    record.time(name + ': undo', group.undo, 1)
    record.time(name + ': redo', group.redo, 1)


def layers(record, size, vp):
    project = vp.Project(u'')
    record.bytes('add a layer', lambda: [project.add_layer(None, u'layer %d' % i) and None for i in xrange(size)], size)
    handles = record.bytes('list all layers', lambda: project.layers, size)
    some = sample(handles)
    record.each('read a name', lambda layer: layer.name, some)
    record.each('rename', lambda layer: setattr(layer, 'name', u'renamed'), some)
    record.each('read the place', lambda layer: layer.z_order, some)
    record.each('move by one place', lambda layer: setattr(layer, 'z_order', layer.z_order + 1), some)
    record.each('layer by index', project.layer, sample(range(size)))
    record.each('hash', hash, some)
    record.time('find by name', lambda: project.find_layers(u'layer 1'), size)
    history(record, project, 'rename one', lambda: setattr(some[0], 'name', u'again'))
    file_name = os.path.join(tempfile.mkdtemp(), u'scale.vireo')
    record.time('save', lambda: project.save_as(file_name), size)
    record.time('load', lambda: vp.Project(file_name), size)
    os.remove(file_name)
    os.rmdir(os.path.dirname(file_name))
    record.each('remove', lambda layer: layer.remove(), some)
    record.time('let go of all handles', lambda: handles.__delslice__(0, size), size)


def points(record, size, vp):
    project = vp.Project(u'')
    layer = project.add_layer(None, u'layer')
    view = vp.View(0)
    records = record.bytes('make a record', lambda: [vp.BezierControlPointData(x=float(i), y=float(i % 7))
                                                     for i in xrange(size)], size)
    contour = record.bytes('add a contour, per point', lambda: layer.add_bezier_contour(0.0, records, view), size)
    handles = record.bytes('list all points', lambda: contour.control_points, size)
    some = sample(handles)
    data = vp.BezierControlPointData(x=1.0, y=2.0)
    record.each('point by index', contour.control_point, sample(range(size)))
    record.each('read its record', lambda point: point.get_point_data(0.0, view), some)
    record.each('write its record', lambda point: point.set_point_data(0.0, data, view), some)
    record.each('insert a point in the middle',
                lambda place: contour.insert_point(0.0, data, place, view), sample(range(size)))
    record.each('append a point', lambda _: contour.insert_point(0.0, data), sample(range(size)))
    record.time('bounding rectangle', lambda: contour.get_bounding_rect(0.0, view), size)
    record.each('remove a point', lambda point: point.remove(), some)


def keyframes(record, size, vp):
    project = vp.Project(u'')
    layer = project.add_layer(None, u'layer')
    view = vp.View(0)
    opacity = layer.parameter(['opacity'])
    times = range(size)
    record.bytes('key forwards', lambda: [opacity.set(0.5, float(i), view) for i in times] and None, size)
    record.each('read at a keyframe', lambda i: opacity.get(float(i), view), sample(times))
    record.each('read between keyframes', lambda i: opacity.get(i + 0.5, view), sample(times))
    record.each('change a keyframe', lambda i: opacity.set(0.25, float(i), view), sample(times))
    record.each('insert a keyframe', lambda i: opacity.set(0.25, i + 0.5, view), sample(times))
    record.time('list the keyframes', lambda: opacity.keyframes, size)
    record.each('delete a keyframe', lambda i: opacity.delete_keyframe(float(i), view), sample(times))
    other = project.add_layer(None, u'other').parameter(['opacity'])
    record.time('key in any order', lambda: [other.set(0.5, float(i), view) for i in
                                             random.Random(2).sample(times, size)], size)


def wrappers(record, size, vp):
    view = vp.View(1)
    record.bytes('object()', lambda: [object() for _ in xrange(size)], size)
    kept = [record.bytes('View', lambda: [vp.View(i) for i in xrange(size)], size),
            record.bytes('ViewInfo', lambda: [vp.ViewInfo(u'Left', u'L') for _ in xrange(size)], size)]
    project = vp.Project(u'')
    layer = project.add_layer(None, u'layer')
    kept.append(record.bytes('Layer', lambda: [project.layer(0) for _ in xrange(size)], size))
    del kept, layer, view


SUBJECTS = [layers, points, keyframes, wrappers]


def measured(subject, size):
    """The rows of one subject at one size, from a process of its own."""
    answer = subprocess.check_output([sys.executable, __file__, '--child', subject.__name__, str(size)])
    return json.loads(answer.splitlines()[-1])


def child(subject_name, size):
    from PySide import QtCore
    application = QtCore.QCoreApplication([])
    from vireo import project as vp
    gc.disable()
    record = Record()
    dict((subject.__name__, subject) for subject in SUBJECTS)[subject_name](record, size, vp)
    print json.dumps(record.rows)
    sys.stdout.flush()
    del application
    os._exit(0)  # freeing a large project is no part of what is measured


def main(sizes):
    for subject in SUBJECTS:
        columns = [measured(subject, size) for size in sizes]
        head = [subject.__name__, 'unit'] + ['{:,}'.format(size) for size in sizes]
        print '| ' + ' | '.join(head) + ' |'
        print '|---|---|' + '--:|' * len(sizes)
        for row in zip(*columns):
            cells = ['%.*f' % (1 if value < 100 else 0, value) for _, _, value in row]
            print '| ' + ' | '.join([row[0][0], row[0][1]] + cells) + ' |'
        print


if sys.argv[1:2] == ['--child']:
    child(sys.argv[2], int(sys.argv[3]))
else:
    main([int(size) for size in sys.argv[1:]] or [1000, 10000, 100000])
