"""Changes a project's settings as one undoable step, saves it, and reads it back.

Runs inside the application, where it works on the open project, and in a Python of its own:

    vireo examples/project_settings.py
    python2.7 examples/project_settings.py
"""
import os
import shutil
import tempfile

from vireo import project as vp


def open_project():
    """The application's project, or a new one outside of it."""
    current = getattr(vp, 'get_current_project', lambda: None)()
    return current if current is not None else vp.Project(u'')


def main():
    folder = tempfile.mkdtemp()
    try:
        project = open_project()
        changes = []
        project.settingChanged.connect(lambda name: changes.append(name))

        step = project.undo_group()
        with step:
            project.length = 240
            project.frame_rate = 25
            project.in_out_range = (10, 99)
            project.notes = u'Plate 12, caf\xe9 scene'
            project.set_output_dir(folder, validate=True)
            project.views = [vp.ViewInfo(u'Left', u'L', (1.0, 0.0, 0.0)),
                             vp.ViewInfo(u'Right', u'R', color=(0.0, 0.0, 1.0))]
            project.default_hero_view = 1
        print 'changed:', ', '.join(sorted(set(changes)))

        step.undo()
        print 'after undo: %d views, %d frames' % (len(project.views), project.length)
        step.redo()
        print 'after redo: %d views, %d frames' % (len(project.views), project.length)

        try:
            project.frame_rate = -1
        except ValueError as error:
            print 'refused:', error

        name = os.path.join(folder, 'shot.vireo')
        project.save_as(name)
        copy = vp.Project(name)
        print 'saved and read back: %g frames per second, range %s, hero view %s' % (
            copy.frame_rate, copy.in_out_range, copy.views[copy.default_hero_view.id].name)
        assert copy.notes == project.notes
    finally:
        shutil.rmtree(folder)


main()
