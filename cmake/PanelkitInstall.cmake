# What is installed: the library with its headers, the stand-ins, and the package files by which other projects
# find them.

include(CMakePackageConfigHelpers)

# What must be built before it can be installed, beside the library itself.
set(PANELKIT_INSTALLED_TARGETS)
if(PANELKIT_PLATFORM STREQUAL "simulator")
  list(APPEND PANELKIT_INSTALLED_TARGETS ${PANELKIT_PLATFORM_LIBRARIES})
endif()
if(TARGET panelsim)
  set(PANELKIT_SAMPLE_DRIVERS driver_ByteAddressed driver_Modbus driver_SoakCoded)
  list(APPEND PANELKIT_INSTALLED_TARGETS panelsim panelkit_man ${PANELKIT_SAMPLE_DRIVERS})
endif()
add_custom_target(panelkit_package_contents DEPENDS panelkit ${PANELKIT_INSTALLED_TARGETS})

target_sources(panelkit PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}"
  FILES "${PROJECT_SOURCE_DIR}/panelkit.h")

# Components are the packages of cmake/PanelkitPackages.cmake; what has none belongs to the development package.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

install(TARGETS panelkit EXPORT panelkitTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library NAMELINK_COMPONENT development
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/panelkit" COMPONENT development)
if(PANELKIT_PLATFORM STREQUAL "simulator")
  install(TARGETS ${PANELKIT_PLATFORM_LIBRARIES} EXPORT panelkitTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/panelkit" COMPONENT platform
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/panelkit" COMPONENT development)
  list(APPEND panelkit_pc_files panelkit-platform-sim)
endif()

if(TARGET panelsim)
  install(TARGETS panelsim RUNTIME COMPONENT panelsim)
  install(TARGETS ${PANELKIT_SAMPLE_DRIVERS}
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/panelkit/drivers" COMPONENT panelsim)
  install(FILES "${PROJECT_SOURCE_DIR}/simulator/panelsim/panelsim.bash"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME panelsim COMPONENT panelsim)
  set(page "${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_DATADIR}/man/man1/panelsim.1.gz")
  add_custom_command(OUTPUT "${page}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_DATADIR}/man/man1"
    COMMAND gzip -9nc "${PROJECT_SOURCE_DIR}/docs/man/panelsim.1" > "${page}"
    DEPENDS "${PROJECT_SOURCE_DIR}/docs/man/panelsim.1"
    VERBATIM)
  add_custom_target(panelkit_man ALL DEPENDS "${page}")
  add_dependencies(panelsim panelkit_man)
  install(FILES "${page}"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT panelsim)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/drivers" "${PROJECT_SOURCE_DIR}/docs/formats"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/panelsim" COMPONENT panelsim)
endif()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libpanelkit-dev" COMPONENT development
  PATTERN man EXCLUDE PATTERN Doxyfile EXCLUDE)

set(panelkit_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/panelkit")
configure_package_config_file(cmake/panelkitConfig.cmake.in panelkitConfig.cmake
  INSTALL_DESTINATION "${panelkit_package_dir}")
write_basic_package_version_file(panelkitConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT panelkitTargets NAMESPACE panelkit:: DESTINATION "${panelkit_package_dir}")
install(FILES
  "${CMAKE_CURRENT_BINARY_DIR}/panelkitConfig.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/panelkitConfigVersion.cmake"
  DESTINATION "${panelkit_package_dir}")

if(PANELKIT_QT EQUAL 5)
  set(panelkit_pc_requires "Qt5Core Qt5Gui Qt5Widgets Qt5PrintSupport")
else()
  set(panelkit_pc_requires "Qt6Core Qt6Gui Qt6Widgets Qt6PrintSupport Qt6Core5Compat")
endif()
file(RELATIVE_PATH panelkit_pc_to_prefix
  "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
string(REGEX REPLACE "/$" "" panelkit_pc_to_prefix "${panelkit_pc_to_prefix}")
foreach(name panelkit ${panelkit_pc_files})
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()
