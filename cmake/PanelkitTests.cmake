# Tests are GoogleTest programs, one or more a folder, found by CTest case by case.

find_package(GTest REQUIRED)
find_package(Qt${PANELKIT_QT} REQUIRED COMPONENTS Test)
include(GoogleTest)

# panelsim as a test can start it, also where this machine runs it in an emulator. Scripts find the emulator in the
# variable PANELKIT_EMULATOR.
set(PANELKIT_RUNNABLE_PANELSIM "$<TARGET_FILE:panelsim>")
list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " panelkit_emulator)
set(PANELKIT_SCRIPT_ENVIRONMENT "PANELKIT_EMULATOR=${panelkit_emulator}")
if(CMAKE_CROSSCOMPILING AND PANELKIT_SIMULATOR)
  list(APPEND PANELKIT_SCRIPT_ENVIRONMENT "CMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}")
  set(PANELKIT_RUNNABLE_PANELSIM "${PROJECT_BINARY_DIR}/tests/panelsim")
  file(GENERATE OUTPUT "${PANELKIT_RUNNABLE_PANELSIM}"
    CONTENT "#!/bin/sh\nexec ${panelkit_emulator} $<TARGET_FILE:panelsim> \"$@\"\n"
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endif()

set(PANELKIT_TEST_COMPILE_OPTIONS "" CACHE STRING "Compiler options of the tests' own sources, after all others")

set(PANELKIT_TESTS_IN_PARTS OFF CACHE BOOL
  "Run the cases of a test program in a few parts instead of one by one: quicker where a start is slow")

# What every source of every test begins with, compiled once: without that, half of the time that tests take to
# compile goes into GoogleTest.
add_library(panelkit_test_prelude STATIC "${PROJECT_SOURCE_DIR}/tests/support/prelude.cpp")
target_precompile_headers(panelkit_test_prelude PRIVATE
  "${PROJECT_SOURCE_DIR}/tests/support/qtprinting.h" <gmock/gmock.h> <gtest/gtest.h>)
target_compile_options(panelkit_test_prelude PRIVATE ${PANELKIT_TEST_COMPILE_OPTIONS})
target_link_libraries(panelkit_test_prelude PRIVATE panelkit_build_flags GTest::gmock)
panelkit_link_qt(panelkit_test_prelude PRIVATE Core)

# panelkit_add_test(<name> SOURCES <file>... [LINK objects|library|none] [GUI] [THREADS]
#                   [PARTS <number>] [LIBRARIES <target>...])
#
# LINK says what of the library the program gets: its objects (the default, which lets a test reach internal
# code), the shared library as a caller has it, or nothing. Never both: process-wide state would exist twice.
# GUI gives the program a QApplication instead of a QCoreApplication, the fonts of tests/support/fonts.conf, QtTest for
# simulated input, and the label "gui". It runs on the offscreen platform unless the environment names another: for a
# real X server's behaviour QT_QPA_PLATFORM=xcb xvfb-run -s -noreset ctest -L gui (a server that resets itself turns
# clients away)
#
# THREADS gives the label "threads": what ThreadSanitizer is to look at. PARTS is for a program that takes long.
function(panelkit_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "GUI;THREADS" "LINK;PARTS" "SOURCES;LIBRARIES")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "panelkit_add_test does not know ${arg_UNPARSED_ARGUMENTS}")
  endif()
  add_executable(${name} ${arg_SOURCES} "${PROJECT_SOURCE_DIR}/tests/support/main.cpp")
  if(CMAKE_CROSSCOMPILING)
    target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/support/emulatedchild.cpp")
    target_link_libraries(${name} PRIVATE ${CMAKE_DL_LIBS})
  endif()
  set_target_properties(${name} PROPERTIES
    AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_compile_options(${name} PRIVATE ${PANELKIT_TEST_COMPILE_OPTIONS})
  target_precompile_headers(${name} REUSE_FROM panelkit_test_prelude)
  target_compile_definitions(${name} PRIVATE
    PANELKIT_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
    $<$<BOOL:${arg_GUI}>:PANELKIT_TEST_GUI>)
  if(NOT arg_LINK OR arg_LINK STREQUAL "objects")
    target_link_libraries(${name} PRIVATE panelkit_objects)
  elseif(arg_LINK STREQUAL "library")
    target_link_libraries(${name} PRIVATE panelkit)
  elseif(NOT arg_LINK STREQUAL "none")
    message(FATAL_ERROR "LINK is '${arg_LINK}': give objects, library or none")
  endif()
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} panelkit_build_flags
    ${PANELKIT_PLATFORM_LIBRARIES} GTest::gmock)
  panelkit_link_qt(${name} PRIVATE Core)
  if(arg_GUI)
    panelkit_link_qt(${name} PRIVATE Widgets Test)
    target_compile_definitions(${name} PRIVATE
      PANELKIT_TEST_FONTS="${PROJECT_SOURCE_DIR}/tests/support/fonts.conf")
    set(labels LABELS gui)
  endif()
  if(arg_THREADS)
    set(labels LABELS threads)
  endif()
  if(PANELKIT_TESTS_IN_PARTS)
    panelkit_add_parts(${name} "${arg_PARTS}" ${labels})
  else()
    # A case that hangs is a failure of its own and must not take the run with it.
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300 ${labels})
  endif()
endfunction()

# Each part leaves a list of its cases in Testing/parts, where scripts/test counts them.
function(panelkit_add_parts name count)
  if(NOT count)
    set(count 1)
  endif()
  math(EXPR last "${count} - 1")
  foreach(index RANGE ${last})
    set(part ${name}-${index})
    add_test(NAME ${part} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${part} PROPERTIES TIMEOUT 1200 ${ARGN} ENVIRONMENT
      "GTEST_TOTAL_SHARDS=${count};GTEST_SHARD_INDEX=${index};GTEST_OUTPUT=xml:${PROJECT_BINARY_DIR}/Testing/parts/${part}.xml")
  endforeach()
endfunction()
