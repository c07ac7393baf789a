# The library: its sources are compiled once, into panelkit_objects; the shared library panelkit and the
# tests of internal code both link those objects.

add_library(panelkit_objects OBJECT)
set_target_properties(panelkit_objects PROPERTIES AUTOMOC ON POSITION_INDEPENDENT_CODE ON)
target_include_directories(panelkit_objects PUBLIC "${PROJECT_SOURCE_DIR}")
target_compile_definitions(panelkit_objects PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
target_link_libraries(panelkit_objects PRIVATE panelkit_build_flags PUBLIC ${CMAKE_DL_LIBS})
panelkit_link_qt(panelkit_objects PUBLIC ${PANELKIT_QT_COMPONENTS})
if(PANELKIT_COVERAGE)
  target_compile_options(panelkit_objects PRIVATE --coverage -O0)
  target_link_options(panelkit_objects INTERFACE --coverage)
endif()

add_library(panelkit SHARED)
add_library(panelkit::panelkit ALIAS panelkit)
target_link_libraries(panelkit PRIVATE panelkit_objects panelkit_build_flags)
panelkit_link_qt(panelkit PUBLIC ${PANELKIT_QT_COMPONENTS})
target_include_directories(panelkit INTERFACE
  "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
  "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>"
  "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/panelkit>")
set_target_properties(panelkit PROPERTIES
  VERSION "${PROJECT_VERSION}"
  SOVERSION "${PROJECT_VERSION_MAJOR}"
  LINK_DEPENDS "${PROJECT_SOURCE_DIR}/cmake/panelkit.map"
  BUILD_WITH_INSTALL_RPATH ON
  INSTALL_RPATH "$ORIGIN/panelkit")
target_link_options(panelkit PRIVATE "-Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/panelkit.map")

# panelkit_sources([SOURCES <file>...] [PUBLIC <header>...])
# Adds the files of the calling folder. PUBLIC headers are installed below include/panelkit with their
# folder, and each is compiled alone by the tests; a header that is not public need not be listed, but
# every source must be.
function(panelkit_sources)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "SOURCES;PUBLIC")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "panelkit_sources does not know ${arg_UNPARSED_ARGUMENTS}")
  endif()
  list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  list(TRANSFORM arg_PUBLIC PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  target_sources(panelkit_objects PRIVATE ${arg_SOURCES} ${arg_PUBLIC})
  target_sources(panelkit PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${arg_PUBLIC})
endfunction()
