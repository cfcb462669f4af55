# Precompiled headers, for who compiles everything at once: ./run on a fresh machine. Two sets, one for rooms that link
# Qt and one for the others; a room takes the set that fits, whoever it links. Builds that check the includes do without.
#
# Not for Objective-C++, so not on Apple's systems.
#
# ccache needs CCACHE_SLOPPINESS=pch_defines,time_macros with them.
if(APPLE)
  set(HOPSEL_PRECOMPILED_HEADERS OFF)
endif()
if(HOPSEL_PRECOMPILED_HEADERS)
  set(standard_headers <algorithm> <array> <chrono> <cstdint> <deque> <filesystem> <functional> <map> <memory> <optional>
    <set> <stdexcept> <string> <string_view> <unordered_map> <utility> <variant> <vector>)
  # The compiler takes a set only where the same macros are defined; GLib asks for threads.
  add_compile_options(-pthread)
  set(qt_parts Core Gui Widgets DBus Network Svg)
  list(TRANSFORM qt_parts TOUPPER OUTPUT_VARIABLE qt_macros)
  list(TRANSFORM qt_macros REPLACE "(.+)" "QT_\\1_LIB")
  file(WRITE ${PROJECT_BINARY_DIR}/precompiled.cpp "// Carries the precompiled headers.\n")

  add_library(hopsel_precompiled OBJECT ${PROJECT_BINARY_DIR}/precompiled.cpp)
  target_link_libraries(hopsel_precompiled PRIVATE hopsel_warnings)
  target_precompile_headers(hopsel_precompiled PRIVATE ${standard_headers})

  add_library(hopsel_precompiled_qt OBJECT ${PROJECT_BINARY_DIR}/precompiled.cpp)
  list(TRANSFORM qt_parts PREPEND Qt6::)
  target_link_libraries(hopsel_precompiled_qt PRIVATE ${qt_parts} hopsel_warnings)
  target_precompile_headers(hopsel_precompiled_qt PRIVATE ${standard_headers}
    <QCoreApplication> <QDBusConnection> <QDBusMessage> <QDBusPendingCallWatcher> <QDBusServiceWatcher> <QFile>
    <QIcon> <QImage> <QObject> <QPainter> <QPointer> <QSocketNotifier> <QStringList> <QTimer> <QVariant>
    <QApplication> <QHBoxLayout> <QMenu> <QPushButton> <QVBoxLayout> <QWidget>)
endif()

# Does the target link Qt, itself or through what it links?
function(hopsel_links_qt target found)
  set(${found} FALSE PARENT_SCOPE)
  foreach(property IN ITEMS LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
    get_target_property(links ${target} ${property})
    foreach(link IN LISTS links)
      if(link MATCHES "^Qt6::")
        set(${found} TRUE PARENT_SCOPE)
        return()
      elseif(link MATCHES "^hopsel_" AND TARGET ${link})
        hopsel_links_qt(${link} deeper)
        if(deeper)
          set(${found} TRUE PARENT_SCOPE)
          return()
        endif()
      endif()
    endforeach()
  endforeach()
endfunction()

# hopsel_precompile(<target>): after everything that the target links has been declared.
function(hopsel_precompile target)
  if(NOT HOPSEL_PRECOMPILED_HEADERS)
    return()
  endif()
  hopsel_links_qt(${target} links_qt)
  if(links_qt)
    target_compile_definitions(${target} PRIVATE ${qt_macros})
    target_precompile_headers(${target} REUSE_FROM hopsel_precompiled_qt)
  else()
    target_precompile_headers(${target} REUSE_FROM hopsel_precompiled)
  endif()
endfunction()
