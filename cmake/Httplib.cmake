# SAB_HTTPLIB_SOURCE: the folder with the header of cpp-httplib, for "sabxml preview --serve"; empty
# where it cannot be had, and the program then does without. Debian's library is not used: it brings
# OpenSSL and Brotli, which every start of the program would load, and is not there for mingw-w64.
set(SAB_HTTPLIB_SOURCE ${PROJECT_BINARY_DIR}/cpp-httplib CACHE PATH
    "Folder with httplib.h and LICENSE of cpp-httplib; fetched with apt where it is missing")
if(NOT EXISTS ${SAB_HTTPLIB_SOURCE}/httplib.h)
  message(STATUS "Fetching the source of cpp-httplib")
  find_program(dpkg_source dpkg-source)
  set(failed TRUE)
  if(dpkg_source)
    execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/debian-source cpp-httplib
                            ${SAB_HTTPLIB_SOURCE} httplib.h LICENSE
                    RESULT_VARIABLE failed)
  endif()
  if(failed)
    message(WARNING "The source of cpp-httplib cannot be fetched: sabxml preview will not --serve. "
                    "Set SAB_HTTPLIB_SOURCE to a folder that has httplib.h.")
    set(SAB_HTTPLIB_SOURCE "")
  endif()
endif()
if(SAB_HTTPLIB_SOURCE)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/sabxmlparser)
  if(WIN32)
    set(folder .)
  endif()
  install(FILES ${SAB_HTTPLIB_SOURCE}/LICENSE DESTINATION ${folder} RENAME LICENSE.cpp-httplib
          COMPONENT runtime)
endif()
