# Qt 5 or Qt 6, as PANELKIT_QT says; the text codecs of Qt 5 are a module of their own in Qt 6.

if(NOT PANELKIT_QT MATCHES "^[56]$")
  message(FATAL_ERROR "PANELKIT_QT is '${PANELKIT_QT}': give 5 or 6")
endif()
set(PANELKIT_QT_COMPONENTS Core Gui Widgets PrintSupport)
if(PANELKIT_QT EQUAL 6)
  list(APPEND PANELKIT_QT_COMPONENTS Core5Compat)
endif()
find_package(Qt${PANELKIT_QT} REQUIRED COMPONENTS ${PANELKIT_QT_COMPONENTS})

# panelkit_link_qt(<target> <PRIVATE|PUBLIC|INTERFACE> <component>...)
function(panelkit_link_qt target scope)
  foreach(component IN LISTS ARGN)
    target_link_libraries(${target} ${scope} Qt${PANELKIT_QT}::${component})
  endforeach()
endfunction()
