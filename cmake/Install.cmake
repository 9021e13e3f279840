# What is installed where. Two components: "runtime" is what runs (library, program, samples),
# "development" what a client is built with. Nothing installed knows its location, so a prefix
# can be moved.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(SAB_MAINTAINER "SabXmlParser contributors <sabxmlparser@workshop.example>")
set(SAB_DATA_FOLDER ${CMAKE_INSTALL_DATADIR}/sabxmlparser)
set(SAB_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/SabXmlParser)
set(SAB_PYTHON_FOLDER lib/python3/dist-packages CACHE STRING
    "Where the Python client is installed, below the prefix")

# To the outside there are two targets: sabcom, the component runtime (on Windows the system's
# libraries and our header over them), and SabXmlParser, which brings the interfaces as well.
if(WIN32)
  set(runtime sab_com)
  set_target_properties(sab_com PROPERTIES EXPORT_NAME sabcom)
else()
  set(runtime sabcom)
  # The library's directory is that of what it loads.
  set_target_properties(SabXmlParser PROPERTIES INSTALL_RPATH "$ORIGIN")
  file(RELATIVE_PATH from_program /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(sabxml PROPERTIES INSTALL_RPATH "$ORIGIN/${from_program}")
  target_compile_definitions(sabxml PRIVATE SABXML_LIBRARIES_FROM_PROGRAM="${from_program}")
endif()
set_target_properties(${runtime} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES
  "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>;$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
target_link_libraries(SabXmlParser INTERFACE ${runtime})

install(TARGETS ${runtime} SabXmlParser EXPORT SabXmlParser
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(TARGETS sabxml COMPONENT runtime)

install(EXPORT SabXmlParser NAMESPACE SabXmlParser:: FILE SabXmlParserTargets.cmake
  DESTINATION ${SAB_PACKAGE_FOLDER} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/SabXmlParserConfig.cmake.in
  SabXmlParserConfig.cmake INSTALL_DESTINATION ${SAB_PACKAGE_FOLDER} PATH_VARS SAB_DATA_FOLDER)
write_basic_package_version_file(SabXmlParserConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/SabXmlParserConfig.cmake
  ${PROJECT_BINARY_DIR}/SabXmlParserConfigVersion.cmake
  DESTINATION ${SAB_PACKAGE_FOLDER} COMPONENT development)

install(DIRECTORY include/sabxml DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/idl/include/SabXmlParser.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(DIRECTORY idl DESTINATION ${SAB_DATA_FOLDER} COMPONENT development
  FILES_MATCHING PATTERN "*.idl")
install(DIRECTORY samples DESTINATION ${SAB_DATA_FOLDER} COMPONENT development)

if(WIN32)
  install(FILES ${SAB_TYPE_LIBRARY} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
  install(FILES ${SAB_MANIFESTS}/SabXmlParser.manifest
    ${SAB_MANIFESTS}/application.manifest
    DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime OPTIONAL)
  install(DIRECTORY clients/python DESTINATION . COMPONENT runtime PATTERN __pycache__ EXCLUDE)
  install(DIRECTORY ${SAB_PYTHON_STUBS} DESTINATION python COMPONENT runtime)
  install(FILES LICENSE CHANGELOG.md docs/packaging.md DESTINATION . COMPONENT runtime)
else()
  set(help ${PROJECT_BINARY_DIR}/help)
  install(FILES ${help}/sabxml.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
  install(FILES ${help}/sabxml.bash RENAME sabxml COMPONENT runtime
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${help}/sabxml.fish COMPONENT runtime
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
  install(FILES ${help}/_sabxml COMPONENT runtime
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
  file(RELATIVE_PATH SAB_PREFIX_FROM_PKGCONFIG /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  configure_file(cmake/sabxmlparser.pc.in sabxmlparser.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/sabxmlparser.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
  set(python ${PROJECT_BINARY_DIR}/python)
  install(DIRECTORY ${python}/sabxml DESTINATION ${SAB_PYTHON_FOLDER} COMPONENT runtime)
  # What pip lists it by, without the list of files by which pip would remove them.
  install(FILES ${python}/sabxml-${PROJECT_VERSION}.dist-info/METADATA
    DESTINATION ${SAB_PYTHON_FOLDER}/sabxml-${PROJECT_VERSION}.dist-info COMPONENT runtime)
  install(FILES ${SAB_PYTHON_WHEEL} DESTINATION ${SAB_DATA_FOLDER} COMPONENT runtime)
  foreach(component runtime development)
    set(package sabxmlparser)
    if(component STREQUAL "development")
      set(package sabxmlparser-dev)
    endif()
    set(documents ${CMAKE_INSTALL_DATADIR}/doc/${package})
    install(FILES LICENSE DESTINATION ${documents} COMPONENT ${component} RENAME copyright)
    add_custom_command(
      OUTPUT ${PROJECT_BINARY_DIR}/debian/${package}/changelog.gz
      COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/packaging/debian_changelog.py
              ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${package} ${PROJECT_VERSION}
              "${SAB_MAINTAINER}" ${PROJECT_BINARY_DIR}/debian/${package}/changelog.gz
      DEPENDS CHANGELOG.md tools/packaging/debian_changelog.py
      COMMENT "Writing the changelog of ${package}"
      VERBATIM)
    list(APPEND changelogs ${PROJECT_BINARY_DIR}/debian/${package}/changelog.gz)
    install(FILES ${PROJECT_BINARY_DIR}/debian/${package}/changelog.gz
      DESTINATION ${documents} COMPONENT ${component})
    install(FILES cmake/debian/${package}.lintian-overrides COMPONENT ${component}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${package})
  endforeach()
  add_custom_target(sab_changelogs ALL DEPENDS ${changelogs})
endif()

# What the files are made of, from what was found, about the files as they are packaged.
include(Components)
if(WIN32)
  set(folder .)
else()
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/sabxmlparser)
endif()
install(CODE "
  set(prefix \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
  execute_process(COMMAND_ERROR_IS_FATAL ANY
    COMMAND \"${Python3_EXECUTABLE}\" \"${PROJECT_SOURCE_DIR}/tools/packaging/sbom.py\"
            \"${PROJECT_BINARY_DIR}/components.txt\" \"\${prefix}\"
            \"\${prefix}/${folder}/sbom.spdx.json\")" COMPONENT runtime)
