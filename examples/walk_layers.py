"""Walks the layers and groups of a project, their shapes, and what of them can be animated."""
from vireo import project as vp


def square(left, top, size):
    """Four corner points, clockwise, without tangents."""
    return [vp.BezierControlPointData(x=float(x), y=float(y), corner=True)
            for x, y in ((left, top), (left + size, top), (left + size, top + size), (left, top + size))]


def make_project():
    project = vp.Project(u'')
    body = project.add_layer(None, u'Body')
    body.add_bezier_contour(0.0, square(40, 40, 100))
    head = project.add_layer(None, u'Head')
    head.add_bezier_contour(0.0, square(60, 10, 30))
    head.add_xspline_contour(0.0, [vp.XControlPointData(x=float(x), y=float(y), weight=-1.0)
                                   for x, y in ((70, 20), (80, 20), (75, 30))])
    project.add_group(u'Actor', [body, head])
    project.add_layer(None, u'Background')
    return project


def print_parameters(parameters, indent):
    for subset in parameters.subsets:
        print '%s%s/' % (indent, subset.script_name)
        print_parameters(subset, indent + '    ')
    for parameter in parameters.parameters:
        print '%s%s = %s' % (indent, parameter.name_components[-1], parameter.get(0.0))


def main():
    project = make_project()
    for layer in project.layers:
        group = layer.parent
        print '%s%s, z order %d' % (group.name + ' / ' if group else '', layer.name, layer.z_order)
        for contour in layer.contours:
            print '    %s of %d points, around %s' % (
                type(contour).__name__, len(contour.control_points), [round(v, 2) for v in contour.get_bounding_rect()])
    print
    print 'What can be animated of %s:' % project.layer(0).name
    print_parameters(project.layer(0).parameter_set(), '    ')


main()
