"""The measured operations: statements over the names that prepare() makes, the same for every binding."""

import operator
from collections import namedtuple

# `aim` is the most that the module may take of what the floor takes; None where no aim is set.
Operation = namedtuple('Operation', 'name statement aim unrolled')


def operation(name, statement, aim=None, unrolled=10):
    return Operation(name, statement, aim, unrolled)


def failing(name, statement, error):
    return Operation(name, 'try:\n    %s\nexcept %s:\n    pass' % (statement, error), None, 10)


def many(name, statement, aim=None):
    return Operation(name, statement, aim, 1)


OPERATIONS = [
    operation('get a number', 'view.id', 1.2),
    operation('get a text', 'info.name', 1.2),
    operation('get a float of a Qt object', 'clip.frame_rate', 1.2),
    operation('method without arguments', 'layer.isNull()', 1.2),
    operation('truth value', 'not layer', 1.2),
    operation('set a text', 'info.name = text', 1.2),
    operation('set a float', 'clip.frame_rate = 25.0', 1.2),
    operation('two positional arguments', 'clip.assign_project_view(view, other)', 1.1),
    operation('two positional arguments, converted', 'clip.assign_project_view(1, 2)', 1.1),
    operation('five positional arguments', 'clip.add_stream(text, view, 1, 100, False)', 1.1),
    operation('four and one by keyword', 'clip.add_stream(text, view, 1, 100, validate=False)', 1.0),
    failing('fail: a wrong argument', "clip.assign_project_view(view, 'left')", 'TypeError'),
    failing('fail: too few arguments', 'clip.assign_project_view(view)', 'TypeError'),
    failing('fail: library exception', 'layer.z_order', 'RuntimeError'),
    operation('make and destroy, one argument', 'View(3)'),
    operation('make and destroy, two texts', 'ViewInfo(text, text)'),
    operation('make and destroy, two keywords', 'Record(x=1.0, y=2.0)'),
    operation('compare: equal', 'view == other'),
    operation('compare: less', 'view < other'),
    operation('hash', 'hash(view)'),
    many('sort 1,000 views', 'sorted(views)'),
    many('1,000 records in', 'layer.add_bezier_contour(0.0, records, view)', 1.2),
    many('1,000 handles out', 'get_layers(project)', 1.2),
    many('1,000 handles out, as plain objects', 'project.layers'),
]


class Plain(object):
    """The unit: what a call of a Python method costs."""

    def method(self):
        pass


UNIT = Operation('Python method', 'plain.method()', None, 10)


def layers_of(binding):
    """What answers a project's layers as the module's own objects: of the floor, a function that makes these by hand."""
    function = getattr(binding, 'wrapped_layers', None) or getattr(binding.Project.layers, 'fget', None)
    return function or operator.attrgetter('layers')


def prepare(binding):
    """The names that the statements use, made by one binding."""
    project = binding.Project(u'')
    view = binding.View(1)
    return {
        'View': binding.View,
        'ViewInfo': binding.ViewInfo,
        'Record': binding.BezierControlPointData,
        'project': project,
        'get_layers': layers_of(binding),
        'clip': binding.Clip(u''),
        'layer': project.layers[0],
        'view': view,
        'other': binding.View(2),
        'views': [binding.View(i * 7919 % 1000) for i in range(1000)],
        'info': binding.ViewInfo(u'Left', u'L'),
        'records': [binding.BezierControlPointData(x=1.0, y=float(i)) for i in range(1000)],
        'text': u'/plates/shot/left',
        'plain': Plain(),
    }


def compiled(operation, names):
    """A function that runs the statement for each of the given rounds, with all names as its locals."""
    body = '\n'.join(['        ' + line for line in operation.statement.split('\n')] * operation.unrolled)
    source = 'def loop(_rounds, %s):\n    for _ in _rounds:\n%s' % (
        ', '.join('%s=%s' % (name, name) for name in sorted(names)), body)
    space = dict(names)
    exec source in space
    return space['loop']


def value(operation, names):
    """What the operation answers, in a form that two bindings can be compared by; None for what has no such form."""
    if operation.statement.startswith('try:') or '=' in operation.statement.split('(')[0]:
        return None
    try:
        answer = eval(operation.statement, dict(names))
    except SyntaxError:
        return None
    if isinstance(answer, list):
        return len(answer)
    return answer if isinstance(answer, (bool, int, long, float, unicode)) else None
