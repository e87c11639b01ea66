"""Says which module a script talks to, and which project the application has open."""
import sys

import vireo
from vireo import project

print "vireo.project %s from %s" % (vireo.__version__, project.__file__)
print "in Python %s" % sys.version.split()[0]
if hasattr(project, "get_current_project"):
    print "current project: %r" % project.get_current_project()
else:
    print "no application around: projects are made or opened by the script"
