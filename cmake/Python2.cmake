# Finds Python 2.7 by asking the interpreter itself, which also tells a debug build (Py_DEBUG) apart.
#
# -DPython2_EXECUTABLE=  the interpreter; otherwise PYTHON2 of the environment, that of an installed binding runtime,
#                        python2.7 (python2.7-dbg for a Debug build) in /usr/bin, or the first on the path that works
#
# Defines PYTHON2_EXECUTABLE (what tests run), Python2::Module (headers: for what is loaded into an interpreter) and
# Python2::Python (headers and libpython: for programs that embed one).

# Prints version, headers, library folder, architecture folder, library, whether it is a debug build, and the
# interpreter behind what may be a launcher.
set(python2_question "
import sys, sysconfig as s
v = s.get_config_var
print ';'.join(['%d.%d' % sys.version_info[:2], v('INCLUDEPY'), v('LIBDIR') or '', v('MULTIARCH') or '',
                v('LDLIBRARY') or '', str(int(bool(v('Py_DEBUG')))), sys.executable])")

# A launcher of that name may have no Python 2.7 behind it.
function(vireo_working_python2 result candidate)
    execute_process(COMMAND ${candidate} -c "import sys; sys.exit(sys.version_info[:2] != (2, 7))"
        RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
    if(failed)
        set(${result} FALSE PARENT_SCOPE)
    endif()
endfunction()

if(NOT Python2_EXECUTABLE AND NOT "$ENV{PYTHON2}" STREQUAL "")
    find_program(Python2_EXECUTABLE NAMES $ENV{PYTHON2} NO_CACHE)
    if(NOT Python2_EXECUTABLE)
        set(Python2_EXECUTABLE $ENV{PYTHON2})
    endif()
    set(Python2_EXECUTABLE ${Python2_EXECUTABLE} CACHE FILEPATH "The Python 2.7 that is built for")
elseif(NOT Python2_EXECUTABLE AND SHIBOKEN_PYTHON_INTERPRETER)
    set(Python2_EXECUTABLE ${SHIBOKEN_PYTHON_INTERPRETER} CACHE FILEPATH "The Python 2.7 that is built for")
elseif(NOT Python2_EXECUTABLE)
    set(names python2.7)
    if(CMAKE_BUILD_TYPE STREQUAL Debug)
        set(names python2.7-dbg python2.7)
    endif()
    find_program(Python2_EXECUTABLE NAMES ${names} PATHS /usr/bin NO_DEFAULT_PATH VALIDATOR vireo_working_python2)
    find_program(Python2_EXECUTABLE NAMES ${names} VALIDATOR vireo_working_python2)
endif()
set(PYTHON2_EXECUTABLE ${Python2_EXECUTABLE})
if(NOT PYTHON2_EXECUTABLE)
    message(FATAL_ERROR "No Python 2.7 found. Run tools/set-up, or pass one: -DPython2_EXECUTABLE=/path/to/python2.7")
endif()

execute_process(COMMAND ${PYTHON2_EXECUTABLE} -c "${python2_question}"
    OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE failed ERROR_VARIABLE error)
if(failed OR NOT answer MATCHES "^2\\.7;")
    message(FATAL_ERROR "${PYTHON2_EXECUTABLE} is no working Python 2.7: ${answer}${error}${failed}")
endif()
list(GET answer 1 PYTHON2_INCLUDE_DIR)
list(GET answer 2 libdir)
list(GET answer 3 multiarch)
list(GET answer 4 library)
list(GET answer 5 PYTHON2_DEBUG)
list(GET answer 6 PYTHON2_EXECUTABLE)
if(NOT EXISTS ${PYTHON2_INCLUDE_DIR}/Python.h AND SHIBOKEN_PYTHON_INCLUDE_DIR)
    list(GET SHIBOKEN_PYTHON_INCLUDE_DIR 0 PYTHON2_INCLUDE_DIR) # an interpreter that was moved
endif()
if(NOT EXISTS ${PYTHON2_INCLUDE_DIR}/Python.h)
    message(FATAL_ERROR "${PYTHON2_EXECUTABLE} has no headers: ${PYTHON2_INCLUDE_DIR}/Python.h is missing")
endif()

# Debian's interpreters are linked statically and name the archive; the shared library lies beside it.
string(REGEX REPLACE "\\.a$" ".so" shared_library "${library}")
find_library(PYTHON2_LIBRARY NAMES ${shared_library} ${library} PATHS ${libdir}/${multiarch} ${libdir}
    NO_DEFAULT_PATH NO_CACHE)
if(NOT PYTHON2_LIBRARY)
    set(PYTHON2_LIBRARY ${SHIBOKEN_PYTHON_LIBRARIES})
endif()
if(NOT PYTHON2_LIBRARY)
    message(FATAL_ERROR "${PYTHON2_EXECUTABLE} has no library to embed: ${shared_library} is not in ${libdir}")
endif()

add_library(Python2::Module INTERFACE IMPORTED)
target_include_directories(Python2::Module SYSTEM INTERFACE ${PYTHON2_INCLUDE_DIR})
# Debian's debug headers are links into the release build's folder. GCC would follow them, and find the release build's
# pyconfig.h beside what they lead to.
target_compile_options(Python2::Module INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fno-canonical-system-headers>)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/CMakeFiles/python2.cpp CONTENT [[
#include <Python.h>
#if defined(Py_DEBUG) != @PYTHON2_DEBUG@
#error "these are the headers of another build of Python"
#endif
int main() { return 0; }
]] @ONLY)
try_compile(PYTHON2_HEADERS_FIT ${CMAKE_BINARY_DIR}/CMakeFiles/python2 ${CMAKE_BINARY_DIR}/CMakeFiles/python2.cpp
    LINK_LIBRARIES Python2::Module OUTPUT_VARIABLE output)
if(NOT PYTHON2_HEADERS_FIT)
    message(FATAL_ERROR "The headers in ${PYTHON2_INCLUDE_DIR} do not fit ${PYTHON2_EXECUTABLE}: ${output}")
endif()
unset(PYTHON2_HEADERS_FIT CACHE)

add_library(Python2::Python INTERFACE IMPORTED)
target_link_libraries(Python2::Python INTERFACE Python2::Module ${PYTHON2_LIBRARY})
if(PYTHON2_LIBRARY MATCHES "\\.a$")
    # The embedding program stands in for the library towards the modules that it loads.
    target_link_libraries(Python2::Python INTERFACE ${CMAKE_DL_LIBS} util m pthread)
    target_link_options(Python2::Python INTERFACE -rdynamic)
endif()
message(STATUS "Python 2.7: ${PYTHON2_EXECUTABLE} (debug build: ${PYTHON2_DEBUG}), ${PYTHON2_LIBRARY}")

# An interpreter that is not ours knows nothing of the sanitizers in what it loads: tests run it through a launcher
# that loads them first. It keeps objects until the end of the process, which is no leak of ours.
if(VIREO_SANITIZE)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so OUTPUT_VARIABLE asan
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    # The sanitizer looks for what throws exceptions when it is loaded, and the interpreter has none of it.
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++.so.6 OUTPUT_VARIABLE stdcxx
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    set(interpreter ${PYTHON2_EXECUTABLE})
    set(PYTHON2_EXECUTABLE ${CMAKE_BINARY_DIR}/sanitized-python2.7)
    file(CONFIGURE OUTPUT ${PYTHON2_EXECUTABLE} @ONLY NEWLINE_STYLE UNIX CONTENT [[#!/bin/sh
LD_PRELOAD='@asan@ @stdcxx@' ASAN_OPTIONS="detect_leaks=0:$ASAN_OPTIONS" exec '@interpreter@' "$@"
]])
    file(CHMOD ${PYTHON2_EXECUTABLE} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
        WORLD_READ WORLD_EXECUTE)
endif()
