# Every target reads the same headers of the standard library and of the component runtime; they are
# compiled once a build, and a second time with what tests read besides. See docs/building.md.
option(SAB_PRECOMPILE_HEADERS "Compile the common headers once" OFF)

# sab_use_headers(FROM LIBRARY FOLDER)
#   gives the targets of the folder, and of those below it, that link a library the precompiled headers
#   of a target, unless they have some.
function(sab_use_headers from library folder)
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(below IN LISTS folders)
    sab_use_headers(${from} ${library} ${below})
  endforeach()
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    get_target_property(is_without ${target} DISABLE_PRECOMPILE_HEADERS)
    get_target_property(has_others ${target} PRECOMPILE_HEADERS_REUSE_FROM)
    get_target_property(has_own ${target} PRECOMPILE_HEADERS)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    if(type MATCHES "(STATIC|SHARED|OBJECT)_LIBRARY|EXECUTABLE" AND NOT is_without
       AND NOT has_others AND NOT has_own AND library IN_LIST libraries)
      target_precompile_headers(${target} REUSE_FROM ${from})
      if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # In precompiled headers GCC 12 does not tell the system's from others, and reports texts that
        # are put before a string as overflows (GCC bug 105651).
        target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
      endif()
    endif()
  endforeach()
endfunction()

# sab_compile_headers(NAME HEADER...)
function(sab_compile_headers name)
  add_library(${name} OBJECT ${PROJECT_SOURCE_DIR}/cmake/common_headers.cpp)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/include)
  target_link_libraries(${name} PRIVATE sab_warnings)
  target_precompile_headers(${name} PRIVATE
    <algorithm> <array> <charconv> <cstdint> <cstring> <filesystem> <functional> <map> <memory>
    <mutex> <optional> <set> <span> <string> <string_view> <tuple> <type_traits> <unordered_map>
    <unordered_set> <utility> <variant> <vector> <sabxml/com.h> ${ARGN})
endfunction()
