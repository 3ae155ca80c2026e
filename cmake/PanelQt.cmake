# One set of target names for both Qt versions: panel_qt_core, panel_qt_gui
# (widgets included) and panel_qt_sql.
add_library(panel_qt_core INTERFACE)
add_library(panel_qt_gui INTERFACE)
add_library(panel_qt_sql INTERFACE)

if(PANEL_QT EQUAL 4)
  find_package(Qt4 4.8 REQUIRED COMPONENTS QtCore QtGui QtSql)
  target_link_libraries(panel_qt_core INTERFACE Qt4::QtCore)
  target_link_libraries(panel_qt_gui INTERFACE Qt4::QtGui Qt4::QtCore)
  target_link_libraries(panel_qt_sql INTERFACE Qt4::QtSql Qt4::QtCore)
elseif(PANEL_QT EQUAL 5)
  find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Sql Network SerialPort)
  target_link_libraries(panel_qt_core INTERFACE Qt5::Core)
  target_link_libraries(panel_qt_gui INTERFACE Qt5::Widgets)
  target_link_libraries(panel_qt_sql INTERFACE Qt5::Sql)
else()
  message(FATAL_ERROR "PANEL_QT must be 4 or 5, not '${PANEL_QT}'")
endif()
