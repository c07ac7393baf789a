# Benchmarks are programs on Google Benchmark, one a folder. With measured speed they also check answers and
# numbers of allocations, so each runs once, briefly, as a test.

find_package(benchmark REQUIRED)

# panelkit_add_benchmark(<name> SOURCES <file>... [LINK objects|library] [LIBRARIES <target>...])
#
# LINK says what of the library the program gets: the shared library as a caller has it (the default), or the
# objects, which let it reach internal code.
function(panelkit_add_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LINK" "SOURCES;LIBRARIES")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "panelkit_add_benchmark does not know ${arg_UNPARSED_ARGUMENTS}")
  endif()
  add_executable(${name} ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bench")
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  if(arg_LINK STREQUAL "objects")
    target_link_libraries(${name} PRIVATE panelkit_objects)
  elseif(NOT arg_LINK OR arg_LINK STREQUAL "library")
    target_link_libraries(${name} PRIVATE panelkit)
  else()
    message(FATAL_ERROR "LINK is '${arg_LINK}': give objects or library")
  endif()
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} panelkit_bench_support panelkit_allocation_counter
    panelkit_build_flags ${PANELKIT_PLATFORM_LIBRARIES})
  panelkit_link_qt(${name} PRIVATE Core)
  add_test(NAME ${name} COMMAND ${name} --benchmark_repetitions=1 --benchmark_min_time=0.001)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()
