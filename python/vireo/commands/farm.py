"""`vireo farm`: cuts an export or a render into ranges of frames, and tracking into layers, gives them to Slurm as one
job array, and puts together what comes back.

The work lies in a folder of its own beside its results: a copy of the project, and a folder for each task, which gets
its name when all that belongs into it is there, with the size and checksum of every file. So a task that is killed, or
run twice, changes nothing, and only what was checked is moved to where it belongs.
"""

import hashlib
import json
import os
import pipes
import shutil
import subprocess
import sys
import tempfile
import time

import vireo
from vireo import project as vp
from vireo.commands import common, work

KINDS = ("export", "render", "track")
MADE = "made.json"  # in the folder of a task that is done


def own_command():
    inside = os.path.basename(sys.executable) == "vireo"
    return [sys.executable] if inside else [sys.executable, "-m", "vireo.commands"]


def quoted(command):
    return " ".join(pipes.quote(common.encoded(word)) for word in command)


def write_whole(path, value):
    with open(path + ".new", "w") as file:
        json.dump(value, file, indent=1, sort_keys=True)
        file.flush()
        os.fsync(file.fileno())
    os.rename(path + ".new", path)


def checksum(path):
    digest = hashlib.sha1()
    with open(path, "rb") as file:
        for block in iter(lambda: file.read(1 << 20), b""):
            digest.update(block)
    return digest.hexdigest()


def files_below(folder):
    return sorted(os.path.relpath(os.path.join(at, name), folder)
                  for at, _, names in os.walk(folder) for name in names)


class Job(object):
    """The folder that a job's work lies in."""

    def __init__(self, folder):
        self.folder = folder
        with open(os.path.join(folder, "job.json")) as file:
            self.told = json.load(file)
        self.tasks = self.told["tasks"]

    @classmethod
    def prepare(cls, beside, told, project_file):
        """Makes the folder of a new job beside its results."""
        if not os.path.isdir(beside):
            os.makedirs(beside)
        folder = vireo.path(tempfile.mkdtemp(prefix=".farm-", dir=common.encoded(beside)))
        os.mkdir(os.path.join(folder, "logs"))
        shutil.copyfile(project_file, os.path.join(folder, "project.vireo"))
        write_whole(os.path.join(folder, "job.json"), told)
        return cls(folder)

    def result(self, task):
        return os.path.join(self.folder, "task-%d" % task)

    def done(self):
        return [task for task in range(len(self.tasks)) if os.path.isdir(self.result(task))]

    def undone(self):
        return [task for task in range(len(self.tasks)) if not os.path.isdir(self.result(task))]

    def run(self, task):
        """Does one task, unless it is done: in a folder of this try's own, which then becomes the task's."""
        if os.path.isdir(self.result(task)):
            return 0
        own = vireo.path(tempfile.mkdtemp(prefix="try-%d-" % task, dir=common.encoded(self.folder)))
        places = {u"{project}": os.path.join(self.folder, "project.vireo"), u"{folder}": own}
        arguments = self.told["command"] + self.told["words"] + self.tasks[task]["arguments"]
        for option, place in self.told["files"]:
            arguments = arguments + [option, os.path.join(places[place[0]], *place[1:])]
        code = subprocess.call([common.encoded(word) for word in own_command() + arguments])
        if code == 0:
            made = {name: [os.path.getsize(os.path.join(own, name)), checksum(os.path.join(own, name))]
                    for name in files_below(own)}
            write_whole(os.path.join(own, MADE), made)
            try:
                os.rename(own, self.result(task))
                return 0
            except OSError:
                code = 0 if os.path.isdir(self.result(task)) else 1  # somebody else was first
        shutil.rmtree(own, ignore_errors=True)
        return code

    def checked(self, task):
        """The task's files, when all of them are there and whole; None where the task must be done again."""
        with open(os.path.join(self.result(task), MADE)) as file:
            made = json.load(file)
        for name, (size, digest) in made.items():
            path = os.path.join(self.result(task), name)
            if not os.path.exists(path) or os.path.getsize(path) != size or checksum(path) != digest:
                shutil.rmtree(self.result(task))
                return None
        return sorted(made)

    def command(self, task):
        return own_command() + ["farm", "task", self.folder, str(task)]


# --- What is put together -------------------------------------------------------------------------------------------


def move(job, task, target):
    for name in job.checked(task):
        if not name.endswith(".vireo"):
            os.rename(os.path.join(job.result(task), name), os.path.join(target, os.path.basename(name)))


def collect_export(job, done):
    target = job.told["target"]
    if not os.path.isdir(target):
        os.makedirs(target)
    for task in done:
        move(job, task, target)
    return target


def free_folder(parent, stem):
    number = 1
    while os.path.lexists(os.path.join(parent, u"%s_%d" % (stem, number))):
        number += 1
    return os.path.join(parent, u"%s_%d" % (stem, number))


