# How everything is compiled: one interface target carries the language level, the warnings and the
# sanitizers, and every target of the project links it.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# The build tree has the shape of an installation (bin/, lib/, lib/panelkit/), so that the relative
# run paths that are installed are the ones that are tested.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Kind of build" FORCE)
endif()

find_program(PANELKIT_CCACHE ccache)
if(PANELKIT_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${PANELKIT_CCACHE}")
endif()

add_library(panelkit_build_flags INTERFACE)
target_compile_options(panelkit_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-align -Wformat=2 -Wnull-dereference -Wundef
  $<$<BOOL:${PANELKIT_WERROR}>:-Werror>)
# Without this a 32-bit panel cannot ask for the space of a large disk, nor for its files. No public header has a type
# that it changes.
target_compile_definitions(panelkit_build_flags INTERFACE _FILE_OFFSET_BITS=64)
# A vtable check or an interceptor of a sanitizer turns some of gcc's flow-based guesses into false alarms.
if(PANELKIT_SANITIZE)
  target_compile_options(panelkit_build_flags INTERFACE
    -Wno-null-dereference $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  set(panelkit_sanitize_flags "-fsanitize=${PANELKIT_SANITIZE}" -fno-omit-frame-pointer)
  if(PANELKIT_SANITIZE MATCHES "undefined")
    list(APPEND panelkit_sanitize_flags -fsanitize=float-cast-overflow,float-divide-by-zero -fno-sanitize-recover=all)
  endif()
  target_compile_options(panelkit_build_flags INTERFACE ${panelkit_sanitize_flags})
  target_link_options(panelkit_build_flags INTERFACE ${panelkit_sanitize_flags})
else()
  add_link_options(-Wl,--no-undefined)
endif()
# What a fuzzer runs counts the branches it takes.
if(PANELKIT_FUZZ)
  target_compile_options(panelkit_build_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
