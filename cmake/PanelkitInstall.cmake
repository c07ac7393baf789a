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
  list(APPEND PANELKIT_INSTALLED_TARGETS panelsim ${PANELKIT_SAMPLE_DRIVERS})
endif()

target_sources(panelkit PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}"
  FILES "${PROJECT_SOURCE_DIR}/panelkit.h")

install(TARGETS panelkit EXPORT panelkitTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/panelkit")
if(PANELKIT_PLATFORM STREQUAL "simulator")
  install(TARGETS ${PANELKIT_PLATFORM_LIBRARIES} EXPORT panelkitTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/panelkit")
endif()

if(TARGET panelsim)
  install(TARGETS panelsim)
  install(TARGETS ${PANELKIT_SAMPLE_DRIVERS} DESTINATION "${CMAKE_INSTALL_LIBDIR}/panelkit/drivers")
endif()

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
configure_file(cmake/panelkit.pc.in panelkit.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/panelkit.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
