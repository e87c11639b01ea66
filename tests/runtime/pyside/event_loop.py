# The application, and waiting in its event loop.
from PySide import QtCore

application = QtCore.QCoreApplication.instance() or QtCore.QCoreApplication(['tests'])


def wait_until(condition, milliseconds=10000):
    clock = QtCore.QTimer()
    clock.setSingleShot(True)
    clock.start(milliseconds)
    while not condition() and clock.isActive():
        application.processEvents()
    assert condition()
