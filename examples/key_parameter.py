"""Keys a parameter, reads it between its keyframes, and finds parameters by name."""
from vireo import project as vp


def main():
    project = vp.Project(u'')
    layer = project.add_layer(None, u'Sign')
    contour = layer.add_bezier_contour(0.0, [vp.BezierControlPointData(x=float(x), y=float(y))
                                             for x, y in ((0, 0), (40, 0), (40, 30))])
    point = contour.control_point(0)

    width = point.parameter(['edge_width'])
    print 'not animated:', width.get()
    width.set(2.0, 0.0)
    width.set(6.0, 10.0)
    print 'keyframes:', [(view.id, time) for view, time in width.keyframes]
    print 'frame 5: %.2f, frame 20: %.2f' % (width.get(5.0), width.get(20.0))
    assert abs(point.get_point_data(5.0).edge_width - 4.0) < 1e-6

    width.delete_keyframe(10.0, vp.View(0))
    print 'without the second keyframe, frame 5: %.2f' % width.get(5.0)

    assert point.parameter_set()['edge_width'] == width
    try:
        point.parameter_set()['edge_with']
    except KeyError as error:
        print 'no such parameter:', error
    print 'a name that leads nowhere is', bool(point.parameter(['edge_with']))


main()
