"""Runs what docs/examples.md shows, and compares what it prints."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = os.environ['VIREO_SOURCE']
SHOWN = re.compile(r'^    \$ python2\.7 (examples/\w+\.py)\n((?:    .*\n|\n(?=    ))*)', re.MULTILINE)
# A block of code in a guide, and what it prints, where that is shown.
BLOCK = re.compile(r'^```python\n(.*?)^```\n\n?((?:    [^\n]*\n)*)', re.MULTILINE | re.DOTALL)


def shown_examples():
    """Script and expected output, from the page's indented blocks."""
    with open(os.path.join(SOURCE, 'docs', 'examples.md')) as page:
        return [(script, re.sub('^    ', '', output, flags=re.MULTILINE))
                for script, output in SHOWN.findall(page.read() + '\n')]


def output_of(program, script, *arguments):
    process = subprocess.Popen((program, os.path.join(SOURCE, script)) + arguments, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE)
    output, errors = process.communicate()
    return process.returncode, output, errors


class Examples(unittest.TestCase):
    maxDiff = None

    def test_print_what_the_page_shows(self):
        examples = shown_examples()
        self.assertGreaterEqual(len(examples), 5)
        for script, expected in examples:
            for program in (sys.executable, os.environ['VIREO_PROGRAM']):
                code, output, errors = output_of(program, script)
                self.assertEqual((script, code, output.strip()), (script, 0, expected.strip()), errors)

    @unittest.skipUnless(os.environ.get('VIREO_GUIDES') == 'yes', 'the guides run in another configuration')
    def test_the_guides_run_as_they_stand(self):
        for name in ('tutorial', 'questions', 'traps'):
            with open(os.path.join(SOURCE, 'docs', name + '.md')) as page:
                blocks = BLOCK.findall(page.read())
            self.assertGreater(len(blocks), 4)
            folder = tempfile.mkdtemp()
            try:
                subprocess.check_call([os.environ['VIREO_MAKE_FOOTAGE'], '--size', '640x360', '--frames', '40',
                                       os.path.join(folder, 'footage')])
                script = os.path.join(folder, 'script.py')
                with open(script, 'w') as file:
                    file.write('# -*- coding: utf-8 -*-\n' + ''.join(code + 'print "<<>>"\n' for code, _ in blocks))
                process = subprocess.Popen([os.environ['VIREO_PROGRAM'], script], cwd=folder, stdout=subprocess.PIPE,
                                           stderr=subprocess.PIPE)
                output, errors = process.communicate()
                self.assertEqual(process.returncode, 0, errors)
                for (code, expected), printed in zip(blocks, output.split('<<>>\n')):
                    wanted = re.escape(re.sub('(?m)^    ', '', expected).strip()).replace(r'\.\.\.', '.*')
                    self.assertRegexpMatches(printed.strip(), '^(?s)%s$' % wanted, code)
            finally:
                shutil.rmtree(folder)

    def test_every_script_is_shown(self):
        scripts = set('examples/' + name for name in os.listdir(os.path.join(SOURCE, 'examples'))
                      if name.endswith('.py'))
        unshown = scripts - set(script for script, output in shown_examples())
        # What these print differs from machine to machine.
        self.assertEqual(unshown, set(['examples/first_look.py', 'examples/matte_job.py',
                                       'examples/pictures.py']))

    def test_the_whole_job_follows_the_truth(self):
        folder = tempfile.mkdtemp()
        try:
            code, output, errors = output_of(os.environ['VIREO_PROGRAM'], 'examples/matte_job.py', folder, '30')
            self.assertEqual(code, 0, errors)
            self.assertLess(float(re.search(r'([\d.]+) at worst', output).group(1)), 0.5)
            self.assertGreater(os.path.getsize(os.path.join(folder, 'contact-sheet.png')), 1000)
        finally:
            shutil.rmtree(folder)


if __name__ == '__main__':
    unittest.main()
