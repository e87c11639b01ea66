# What every target of ours shares: warnings as errors, hidden nothing, and where it is installed.

# Ours is warned about, and a warning is an error.
function(vireo_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
endfunction()

# A shared library of the engine or the runtime: lib/libNAME.so, found by its neighbours beside it.
function(vireo_library target output)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output} BUILD_RPATH_USE_ORIGIN ON
        INSTALL_RPATH "$ORIGIN")
    vireo_warnings(${target})
    install(TARGETS ${target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# An extension module: FOLDER/NAME.so below the Python path, which finds the libraries in ../lib.
function(vireo_extension target folder name)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${name} SUFFIX ".so"
        LIBRARY_OUTPUT_DIRECTORY ${VIREO_SITE}/${folder})
    file(RELATIVE_PATH up ${CMAKE_INSTALL_FULL_LIBDIR}/python2.7/site-packages/${folder} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${up}")
    vireo_warnings(${target})
    install(TARGETS ${target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/python2.7/site-packages/${folder})
endfunction()

# Python sources of a package, copied into the build tree's Python path and installed beside the modules.
function(vireo_python_sources folder)
    foreach(source IN LISTS ARGN)
        configure_file(${source} ${VIREO_SITE}/${folder}/ COPYONLY)
    endforeach()
    install(FILES ${ARGN} DESTINATION ${CMAKE_INSTALL_LIBDIR}/python2.7/site-packages/${folder})
endfunction()
