# The three closed libraries of a panel, chosen in this one place: the stand-ins built here, or the panel's
# own, looked for on the linker's path (CMAKE_LIBRARY_PATH or the sysroot of the toolchain file).

set(PANELKIT_PLATFORM_LIBRARIES hmi_event device_struct sys_base)
if(PANELKIT_PLATFORM STREQUAL "simulator")
  target_link_libraries(panelkit PRIVATE ${PANELKIT_PLATFORM_LIBRARIES})
elseif(PANELKIT_PLATFORM STREQUAL "device")
  foreach(name IN LISTS PANELKIT_PLATFORM_LIBRARIES)
    find_library(PANELKIT_LIB_${name} ${name} REQUIRED)
    target_link_libraries(panelkit PRIVATE "${PANELKIT_LIB_${name}}")
  endforeach()
else()
  message(FATAL_ERROR "PANELKIT_PLATFORM is '${PANELKIT_PLATFORM}': give simulator or device")
endif()