def collect_render(job, done):
    """The frames in a folder like that of a render, and a clip over them in the project."""
    project = vp.Project(job.told["project"])
    target = free_folder(job.told["target"], job.told["operation"])
    os.makedirs(target)
    for task in done:
        move(job, task, target)
    if len(done) == len(job.tasks):
        clip = project.add_clip(vp.Clip(target), os.path.basename(target))
        offset = clip.parameter([u"streams", u"0", u"time_offset"])
        if offset and job.told["frames"][0]:
            offset.set(-job.told["frames"][0])
        project.save_as(job.told["save_as"])
    return target


def collect_track(job, done):
    """The keys of each layer's track, in the project, as one step."""
    project = vp.Project(job.told["project"])
    for task in done:
        tracked = vp.Project(os.path.join(job.result(task), "tracked.vireo"))
        index = job.tasks[task]["layer"]
        for name in (u"transform", u"track"):
            for parameter in tracked.layer(index).parameter_set([name]).parameters \
                    if tracked.layer(index).parameter_set([name]) else []:
                own = project.layer(index).parameter(parameter.name_components)
                for view, frame in own.keyframes:
                    own.delete_keyframe(frame, view)
                for view, frame in parameter.keyframes:
                    own.set(parameter.get(frame, view), frame, view)
    project.save_as(job.told["save_as"])
    return job.told["save_as"]


COLLECT = {"export": collect_export, "render": collect_render, "track": collect_track}


def collect(job):
    """Puts together what is done. The exit code: 1 when something is missing, which is listed."""
    for task in job.done():
        job.checked(task)
    done, undone = job.done(), job.undone()
    if job.told["kind"] == "track" and undone:
        done = []  # a project with some of its tracks would look done
    place = COLLECT[job.told["kind"]](job, done) if done else job.told["target"]
    if not undone:
        shutil.rmtree(job.folder)
        common.say(u"%d tasks done: %s" % (len(done), place))
        return 0
    for task in undone:
        log = os.path.join(job.folder, "logs", "%d.log" % task)
        common.say(u"missing: %s, see %s" % (job.tasks[task]["what"], log))
    raise common.Failed(u"%d of %d tasks are not done; what is done is in %s" % (len(undone), len(job.tasks), place))


# --- Slurm ----------------------------------------------------------------------------------------------------------


