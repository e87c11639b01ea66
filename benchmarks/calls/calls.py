"""What a call costs: the module beside the same operations bound by hand (the floor) and by generators, in one process.

calls.py [--smoke] [--real] [--no-counts] [--only TEXT]
    --smoke      a few rounds: shows that everything runs and answers alike
    --real       the stand-in engine behind the operations, not the model that does nothing
    --no-counts  times only
    --only TEXT  the operations whose name contains the text
"""

import argparse
import ctypes
import gc
import os
import sys
import threading
import time

import counting
from operations import OPERATIONS, UNIT, compiled, prepare, value

ROUNDS = 15
SECONDS = 0.02  # one loop of a round


def still_model():
    """Puts the model that does nothing before the library: of two functions of a name, the first that is loaded is
    taken."""
    for folder in sys.path:
        path = os.path.join(folder, 'libstill-model.so')
        if os.path.exists(path):
            return ctypes.CDLL(path, ctypes.RTLD_GLOBAL)
    raise SystemExit('calls.py: libstill-model.so is not on the Python path')


def load(real):
    """[(name, names for the statements)], the module first and the floor next; those that are not built are left out."""
    if not real:
        still_model()
    from PySide import QtCore
    application = QtCore.QCoreApplication([])
    import vireo.project
    import floor
    found = [('module', vireo.project), ('floor', floor)]
    for name in ('pybind11', 'swig', 'cython'):
        try:
            found.append((name, __import__('with_' + name)))
        except ImportError:
            pass
    # The interpreter's lock is let go of only once there are threads.
    thread = threading.Thread(target=lambda: None)
    thread.start()
    thread.join()
    return application, floor, [(name, prepare(binding)) for name, binding in found]


def seconds(loop, rounds):
    start = time.clock()
    loop(rounds)
    return time.clock() - start


def length_for(loop):
    """Rounds that take about SECONDS."""
    length = 1
    while True:
        taken = seconds(loop, xrange(length))
        if taken > SECONDS / 4:
            return max(1, int(length * SECONDS / taken))
        length *= 4


def measure(operation, bindings):
    """{binding: nanoseconds per call}, the best of all rounds; in each round the bindings take turns."""
    loops = []
    for name, names in bindings:
        try:
            loop = compiled(operation, names)
            loops.append((name, loop, length_for(loop)))
        except Exception as error:  # an operation that a generator does not bind
            sys.stderr.write('%s: %s: %s\n' % (name, operation.name, error))
    empty = compiled(operation._replace(statement='pass'), bindings[0][1])
    best = {}
    for _ in range(ROUNDS):
        for name, loop, length in loops:
            own = seconds(loop, xrange(length)) - seconds(empty, xrange(length))
            taken = own / length / operation.unrolled * 1e9
            best[name] = min(best.get(name, taken), taken)
    return best


def table(head, rows):
    print '| ' + ' | '.join(head) + ' |'
    print '|' + '|'.join(['---'] + ['--:'] * (len(head) - 1)) + '|'
    for row in rows:
        print '| ' + ' | '.join(row) + ' |'
    print


def number(value):
    return '-' if value is None else '{:,.0f}'.format(value)


def ratio(value, other, digits=2):
    return '-' if value is None or not other else '%.*f' % (digits, value / other)


def report(operations, times, counts, unit, others):
    rows = []
    for place, operation in enumerate(operations):
        own, floor = times[place].get('module'), times[place].get('floor')
        own_count, floor_count = counts.get(('module', place)), counts.get(('floor', place))
        aim = '' if operation.aim is None else '%.1f' % operation.aim
        rows.append((operation.name, number(own), number(floor), ratio(own, floor), number(own_count),
                     number(floor_count), ratio(own_count, floor_count), aim))
    table(('per call', 'module ns', 'floor ns', 'ratio', 'module instructions', 'floor instructions', 'ratio', 'aim'),
          rows)
    if not others:
        return
    print 'In units of a call of a Python method that does nothing, %.0f ns here:\n' % unit
    names = ['module', 'floor'] + others
    table(['per call'] + names,
          [[operation.name] + [ratio(times[place].get(name), unit, 1) for name in names]
           for place, operation in enumerate(operations)])


def smoke(bindings):
    """Every operation runs in every binding, and answers alike in the module and in the floor."""
    for operation in OPERATIONS:
        answers = [value(operation, names) for _, names in bindings[:2]]
        if answers[0] != answers[1]:
            raise SystemExit('%s: the module answers %r, the floor %r' % (operation.name, answers[0], answers[1]))
        for _, names in bindings:
            compiled(operation, names)(xrange(2))
    print '%d operations in %s' % (len(OPERATIONS), ', '.join(name for name, _ in bindings))


def main():
    parser = argparse.ArgumentParser()
    for option in ('--smoke', '--real', '--no-counts', '--counted'):
        parser.add_argument(option, action='store_true', help=argparse.SUPPRESS if option == '--counted' else None)
    parser.add_argument('--only', default='')
    options = parser.parse_args()
    application, floor, bindings = load(options.real)
    operations = [operation for operation in OPERATIONS if options.only in operation.name]
    if options.smoke:
        return smoke(bindings)
    if options.counted:
        return counting.loops(floor, bindings, operations)
    gc.disable()
    unit = measure(UNIT, bindings[:1])['module']
    times = [measure(operation, bindings) for operation in operations]
    counts = {} if options.no_counts else counting.counts(sys.argv + ['--counted'])
    report(operations, times, counts, unit, [name for name, _ in bindings[2:]])


main()
