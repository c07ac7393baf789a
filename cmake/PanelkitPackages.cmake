# The Debian packages, one a component. scripts/packages builds them, from a build for /usr.

set(PANELKIT_PACKAGE_MAINTAINER "panelkit maintainers <maintainers@panelkit.example>" CACHE STRING
  "Who is named as the maintainer of the packages")

if(NOT PANELKIT_QT EQUAL 5 OR NOT TARGET panelsim)
  return()
endif()
if(CMAKE_CROSSCOMPILING)
  set(panelkit_architecture armhf)
else()
  find_program(PANELKIT_DPKG dpkg)
  if(NOT PANELKIT_DPKG)
    return() # no Debian, no packages
  endif()
  execute_process(COMMAND "${PANELKIT_DPKG}" --print-architecture
    OUTPUT_VARIABLE panelkit_architecture OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()

set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON) # scripts/packages builds what is packed, and not the tests
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME panelkit)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGE_CONTACT "${PANELKIT_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_COMPONENTS_ALL library development panelsim platform)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE "${panelkit_architecture}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# What is linked with, by the packages' names and the versions of what is used of them. scripts/packages compares it
# with what the files need; dpkg-shlibdeps does not know another processor's packages.
set(panelkit_needs_cxx "libc6 (>= 2.34)" "libgcc-s1 (>= 3.5)" "libstdc++6 (>= 12)" "libqt5core5a (>= 5.15.1)")
set(panelkit_needs_widgets ${panelkit_needs_cxx} "libqt5gui5 (>= 5.15.1) | libqt5gui5-gles (>= 5.15.1)"
  "libqt5widgets5 (>= 5.15.1)" "libqt5printsupport5 (>= 5.15.1)")
set(panelkit_needs_engines ${panelkit_needs_widgets} "liblua5.4-0 (>= 5.4.4)" "libmodbus5 (>= 3.1.4)")

# panelkit_package(<component> <package> SECTION <section> SUMMARY <line> TEXT <line>... [DEPENDS <package>...]
#                  [PROVIDES <package>...] [RECOMMENDS <package>...])
function(panelkit_package component package)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "SECTION;SUMMARY" "TEXT;DEPENDS;PROVIDES;RECOMMENDS")
  string(TOUPPER "${component}" upper)
  list(JOIN arg_TEXT "\n" text)
  foreach(field DEPENDS PROVIDES RECOMMENDS)
    list(JOIN arg_${field} ", " value)
    set(CPACK_DEBIAN_${upper}_PACKAGE_${field} "${value}" PARENT_SCOPE)
  endforeach()
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME "${package}" PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION "${arg_SECTION}" PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${arg_SUMMARY}\n${text}" PARENT_SCOPE)
  # scripts/packages writes them; nobody else installs them.
  foreach(file changelog.gz copyright)
    install(FILES "${PROJECT_BINARY_DIR}/packaging/${file}"
      DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component} EXCLUDE_FROM_ALL)
  endforeach()
  set(overrides "${PROJECT_SOURCE_DIR}/cmake/lintian/${package}")
  if(EXISTS "${overrides}")
    install(FILES "${overrides}" DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides"
      COMPONENT ${component} EXCLUDE_FROM_ALL)
  endif()
endfunction()

set(panelkit_library_package "libpanelkit${PROJECT_VERSION_MAJOR}")
set(panelkit_this "(= ${PROJECT_VERSION})")
set(panelkit_about
  "panelkit is the shared utility library of touch-panel HMI runtimes: it turns"
  "PLC register addresses and raw register words into the text that screens"
  "show, checks addresses, prepares Lua macros, and keeps link and IP settings.")

# Its Chinese texts lie where runtimes of this major version look for them, share/panelkit/translations: the next one has
# to take another name there, or the two packages cannot be installed side by side.
panelkit_package(library ${panelkit_library_package}
  SECTION libs
  SUMMARY "utility library of a touch-panel HMI runtime"
  TEXT ${panelkit_about}
    "."
    "The panel's three platform libraries come from panelkit-platform-sim on a"
    "PC, and from the maker's own package on a panel."
  DEPENDS "panelkit-platform-sim ${panelkit_this} | panelkit-platform"
    ${panelkit_needs_widgets})
file(WRITE "${PROJECT_BINARY_DIR}/packaging-control/shlibs"
  "libpanelkit ${PROJECT_VERSION_MAJOR} ${panelkit_library_package} (>= ${PROJECT_VERSION})\n")
file(WRITE "${PROJECT_BINARY_DIR}/packaging-control/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
  "${PROJECT_BINARY_DIR}/packaging-control/shlibs" "${PROJECT_BINARY_DIR}/packaging-control/triggers")

panelkit_package(development libpanelkit-dev
  SECTION libdevel
  SUMMARY "utility library of a touch-panel HMI runtime - development files"
  TEXT ${panelkit_about}
    "."
    "This package has the headers, the files for CMake and pkg-config, and pages"
    "on calling the library, on driver libraries and on the file formats."
  DEPENDS "${panelkit_library_package} ${panelkit_this}" "panelkit-platform-sim ${panelkit_this}" qtbase5-dev)

panelkit_package(panelsim panelsim
  SECTION devel
  SUMMARY "simulator of a touch panel and its PLC"
  TEXT ${panelkit_about}
    "."
    "panelsim plays a panel's runtime on a PC: it loads a project, polls its PLC"
    "over Modbus TCP, shows the values, checks addresses and runs macros. It"
    "brings a sample project, the PLC behind it, two sample driver libraries, and"
    "one that its soak test asks."
  DEPENDS "${panelkit_library_package} ${panelkit_this}" "panelkit-platform-sim ${panelkit_this}"
    ${panelkit_needs_engines}
  RECOMMENDS fonts-wqy-microhei)

panelkit_package(platform panelkit-platform-sim
  SECTION libs
  SUMMARY "stand-ins of a touch panel's platform libraries"
  TEXT ${panelkit_about}
    "."
    "This package has the stand-ins of the panel's three platform libraries"
    "(events, project tree, system), by which the library runs on a PC."
  DEPENDS ${panelkit_needs_cxx}
  PROVIDES panelkit-platform)

include(CPack)
