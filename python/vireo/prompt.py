"""What the application's prompt has ready: names that are completed, and the project that is open."""

import __main__


def prepare(has_project):
    try:
        import readline
        import rlcompleter
        readline.set_completer(rlcompleter.Completer(vars(__main__)).complete)
        readline.parse_and_bind("tab: complete")
    except ImportError:
        pass  # an interpreter without it completes nothing
    if has_project:
        from vireo import project
        __main__.project = project.get_current_project()
