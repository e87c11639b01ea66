"""Runs the application and other programs in a clean environment, and collects what they say."""
import os
import subprocess

program = os.environ["VIREO_PROGRAM"]


def environment(**changes):
    """That of a user: no PYTHONPATH, so that programs have to find what they need on their own."""
    kept = dict((name, value) for name, value in os.environ.items() if not name.startswith(("PYTHON", "VIREO")))
    kept.update(changes)
    return kept


def run(arguments, stdin="", cwd=None, **changes):
    """Returns the exit code, what was printed and what was complained about."""
    process = subprocess.Popen(arguments, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               cwd=cwd, env=environment(**changes))
    printed, complaints = process.communicate(stdin)
    return process.returncode, printed, complaints


def vireo(*arguments, **options):
    return run((program,) + arguments, **options)
