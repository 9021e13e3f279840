# Settings that hold for every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Objects of programs can share precompiled headers with those of libraries.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

# Where files are compiled together (see docs/building.md), this many: most of the time for one goes
# into the headers that all of them include.
set(CMAKE_UNITY_BUILD_BATCH_SIZE 32)

# Everything that a person runs or loads lies in the root of the build folder.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

# What is built does not depend on the name of its folder; see docs/packaging.md.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

add_library(sab_warnings INTERFACE)
target_compile_options(sab_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 takes appending to a string for overlapping memory (GCC bug 105651).
  target_compile_options(sab_warnings INTERFACE -Wno-restrict)
endif()

option(SAB_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(SAB_SANITIZE_THREADS "Build with ThreadSanitizer" OFF)
# A shared library is complete. Clang leaves the functions of the sanitizers to the program.
set(SAB_COMPLETE_LIBRARY -Wl,-z,defs)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND (SAB_SANITIZE OR SAB_SANITIZE_THREADS))
  set(SAB_COMPLETE_LIBRARY "")
endif()
if(SAB_BUILD_FUZZERS)
  set(SAB_COMPLETE_LIBRARY "")
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(SAB_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # While it looks for null, GCC takes no comparison of an address for constant (GCC bug 71962),
    # which the checks of formats and bindings need; AddressSanitizer reports what is read through
    # null.
    add_compile_options(-fno-sanitize=null,nonnull-attribute,returns-nonnull-attribute)
  endif()
  add_link_options(-fsanitize=address,undefined)
endif()

if(SAB_SANITIZE_THREADS)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()

if(NOT WIN32 AND NOT SAB_SANITIZE AND NOT SAB_SANITIZE_THREADS AND CMAKE_BUILD_TYPE MATCHES Rel)
  # Every function is bound, and the tables are read-only, before anything runs.
  add_link_options(-Wl,-z,relro,-z,now)
  # Calls of the C library that would overrun what the compiler knows the size of are refused.
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()

if(WIN32)
  # The DLL is self-contained: it needs no compiler runtime beside it.
  add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  # Nor does it hold the time when it was linked.
  add_link_options(-static -static-libgcc -static-libstdc++ -Wl,--no-insert-timestamp)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Module definition files name functions without the decoration of stdcall.
    add_link_options(-Wl,--enable-stdcall-fixup)
  endif()
endif()
