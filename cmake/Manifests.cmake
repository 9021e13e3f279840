# Manifests for Windows programs that use the server without registration. They say what the server
# would register, so a server that can be run here writes them; the Windows build takes over those
# of the native build beside it.
set(SAB_NATIVE_BUILD ${PROJECT_SOURCE_DIR}/build/release CACHE PATH
    "Native build folder whose manifests go into the Windows archive")
if(NOT CMAKE_CROSSCOMPILING)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set(manifests ${PROJECT_BINARY_DIR}/manifests)
  add_custom_command(
    OUTPUT ${manifests}/SabXmlParser.manifest ${manifests}/application.manifest
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/manifests.py
            $<TARGET_FILE:sabxml> ${PROJECT_VERSION} amd64 ${manifests}
    DEPENDS sabxml SabXmlParser ${PROJECT_SOURCE_DIR}/tools/manifests.py
    COMMENT "Writing the manifests for use without registration"
    VERBATIM)
  add_custom_target(sab_manifests ALL DEPENDS ${manifests}/SabXmlParser.manifest)
endif()