class Bar(object):
    """How many tasks are done: drawn over itself on a terminal, else a line every ten seconds."""

    def __init__(self, total):
        self.total, self.told, self.terminal = total, time.time(), sys.stderr.isatty()

    def show(self, done, running):
        if not self.terminal and time.time() - self.told < 10:
            return
        self.told = time.time()
        text = "[%s] %d of %d tasks done, %d waiting or running" % (
            ("#" * (24 * done // self.total)).ljust(24, "."), done, self.total, running)
        sys.stderr.write("\r\033[K" + text if self.terminal else text + "\n")
        sys.stderr.flush()

    def clear(self):
        if self.terminal:
            sys.stderr.write("\r\033[K")


def asked(*command):
    try:
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    except OSError:
        raise common.Refused("%s is not installed: --print gives the commands for another queue" % command[0])
    text, complaints = process.communicate()
    return process.returncode, text, complaints


def submit(job, tasks, options):
    script = 'exec %s farm task %s "$SLURM_ARRAY_TASK_ID"' % (quoted(own_command()), quoted([job.folder]))
    command = ["sbatch", "--parsable", "--no-requeue", "--array=" + ",".join(map(str, tasks)),
               "--job-name=vireo-" + job.told["kind"], "--output=" + os.path.join(job.folder, "logs", "%a.log"),
               "--open-mode=append", "--wrap=" + script] + (options.sbatch or [])
    code, text, complaints = asked(*[common.encoded(word) for word in command])
    if code != 0:
        raise common.Failed("sbatch: " + complaints)
    return text.strip().partition(";")[0]


def waiting(number):
    """How many tasks of a job the queue still has; None while it does not answer."""
    code, text, complaints = asked("squeue", "--noheader", "--array", "--jobs=" + number, "--format=%K")
    return len(text.split()) if code == 0 else 0 if "Invalid job id" in complaints else None


def watch(job, options):
    """Submits, waits, and submits again what did not get done."""
    bar = Bar(len(job.tasks))
    for attempt in range(1 + options.retries):
        undone = job.undone()
        if not undone:
            break
        number = submit(job, undone, options)
        try:
            left = None
            while left != 0:
                time.sleep(options.poll)
                left = waiting(number)
                bar.show(len(job.done()), left or 0)
        except KeyboardInterrupt:
            asked("scancel", number)
            raise
        for task in job.done():
            job.checked(task)
    bar.clear()


# --- Commands -------------------------------------------------------------------------------------------------------


def chunks(first, last, size):
    return [(start, min(last, start + size - 1)) for start in range(first, last + 1, size)]


def by_frames(project, options):
    if options.chunk < 1:
        raise common.Refused("--chunk is at least 1")
    return [{"what": "frames %d-%d" % part, "arguments": ["--frames", "%d-%d" % part]}
            for part in chunks(*(common.frames_of(project, options) + (options.chunk,)))]


# In what is told of a job, "files" are options and the places that they get in each task.
PROJECT = ("--project", ["{project}"])


def told_of_export(project, options):
    tasks = by_frames(project, options)
    work.sequences(common.layers_of(project, options), options)
    return {"target": common.writable_folder(options.path), "tasks": tasks, "command": ["export"],
            "files": [PROJECT, ("--path", ["{folder}"])],
            "words": words_of(options, "layers", "views", "colorize", "prefix", "suffix", "index_width", "by_layer",
                              "separate_streams")}


def told_of_render(project, options):
    tasks = by_frames(project, options)
    target = common.writable_folder(options.output_dir) if options.output_dir else project.get_output_dir()
    if not target:
        raise common.Refused("the project has no output folder: name one, --output-dir FOLDER")
    return {"target": target, "tasks": tasks, "operation": options.operation,
            "frames": common.frames_of(project, options),
            "command": ["render", options.operation], "words": words_of(options, "layers", "view"),
            "files": [PROJECT, ("--output-dir", ["{folder}"]), ("--save-as", ["{folder}", "rendered.vireo"])],
            "save_as": common.target_of(project, options)}


def told_of_track(project, options):
    layers = common.layers_of(project, options)
    names = [layer.name for layer in project.layers]
    tasks = []
    for index, layer in enumerate(project.layers):
        if layer in layers:
            if names.count(layer.name) > 1:
                raise common.Refused(u"several layers are named '%s'" % layer.name)
            tasks.append({"what": u"layer '%s'" % layer.name, "layer": index, "arguments": ["--layers", layer.name]})
    return {"target": os.path.dirname(common.target_of(project, options)), "tasks": tasks,
            "command": ["track"], "words": words_of(options, "frames", "views"),
            "files": [PROJECT, ("--save-as", ["{folder}", "tracked.vireo"])],
            "save_as": common.target_of(project, options)}


TOLD = {"export": told_of_export, "render": told_of_render, "track": told_of_track}


def words_of(options, *names):
    """The options that every task has, as they are typed."""
    words = []
    for name in names:
        value = getattr(options, name, None)
        if value not in (None, False, []):
            words += ["--" + name.replace("_", "-")] + ([] if value is True else
                                                       [str(one) if isinstance(one, int) else vireo.path(one)
                                                        for one in (value if isinstance(value, list) else [value])])
    return words


def add_farm(parser, kind):
    if kind == "export":
        work.add_export(parser)
    elif kind == "render":
        work.add_render(parser)
        parser.add_save()
    else:
        parser.add_work()
        parser.add_save()
    parser.add_argument("--chunk", type=int, default=50, metavar="FRAMES",
                        help="of a task (50); tracking goes by layers")
    parser.add_argument("--retries", type=int, default=2, help="how often a task that failed is submitted again (2)")
    parser.add_argument("--poll", type=float, default=2.0, metavar="SECONDS", help="between looks at the queue (2)")
    parser.add_argument("--sbatch", action="append", metavar="OPTION", help="for sbatch: --sbatch=--partition=all")
    parser.add_argument("--print", dest="printed", action="store_true",
                        help="prints the commands for any other queue, the last to be run when all have ended")


def begin(parser, kind, arguments):
    add_farm(parser, kind)
    options = parser.parse_args(arguments)
    project = common.open_project(options)
    if not common.layers_of(project, options):
        raise common.Refused("there is no layer to " + kind)
    told = TOLD[kind](project, options)
    if not options.printed:
        asked("sbatch", "--version")
    told.update(kind=kind, project=os.path.abspath(project.project_file))
    job = Job.prepare(told["target"], told, project.project_file)
    if options.printed:
        for task in range(len(job.tasks)):
            common.say(quoted(job.command(task)))
        common.say(quoted(own_command() + ["farm", "collect", job.folder]))
        return 0
    try:
        watch(job, options)
    except (KeyboardInterrupt, common.Failed):
        if not job.done():
            shutil.rmtree(job.folder, ignore_errors=True)
        raise
    return collect(job)


def farm(parser, arguments):
    kind = arguments[0] if arguments else ""
    if kind in ("task", "collect") and len(arguments) == (3 if kind == "task" else 2):
        folder = vireo.path(arguments[1])
        if not os.path.isfile(os.path.join(folder, "job.json")):
            raise common.Refused(u"%s: is no folder of a job" % folder)
        job = Job(folder)
        if kind == "collect":
            return collect(job)
        if not arguments[2].isdigit() or int(arguments[2]) >= len(job.tasks):
            raise common.Refused("there is no task %s; there are %d" % (arguments[2], len(job.tasks)))
        return job.run(int(arguments[2]))
    if kind in KINDS:
        parser.prog += " " + kind
        return begin(parser, kind, arguments[1:])
    parser.usage = "vireo farm {%s} PROJECT [OPTION...]; see vireo farm export --help" % ",".join(KINDS)
    if kind in ("-h", "--help"):
        parser.print_help()
        return 0
    raise common.Refused("%s is no work for a farm; there are %s" % (kind or "nothing", ", ".join(KINDS)))
