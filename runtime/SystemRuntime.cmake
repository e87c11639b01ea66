# An installed Shiboken 1.2 and PySide 1.2 in the place of our runtime, under the names of its targets. Included by
# runtime/CMakeLists.txt.
#
# Shiboken was found before Python. Shiboken_DIR and PySide_DIR say where their package files lie.

find_package(PySide REQUIRED)

function(vireo_require_header folder header)
    if(NOT EXISTS ${folder}/${header})
        message(FATAL_ERROR "The installed binding runtime is not usable: ${folder}/${header} is missing")
    endif()
endfunction()
vireo_require_header(${SHIBOKEN_INCLUDE_DIR} shiboken.h)
vireo_require_header(${PYSIDE_INCLUDE_DIR} pyside.h)
vireo_require_header(${PYSIDE_INCLUDE_DIR}/QtCore pyside_qtcore_python.h)

# Their headers are older than C++17: as system headers with -fpermissive, they compile and say nothing. What the option
# lets pass in our own code is a warning, and so an error.
add_library(shiboken_runtime INTERFACE IMPORTED GLOBAL)
target_include_directories(shiboken_runtime SYSTEM INTERFACE ${SHIBOKEN_INCLUDE_DIR})
target_compile_options(shiboken_runtime INTERFACE -fpermissive)
target_link_libraries(shiboken_runtime INTERFACE ${SHIBOKEN_LIBRARY} Python2::Module)

add_library(pyside_runtime INTERFACE IMPORTED GLOBAL)
target_include_directories(pyside_runtime SYSTEM INTERFACE ${PYSIDE_INCLUDE_DIR} ${PYSIDE_INCLUDE_DIR}/QtCore)
target_link_libraries(pyside_runtime INTERFACE ${PYSIDE_LIBRARY} shiboken_runtime Vireo::QtCore)

if(PYSIDE_PYTHONPATH)
    set(PYSIDE_PYTHONPATH ${PYSIDE_PYTHONPATH} PARENT_SCOPE)
    set(VIREO_PYTHONPATH ${VIREO_SITE}:${PYSIDE_PYTHONPATH} PARENT_SCOPE)
endif()
message(STATUS "Binding runtime: ${SHIBOKEN_LIBRARY}, ${PYSIDE_LIBRARY}")
