# What every target of ours shares: warnings as errors, sanitizers, where it lies and how it is tested.

option(VIREO_SANITIZE "Build with the address and undefined behaviour sanitizers" OFF)
if(VIREO_SANITIZE)
    # Numbers that no enumerator has are passed on purpose, to be refused.
    add_compile_options(-fsanitize=address,undefined -fno-sanitize=enum -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_compile_options(-UNDEBUG) # what must hold is asserted, whatever the build type
    add_link_options(-fsanitize=address,undefined)
endif()

# For C++ tests that load image libraries: these keep threads, whose end the leak detector does not survive.
set(VIREO_IMAGE_TEST_ENVIRONMENT "ASAN_OPTIONS=detect_leaks=0")

# Where Python finds the packages, in the build tree and below the prefix.
set(VIREO_INSTALL_SITE ${CMAKE_INSTALL_LIBDIR}/python2.7/site-packages
    CACHE STRING "The folder below the prefix that is to be on the Python path")

# Neighbours are found beside; what lies elsewhere (another Python, an installed binding runtime) where it was found.
set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)

# Ours is warned about, and a warning is an error.
# Beside the sanitizers, GCC takes copies of unset optional values for reads of what was never written.
function(vireo_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Werror
        $<$<BOOL:${VIREO_SANITIZE}>:-Wno-uninitialized;-Wno-maybe-uninitialized>)
endfunction()

# Where what is installed looks for its libraries, in the build tree too: CMake would leave an empty entry in the path of
# the latter, which stands for the current folder.
function(vireo_run_path target)
    set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "${ARGN}")
endfunction()

# A shared library of the engine or the runtime: lib/libNAME.so, found by its neighbours beside it.
function(vireo_library target output)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output})
    vireo_run_path(${target} "$ORIGIN")
    vireo_warnings(${target})
    install(TARGETS ${target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# An extension module: FOLDER/NAME.so below the Python path, which finds the libraries in the prefix's own folder.
function(vireo_extension target folder name)
    file(RELATIVE_PATH up /${VIREO_INSTALL_SITE}/${folder} /${CMAKE_INSTALL_LIBDIR})
    file(RELATIVE_PATH up_in_build ${VIREO_SITE}/${folder} ${VIREO_LIB})
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${name} SUFFIX ".so"
        LIBRARY_OUTPUT_DIRECTORY ${VIREO_SITE}/${folder})
    vireo_run_path(${target} "$ORIGIN/${up}" "$ORIGIN/${up_in_build}")
    # Templates of others' headers have default visibility: only what the interpreter calls is exported.
    set(exports ${CMAKE_CURRENT_BINARY_DIR}/${target}.exports)
    file(WRITE ${exports} "{ global: init${name}; local: *; };\n")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}")
    vireo_warnings(${target})
    install(TARGETS ${target} LIBRARY DESTINATION ${VIREO_INSTALL_SITE}/${folder})
endfunction()

# Python sources of a package, copied into the build tree's Python path and installed beside the modules.
function(vireo_python_sources folder)
    file(MAKE_DIRECTORY ${VIREO_SITE}/${folder}) # else the first file would be copied under the folder's name
    foreach(source IN LISTS ARGN)
        configure_file(${source} ${VIREO_SITE}/${folder}/ COPYONLY)
    endforeach()
    install(FILES ${ARGN} DESTINATION ${VIREO_INSTALL_SITE}/${folder})
endfunction()

# vireo_python_test(NAME SCRIPT [LABELS ...] [TIMEOUT seconds] [ARGUMENTS ...] [ENVIRONMENT NAME=value ...]): a unittest
# file that the build's interpreter runs, with the build tree on its path.
function(vireo_python_test name script)
    cmake_parse_arguments(PARSE_ARGV 2 test "" "TIMEOUT" "LABELS;ARGUMENTS;ENVIRONMENT")
    if(NOT test_TIMEOUT)
        set(test_TIMEOUT ${VIREO_TEST_TIMEOUT})
    endif()
    get_filename_component(script ${script} ABSOLUTE)
    add_test(NAME ${name} COMMAND ${PYTHON2_EXECUTABLE} -B ${script} ${test_ARGUMENTS})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${test_TIMEOUT} LABELS "python;${test_LABELS}"
        ENVIRONMENT "PYTHONPATH=${VIREO_PYTHONPATH};${test_ENVIRONMENT}")
endfunction()
