"""The commands of the shell: `vireo info shot.vireo`, or `python2.7 -m vireo.commands info shot.vireo`."""

import importlib
import sys

from vireo.commands import common

# What each does, in a line; it stands in a module of its name, or in the one that is named.
COMMANDS = [("info", "info", "says what a project holds: layers, ranges, keys, clips, missing files"),
            ("track", "work", "tracks layers and saves the project"),
            ("export", "work", "writes the mattes of layers"),
            ("render", "work", "inserts, removes or stabilizes, and saves the project"),
            ("sheet", "sheet", "makes a picture of some frames: plate, matte, matte over plate"),
            ("report", "report", "makes an HTML page of how well the tracks hold"),
            ("farm", "farm", "gives an export, a render or tracking to a queue of machines")]


def main(arguments):
    """Runs a command. Returns the exit code: 0 done, 1 failed or cancelled, 2 refused and nothing changed."""
    try:
        for name, module, purpose in COMMANDS:
            if arguments[:1] == [name]:
                parser = common.Parser(prog="vireo " + name, description=purpose[:1].upper() + purpose[1:] + ".")
                return getattr(importlib.import_module("vireo.commands." + module), name)(parser, arguments[1:]) or 0
        raise common.Refused("no such command: %s; there are %s" % (
            " ".join(arguments[:1]) or "none given", ", ".join(name for name, _, _ in COMMANDS)))
    except (common.Refused, ValueError, IndexError, IOError, OSError) as error:
        return common.complain(arguments, error, 2)
    except (common.Failed, RuntimeError) as error:
        return common.complain(arguments, error, 1)
    except KeyboardInterrupt as error:
        return common.complain(arguments, error if str(error) else "cancelled", 1)
