# The target pugixml::pugixml. Debian has no such library for mingw-w64, so builds for Windows make
# one from the source of Debian's package, which is fetched when they are configured first.
if(NOT WIN32)
  find_package(pugixml REQUIRED)
  return()
endif()
set(SAB_PUGIXML_SOURCE ${PROJECT_BINARY_DIR}/pugixml CACHE PATH
    "Folder with src/pugixml.cpp and LICENSE.md; fetched with apt where it is missing")
if(NOT EXISTS ${SAB_PUGIXML_SOURCE}/src/pugixml.cpp)
  message(STATUS "Fetching the source of pugixml")
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/debian-source pugixml ${SAB_PUGIXML_SOURCE}
                          src LICENSE.md
                  RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "The source of pugixml cannot be fetched. "
                        "Set SAB_PUGIXML_SOURCE to a folder that has src/pugixml.cpp.")
  endif()
endif()
add_library(sab_pugixml STATIC ${SAB_PUGIXML_SOURCE}/src/pugixml.cpp)
target_include_directories(sab_pugixml SYSTEM INTERFACE ${SAB_PUGIXML_SOURCE}/src)
add_library(pugixml::pugixml ALIAS sab_pugixml)
install(FILES ${SAB_PUGIXML_SOURCE}/LICENSE.md DESTINATION . RENAME LICENSE.pugixml.md
        COMPONENT runtime)
