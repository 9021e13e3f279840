# Every target reads the same headers of the standard library and of the component runtime; they are
# compiled once a build. See docs/building.md.
option(SAB_PRECOMPILE_HEADERS "Compile the common headers once" OFF)

# sab_precompile_headers(FOLDER)
#   gives the targets of the folder, and of those below it, the precompiled headers.
function(sab_precompile_headers folder)
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(below IN LISTS folders)
    sab_precompile_headers(${below})
  endforeach()
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    get_target_property(own ${target} DISABLE_PRECOMPILE_HEADERS)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    if(target STREQUAL "sab_common_headers")
      continue()
    endif()
    if(type MATCHES "LIBRARY|EXECUTABLE" AND NOT type STREQUAL "INTERFACE_LIBRARY" AND NOT own
       AND "sab_warnings" IN_LIST libraries)
      target_precompile_headers(${target} REUSE_FROM sab_common_headers)
      if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # In precompiled headers GCC 12 does not tell the system's from others, and reports texts that are
        # put before a string as overflows (GCC bug 105651).
        target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
      endif()
    endif()
  endforeach()
endfunction()

if(SAB_PRECOMPILE_HEADERS)
  add_library(sab_common_headers OBJECT cmake/common_headers.cpp)
  target_precompile_headers(sab_common_headers PRIVATE
    <algorithm> <array> <charconv> <cstdint> <cstring> <filesystem> <functional> <map> <memory>
    <mutex> <optional> <set> <span> <string> <string_view> <tuple> <type_traits> <unordered_map>
    <unordered_set> <utility> <variant> <vector> <sabxml/com.h>)
  target_include_directories(sab_common_headers PRIVATE include)
  target_link_libraries(sab_common_headers PRIVATE sab_warnings)
  sab_precompile_headers(${PROJECT_SOURCE_DIR})
endif()
