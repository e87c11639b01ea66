"""Instructions per call, which repeat where times do not: two loops of different length under Valgrind's callgrind."""

import glob
import gc
import os
import re
import shutil
import subprocess
import sys
import tempfile

from operations import compiled

FEW, MORE = 20, 60


def loops(floor, bindings, operations):
    """The child's part: every loop leaves a dump that bears its name."""
    gc.disable()
    for _ in range(2):  # the first use of each binds it to its library
        floor.begin_count()
        floor.end_count('unused/0/0')
    for name, names in bindings:
        for place, operation in enumerate(operations):
            loop = compiled(operation, names)
            rounds = [xrange(length / operation.unrolled or 1) for length in (FEW, MORE)]
            try:
                loop(rounds[0])
            except Exception:
                continue
            for each in rounds:
                floor.begin_count()
                loop(each)
                floor.end_count('%s/%d/%d' % (name, place, len(each) * operation.unrolled))


def counts(arguments):
    """{(binding, place of the operation): instructions per call}, from a run of this program with the arguments."""
    folder = tempfile.mkdtemp()
    try:
        subprocess.check_call(
            ['valgrind', '-q', '--tool=callgrind', '--callgrind-out-file=' + os.path.join(folder, 'out'),
             '--combine-dumps=no', sys.executable] + arguments)
        totals = {}
        for path in glob.glob(os.path.join(folder, 'out.*')):
            with open(path) as dump:
                text = dump.read()
            trigger = re.search(r'Client Request: (\S+)/(\d+)/(\d+)', text)
            if trigger:
                total = int(re.search(r'^(?:totals|summary): (\d+)', text, re.MULTILINE).group(1))
                totals.setdefault((trigger.group(1), int(trigger.group(2))), {})[int(trigger.group(3))] = total
    finally:
        shutil.rmtree(folder)
    return dict((key, (both[max(both)] - both[min(both)]) / float(max(both) - min(both)))
                for key, both in totals.items() if len(both) == 2)
