# Modules that publish their tables, and those that belong to another runtime or to none.
import imp
import re
import sys
import unittest

import probe
from counting import Case


def foreign(name='foreign'):
    """A module whose classes come from a runtime that is not this one."""
    module = imp.new_module(name)
    module.__file__ = '/some/where/%s.so' % name
    module.QObject = type('Shiboken.ObjectType', (type,), {})('QObject', (object,), {})
    return module


class Modules(Case):
    def setUp(self):
        Case.setUp(self)
        self.modules = dict(sys.modules)

    def tearDown(self):
        sys.modules.clear()
        sys.modules.update(self.modules)
        Case.tearDown(self)

    def test_tables(self):
        self.assertEqual(probe.importTypes('probe'), 'probe.Pt')
        self.assertNoLeak(lambda: probe.importTypes('probe'))

    def test_module_of_another_runtime(self):
        sys.modules['foreign'] = foreign()
        other = sys.modules['copied'] = imp.new_module('copied')
        other.__file__ = '/some/where/copied.so'
        other._binding_runtime_tables = object()
        for name in ('foreign', 'copied'):
            for function in (probe.importOnly, probe.importTypes):
                with self.assertRaises(ImportError) as caught:
                    function(name)
                self.assertTrue(re.match(r'%s \(/some/where/%s.so\) belongs to another binding runtime than '
                                         r'/.*libshiboken-python2.7.so$' % (name, name), str(caught.exception)),
                                str(caught.exception))

    def test_module_without_tables(self):
        sys.modules['plain'] = imp.new_module('plain')
        self.assertIs(probe.importOnly('plain'), sys.modules['plain'])
        self.assertRaises(ImportError, probe.importTypes, 'plain')
        sys.modules['none'] = 5
        self.assertRaises(ImportError, probe.importTypes, 'none')
        self.assertRaises(ImportError, probe.importTypes, 'no.such.module')


if __name__ == '__main__':
    unittest.main()
