# cpack: two Debian packages, or for Windows one archive with everything. Their bytes depend on the
# source alone: PackageSettings.cmake.in sets the time that they carry.
configure_file(cmake/PackageSettings.cmake.in PackageSettings.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/PackageSettings.cmake)
set(CPACK_PACKAGE_NAME sabxmlparser)
set(CPACK_PACKAGE_VENDOR "SabXmlParser contributors")
set(CPACK_PACKAGE_CONTACT "${SAB_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)

if(WIN32)
  # The archive is written by a script of ours: those of cpack keep the times of the build.
  set(CPACK_GENERATOR External)
  set(CPACK_EXTERNAL_ENABLE_STAGING ON)
  set(CPACK_MONOLITHIC_INSTALL ON)
  set(CPACK_EXTERNAL_PACKAGE_SCRIPT ${PROJECT_BINARY_DIR}/PackageSettings.cmake)
  set(CPACK_PACKAGE_FILE_NAME sabxmlparser-${PROJECT_VERSION}-windows)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGE_CHECKSUM SHA256)
  set(CPACK_COMPONENTS_ALL runtime development)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

  set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME sabxmlparser)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS python3)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/cmake/debian/postinst ${PROJECT_SOURCE_DIR}/cmake/debian/prerm
    ${PROJECT_SOURCE_DIR}/cmake/debian/triggers ${PROJECT_BINARY_DIR}/debian/shlibs)
  configure_file(cmake/debian/shlibs.in debian/shlibs @ONLY)
  set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "The library, its component runtime, the program sabxml with its manual page and
completions, and the client for Python.")

  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME sabxmlparser-dev)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "sabxmlparser (= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Headers, interface definitions, files for CMake and pkg-config, and samples.")
endif()
include(CPack)
