"""The same commands for an interpreter of its own: python2.7 -m vireo.commands info shot.vireo."""

import sys

from vireo.commands import main

sys.exit(main(sys.argv[1:]))
