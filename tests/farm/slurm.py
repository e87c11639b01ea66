"""A Slurm of the test's own: its daemons on the loopback address, with ports and folders of their own."""

import os
import shutil
import socket
import subprocess
import time

PROGRAMS = ["munged", "slurmctld", "slurmd", "sbatch", "squeue", "scancel"]
CONFIGURATION = """ClusterName=vireo
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={ports[0]}
SlurmdPort={ports[1]}
SlurmUser=root
AuthType=auth/munge
AuthInfo=socket={folder}/munge.socket
CredType=cred/munge
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SwitchType=switch/none
MpiDefault=none
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerParameters=sched_interval=1,batch_sched_delay=0,defer_batch=no
ReturnToService=2
KillWait=2
InactiveLimit=0
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.log
NodeName={host} NodeAddr=127.0.0.1 CPUs={cpus} State=UNKNOWN
PartitionName=all Nodes={host} Default=YES MaxTime=INFINITE State=UP
"""


def path_of(program):
    for folder in os.environ["PATH"].split(os.pathsep) + ["/usr/sbin"]:
        if os.access(os.path.join(folder, program), os.X_OK):
            return os.path.join(folder, program)
    return None


def missing():
    """Why there can be none here; empty where there can."""
    lacking = [program for program in PROGRAMS if not path_of(program)]
    if lacking:
        return "%s not installed" % ", ".join(lacking)
    return "" if os.getuid() == 0 else "its daemons need root"


def free_ports(count):
    sockets = [socket.socket() for _ in range(count)]
    for one in sockets:
        one.bind(("127.0.0.1", 0))
    ports = [one.getsockname()[1] for one in sockets]
    for one in sockets:
        one.close()
    return ports


class Slurm(object):
    def __init__(self, folder):
        self.folder, self.daemons = folder, []
        self.environment = dict(os.environ, SLURM_CONF=os.path.join(folder, "slurm.conf"))
        for name in ("state", "spool"):
            os.mkdir(os.path.join(folder, name))
        host = socket.gethostname().split(".")[0]
        with open(os.path.join(folder, "slurm.conf"), "w") as file:
            file.write(CONFIGURATION.format(folder=folder, host=host, ports=free_ports(2), cpus=2))
        with open(os.path.join(folder, "munge.key"), "wb") as file:
            file.write(os.urandom(128))
        os.chmod(os.path.join(folder, "munge.key"), 0o400)
        os.chmod(folder, 0o755)

    def daemon(self, *command):
        log = open(os.path.join(self.folder, command[0] + ".out"), "w")
        self.daemons.append(subprocess.Popen((path_of(command[0]),) + command[1:], stdout=log, stderr=log,
                                             env=self.environment))
        log.close()

    def run(self, *command):
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=self.environment)
        text = process.communicate()[0]
        return process.returncode, text

    def wait(self, what, condition, seconds=60):
        end = time.time() + seconds
        while not condition():
            if time.time() > end:
                raise RuntimeError("no %s: %s" % (what, self.logs()))
            time.sleep(0.2)

    def logs(self):
        texts = []
        for name in sorted(os.listdir(self.folder)):
            if name.endswith((".log", ".out")):
                with open(os.path.join(self.folder, name)) as file:
                    texts.append("%s: %s" % (name, file.read()[-1500:]))
        return "\n".join(texts)

    def start(self):
        inside = lambda name: os.path.join(self.folder, name)
        self.daemon("munged", "--foreground", "--force", "--socket=" + inside("munge.socket"),
                    "--key-file=" + inside("munge.key"), "--pid-file=" + inside("munge.pid"),
                    "--log-file=" + inside("munge.log"), "--seed-file=" + inside("munge.seed"))
        self.wait("munge", lambda: os.path.exists(inside("munge.socket")))
        self.daemon("slurmctld", "-D", "-f", inside("slurm.conf"))
        self.daemon("slurmd", "-D", "-f", inside("slurm.conf"))
        self.wait("idle node", lambda: "idle" in self.run("sinfo", "--noheader", "--format=%t")[1])

    def end(self):
        self.run("scancel", "--state=RUNNING", "--signal=KILL", "--user=root")
        for process in reversed(self.daemons):
            process.terminate()
        for process in self.daemons:
            for _ in range(100):
                if process.poll() is not None:
                    break
                time.sleep(0.1)
            else:
                process.kill()
                process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
