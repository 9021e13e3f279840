# Manifests for Windows programs that use the server without registration. They say what the server
# would register, so a server that can be run here writes them; the Windows build takes over those
# of the native build beside it.
set(SAB_NATIVE_BUILD ${PROJECT_SOURCE_DIR}/build/release CACHE PATH
    "Native build folder whose manifests go into the Windows archive")
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(SAB_WINDOWS_WIDTH x64)
  set(other_width windows-x86)
  set(SAB_MANIFESTS ${SAB_NATIVE_BUILD}/manifests/amd64)
else()
  set(SAB_WINDOWS_WIDTH x86)
  set(other_width windows)
  set(SAB_MANIFESTS ${SAB_NATIVE_BUILD}/manifests/x86)
endif()
set(SAB_OTHER_WINDOWS_BUILD ${PROJECT_SOURCE_DIR}/build/${other_width} CACHE PATH
    "Windows build folder of the other width, which goes into the same archive")
if(NOT CMAKE_CROSSCOMPILING)
  set(manifests ${PROJECT_BINARY_DIR}/manifests)
  foreach(architecture amd64 x86)
    add_custom_command(
      OUTPUT ${manifests}/${architecture}/SabXmlParser.manifest
             ${manifests}/${architecture}/application.manifest
      COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/manifests.py
              $<TARGET_FILE:sabxml> ${PROJECT_VERSION} ${architecture} ${manifests}/${architecture}
      DEPENDS sabxml SabXmlParser ${PROJECT_SOURCE_DIR}/tools/manifests.py
      COMMENT "Writing the manifests for use without registration"
      VERBATIM)
    list(APPEND manifest_files ${manifests}/${architecture}/SabXmlParser.manifest)
  endforeach()
  add_custom_target(sab_manifests ALL DEPENDS ${manifest_files})
endif()
