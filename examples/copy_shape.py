"""Copies a layer's shapes to another layer, with every keyframe of their points."""
from vireo import project as vp


def times_of(contour):
    """The times at which anything of the contour is keyed, in the first view."""
    return sorted(set(time for view, time in contour.parameter_set().keyframes if view == vp.View(0))) or [0.0]


def copy_contour(contour, layer):
    times = times_of(contour)
    points = contour.control_points
    add = layer.add_bezier_contour if isinstance(contour, vp.BezierContour) else layer.add_xspline_contour
    copy = add(times[0], [point.get_point_data(times[0], vp.View(0)) for point in points], vp.View(0))
    for time in times[1:]:
        for source, target in zip(points, copy.control_points):
            target.set_point_data(time, source.get_point_data(time, vp.View(0)), vp.View(0))
    return copy


def main():
    project = vp.Project(u'')
    source = project.add_layer(None, u'Door')
    target = project.add_layer(None, u'Door copy')

    contour = source.add_bezier_contour(0.0, [
        vp.BezierControlPointData(x=10.0, y=10.0, handle_offset_forward=(15.0, -10.0)),
        vp.BezierControlPointData(x=60.0, y=10.0), vp.BezierControlPointData(x=35.0, y=50.0)])
    for point in contour.control_points:
        moved = point.get_point_data(0.0)
        moved.x += 100.0
        point.set_point_data(20.0, moved)

    with project.undo_group():
        for each in source.contours:
            copy_contour(each, target)

    copy = target.contours[0]
    for time in (0.0, 5.0, 20.0):
        assert copy.get_bounding_rect(time) == contour.get_bounding_rect(time)
        print 'frame %2d: %s' % (time, [round(value, 2) for value in copy.get_bounding_rect(time)])


main()
