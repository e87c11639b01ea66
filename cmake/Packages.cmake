# What people install: a Debian package below /opt/vireo, and a tarball that may be unpacked anywhere. `tools/package`
# makes both, and tries them where nothing else is.
set(CPACK_PACKAGE_NAME vireo)
set(CPACK_PACKAGE_CONTACT "the makers of vireo")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 0)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_SOURCE_DIR}/cmake/package/config.cmake)

# The libraries that programs are linked with give the dependencies; Python's own library is loaded by name.
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${VIREO_LIB})
set(CPACK_DEBIAN_PACKAGE_DEPENDS libpython2.7-stdlib)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/cmake/package/postinst ${CMAKE_SOURCE_DIR}/cmake/package/prerm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples FILES_MATCHING PATTERN "*.py"
    PATTERN contact_sheet EXCLUDE)
include(CPack)
