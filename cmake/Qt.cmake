# Vireo::QtCore and vireo_moc(): Qt 5 beside the bundled runtime, Qt 4.8 beside a real one.

if(VIREO_BINDING_RUNTIME STREQUAL system)
    find_package(Qt4 4.8 REQUIRED QtCore)
    add_library(Vireo::QtCore INTERFACE IMPORTED)
    target_include_directories(Vireo::QtCore SYSTEM INTERFACE ${QT_INCLUDE_DIR} ${QT_QTCORE_INCLUDE_DIR})
    target_link_libraries(Vireo::QtCore INTERFACE ${QT_QTCORE_LIBRARY})
    target_compile_options(Vireo::QtCore INTERFACE -fpermissive)
else()
    find_package(Qt5 5.15 REQUIRED COMPONENTS Core)
    add_library(Vireo::QtCore INTERFACE IMPORTED)
    target_link_libraries(Vireo::QtCore INTERFACE Qt5::Core)
endif()

# Adds the meta-object code of the given headers to a target. (The caller may have a variable of the list's name, to
# which the generators would append.)
function(vireo_moc target)
    set(meta_objects)
    if(VIREO_BINDING_RUNTIME STREQUAL system)
        # Boost's header trips Qt 4's generator.
        qt4_wrap_cpp(meta_objects ${ARGN} OPTIONS -DBOOST_TT_HAS_OPERATOR_HPP_INCLUDED)
    else()
        qt5_wrap_cpp(meta_objects ${ARGN})
    endif()
    set_source_files_properties(${meta_objects} PROPERTIES COMPILE_OPTIONS "-w")
    target_sources(${target} PRIVATE ${meta_objects})
endfunction()
