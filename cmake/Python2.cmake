# Finds Python 2.7 by asking the interpreter itself, which also tells a debug build (Py_DEBUG) apart.
#
# -DPython2_EXECUTABLE=  the interpreter; otherwise python2.7, or python2.7-dbg for a Debug build
#
# Defines PYTHON2_EXECUTABLE, Python2::Module (headers: for what is loaded into an interpreter) and Python2::Python
# (headers and libpython: for programs that embed one).

if(NOT Python2_EXECUTABLE)
    set(names python2.7)
    if(CMAKE_BUILD_TYPE STREQUAL Debug)
        set(names python2.7-dbg python2.7)
    endif()
    find_program(Python2_EXECUTABLE NAMES ${names} PATHS /usr/bin NO_DEFAULT_PATH)
    find_program(Python2_EXECUTABLE NAMES ${names})
endif()
set(PYTHON2_EXECUTABLE ${Python2_EXECUTABLE})
if(NOT PYTHON2_EXECUTABLE)
    message(FATAL_ERROR "No Python 2.7 found. Run tools/set-up, or pass one: -DPython2_EXECUTABLE=/path/to/python2.7")
endif()

execute_process(COMMAND ${PYTHON2_EXECUTABLE} -c "
import sys, sysconfig as s
v = s.get_config_var
print ';'.join(['%d.%d' % sys.version_info[:2], v('INCLUDEPY'), v('LIBDIR') or '', v('MULTIARCH') or '',
                v('LDLIBRARY') or '', str(int(bool(v('Py_DEBUG'))))])"
    OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE failed ERROR_VARIABLE error)
if(failed OR NOT answer MATCHES "^2\\.7;")
    message(FATAL_ERROR "${PYTHON2_EXECUTABLE} is no working Python 2.7: ${answer}${error}")
endif()
list(GET answer 1 PYTHON2_INCLUDE_DIR)
list(GET answer 2 libdir)
list(GET answer 3 multiarch)
list(GET answer 4 library)
list(GET answer 5 PYTHON2_DEBUG)
if(NOT EXISTS ${PYTHON2_INCLUDE_DIR}/Python.h)
    message(FATAL_ERROR "${PYTHON2_EXECUTABLE} has no headers: ${PYTHON2_INCLUDE_DIR}/Python.h is missing")
endif()

# Debian's interpreters are linked statically and name the archive; the shared library lies beside it.
string(REGEX REPLACE "\\.a$" ".so" shared_library "${library}")
find_library(PYTHON2_LIBRARY NAMES ${shared_library} ${library} PATHS ${libdir} ${libdir}/${multiarch} NO_DEFAULT_PATH)

add_library(Python2::Module INTERFACE IMPORTED)
target_include_directories(Python2::Module SYSTEM INTERFACE ${PYTHON2_INCLUDE_DIR})
add_library(Python2::Python INTERFACE IMPORTED)
target_link_libraries(Python2::Python INTERFACE Python2::Module ${PYTHON2_LIBRARY})
message(STATUS "Python 2.7: ${PYTHON2_EXECUTABLE} (debug build: ${PYTHON2_DEBUG}), ${PYTHON2_LIBRARY}")
