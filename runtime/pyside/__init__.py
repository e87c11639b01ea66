"""Qt for Python 2.7: the modules QtCore and QtGui."""
__all__ = ['QtCore', 'QtGui']
__version__ = "1.2.4"
__version_info__ = (1, 2, 4, 'final', 0)
