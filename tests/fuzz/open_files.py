"""Opens each file whose path comes on standard input, and says how that ended and how much memory it took at most."""

import os
import shutil
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from vireo.project import Clip, Project

LAST = 2 ** 32 - 1


def peak():
    """In kilobytes, since it was asked for last."""
    with open("/proc/self/status") as status:
        found = [int(line.split()[1]) for line in status if line.startswith("VmHWM")]
    with open("/proc/self/clear_refs", "w") as clear:
        clear.write("5")
    return found[0]


def read_image(path, folder):
    clip = Clip(path)
    clip.frame_size
    clip.export(None, folder, u"out.", u".exr", u"", 0, LAST)


def shown(parameters):
    """Every value at some times, so that nothing of a project is left unread."""
    for parameter in parameters.parameters:
        for frame in (0.0, 7.5, 4294967295.0):
            parameter.get(frame)
        parameter.keyframes
    for subset in parameters.subsets:
        shown(subset)


def read_project(path, folder):
    """What opens can be read, saved, and opened again."""
    project = Project(path)
    shown(project.parameter_set())
    for layer in project.layers:
        layer.contours, layer.link_to_track
        layer.get_transform_matrix(3.0)
        for contour in layer.contours:
            [point.get_point_data(2.0) for point in contour.control_points]
    project.save_as(os.path.join(folder, u"saved"))
    Project(os.path.join(folder, u"saved"))


def main():
    read = {"images": read_image, "projects": read_project}[sys.argv[1]]
    folder = sys.argv[2].decode("utf-8")
    for line in iter(sys.stdin.readline, ""):
        path = line.rstrip("\n").decode("utf-8")
        peak()
        try:
            read(path, folder)
            outcome = "read"
        except Exception as error:
            outcome = type(error).__name__ + ": " + str(error).replace("\n", " ")
        print("%d %s" % (peak(), outcome))
        sys.stdout.flush()
        for name in os.listdir(folder):
            os.remove(os.path.join(folder, name))


main()
