# Every test of the runtime's objects leaves as many C++ objects behind as it found.
import gc

import probe
import support


class Case(support.Case):
    def setUp(self):
        gc.collect()
        self.before = probe.alive()

    def tearDown(self):
        gc.collect()
        self.assertEqual(probe.alive(), self.before)
