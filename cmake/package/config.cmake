# Read for each kind of package: the tarball has no prefix, and moves.
if(CPACK_GENERATOR STREQUAL "DEB")
    set(CPACK_PACKAGING_INSTALL_PREFIX /opt/vireo)
endif()
