"""Links a point of one shape to a point of another, so that it follows it."""
from vireo import project as vp


def main():
    project = vp.Project(u'')
    layer = project.add_layer(None, u'Frame')
    leader = layer.add_bezier_contour(0.0, [vp.BezierControlPointData(x=float(x), y=float(y))
                                            for x, y in ((0, 0), (40, 0), (40, 30))]).control_point(1)
    follower = layer.add_xspline_contour(0.0, [vp.XControlPointData(x=float(x), y=float(y))
                                               for x, y in ((50, 10), (80, 10), (65, 40))]).control_point(0)

    follower.set_master_point(leader)
    print 'the master is a', type(follower.master_point).__name__

    moved = vp.BezierControlPointData(x=60.0, y=5.0)
    leader.update_point_data(0.0, moved)
    data = follower.get_point_data(0.0)
    print 'the follower went along to (%g, %g)' % (data.x, data.y)

    try:
        leader.set_master_point(follower)
    except ValueError as error:
        print 'refused:', error

    follower.set_master_point(None)
    print 'linked:', follower.master_point is not None


main()
