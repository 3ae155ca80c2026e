# Compile settings shared by all rooms, and the two ways to declare a room.
add_library(panel_options INTERFACE)
target_compile_options(panel_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
if(PANEL_WERROR)
  target_compile_options(panel_options INTERFACE -Werror)
endif()
if(PANEL_SANITIZE)
  target_compile_options(panel_options INTERFACE -fsanitize=${PANEL_SANITIZE}
                                                 -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(panel_options INTERFACE -fsanitize=${PANEL_SANITIZE})
endif()
if(PANEL_SANITIZE MATCHES "address")
  add_library(address_options OBJECT ${PROJECT_SOURCE_DIR}/tests/sanitizers/addressoptions.cpp)
  add_library(shared_globals OBJECT ${PROJECT_SOURCE_DIR}/tests/sanitizers/sharedglobals.cpp)
  target_sources(
    panel_options
    INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:address_options>>
              $<$<BOOL:$<TARGET_PROPERTY:ENABLE_EXPORTS>>:$<TARGET_OBJECTS:shared_globals>>)
endif()
if(PANEL_SANITIZE MATCHES "thread" AND PANEL_QT EQUAL 5)
  # Every program tells ThreadSanitizer what Qt's synchronization means.
  add_library(qt_synchronization OBJECT
              ${PROJECT_SOURCE_DIR}/tests/sanitizers/qtsynchronization.cpp)
  target_include_directories(qt_synchronization SYSTEM PRIVATE ${Qt5Core_PRIVATE_INCLUDE_DIRS})
  target_link_libraries(qt_synchronization PRIVATE panel_qt_core)
  target_compile_options(qt_synchronization PRIVATE -fsanitize=${PANEL_SANITIZE})
  set_target_properties(qt_synchronization PROPERTIES CXX_STANDARD 17)
  target_compile_options(panel_options INTERFACE -include
                                                 ${PROJECT_SOURCE_DIR}/tests/sanitizers/qtinlines.h)
  target_sources(
    panel_options
    INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:qt_synchronization>>
  )
  target_link_libraries(panel_options INTERFACE ${CMAKE_DL_LIBS})
endif()
if(PANEL_FUZZ)
  target_compile_options(panel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Linked after panel_options by what calls objects of the other side of the
# contract, whose classes are compiled elsewhere: only the order of their virtual
# functions is known, so the check of an object's class would always fail.
add_library(panel_foreign_objects INTERFACE)
if(PANEL_SANITIZE MATCHES "undefined")
  target_compile_options(panel_foreign_objects INTERFACE -fno-sanitize=vptr)
endif()

# panel_precompiled(TARGET NAME [LINKED...]): lets a target take the headers that
# most sources include from a precompiled file, which is made once for all
# targets of the same NAME: they share language and code options. The lints
# compile without it, so that a source that forgets an include is still noticed.
set(PANEL_PRECOMPILE_test_headers <gtest/gtest.h>)
function(panel_precompiled target name)
  if(NOT PANEL_PRECOMPILE)
    return()
  endif()
  if(NOT TARGET ${name})
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/${name}.cpp CONTENT "")
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
    foreach(property CXX_STANDARD CXX_VISIBILITY_PRESET VISIBILITY_INLINES_HIDDEN)
      get_target_property(value ${target} ${property})
      if(value)
        set_target_properties(${name} PROPERTIES ${property} ${value})
      endif()
    endforeach()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
      set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
      target_compile_options(${name} PRIVATE -fPIE)
    endif()
    target_link_libraries(${name} PRIVATE panel_options panel_qt_core ${ARGN})
    target_precompile_headers(
      ${name}
      PRIVATE
      <QByteArray>
      <QDebug>
      <QDir>
      <QFile>
      <QHash>
      <QList>
      <QMap>
      <QMutex>
      <QObject>
      <QString>
      <QStringList>
      <QThread>
      <QVariant>
      <algorithm>
      <atomic>
      <functional>
      <map>
      <memory>
      <set>
      <string>
      <vector>
      ${PANEL_PRECOMPILE_${name}})
  endif()
  target_precompile_headers(${target} REUSE_FROM ${name})
endfunction()

# panel_moc(TARGET): runs moc over the target's headers. Its own dependencies do
# not tell it that a configured build folder got a new header, so every
# configuring makes it look again.
function(panel_moc target)
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
endfunction()

# panel_room(NAME [STANDARD 11|17] [LIBRARIES ...]): an object library of every
# .cpp, .h and .qrc file in the calling folder. Objects, not an archive: the
# plug-in must carry all of a room, also what the driver does not call.
function(panel_room name)
  cmake_parse_arguments(ROOM "" "STANDARD" "LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  if(NOT sources)
    add_library(${name} INTERFACE)
    return()
  endif()
  add_library(${name} OBJECT ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ROOM_LIBRARIES} PRIVATE panel_options)
  set_target_properties(
    ${name} PROPERTIES CXX_STANDARD ${ROOM_STANDARD} AUTORCC ON CXX_VISIBILITY_PRESET hidden
                       VISIBILITY_INLINES_HIDDEN ON)
  panel_moc(${name})
  panel_precompiled(${name} room_headers_${ROOM_STANDARD})
endfunction()

# panel_driver(NAME LIBRARIES...): the plug-in of the calling folder, whose entry
# points are in plugin/plugin.cpp. It shows what runtime/drivers/exports.map says;
# the rest is hidden by the compiler, and by the linker what the C++ library's
# templates would still export.
function(panel_driver name)
  set(exports ${PROJECT_SOURCE_DIR}/runtime/drivers/exports.map)
  add_library(${name} MODULE plugin/plugin.cpp)
  target_link_libraries(${name} PRIVATE ${ARGN} panel_options)
  target_link_options(${name} PRIVATE -Wl,--version-script=${exports})
  set_target_properties(${name} PROPERTIES CXX_STANDARD 11 CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON LINK_DEPENDS ${exports})
endfunction()

# What a program links that carries the driver, the panel's runtime libraries or
# the host. Objects are not passed on by a room that uses another: a program
# names all of them.
set(PANEL_RUNTIME panel_services panel_base panel_interfaces)
set(PANEL_DRIVER dmc50v3_transfer dmc50v3_core driver_polling driver_tools)
set(PANEL_HOST panel_session panel_project panel_line panel_trace)

# panel_discover_tests(PROGRAM SECONDS PLATFORM [ENVIRONMENT]): makes a program's GoogleTest
# cases known to ctest one by one, or, where starting a program is dear, in a few
# parts; each may take so many seconds on a PC. PLATFORM is Qt's: offscreen or xcb.
function(panel_discover_tests program seconds platform)
  math(EXPR timeout "${seconds} * ${PANEL_TIMEOUT_FACTOR}")
  set(environment QT_QPA_PLATFORM=${platform} ${ARGN})
  if(PANEL_TEST_SHARDS GREATER 0)
    panel_sharded_tests(${program} ${timeout} ${environment})
    return()
  endif()
  math(EXPR listing_timeout "30 * ${PANEL_TIMEOUT_FACTOR}")
  gtest_discover_tests(${program} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT ${listing_timeout}
                       PROPERTIES TIMEOUT ${timeout} ENVIRONMENT "${environment}")
endfunction()

function(panel_sharded_tests program timeout)
  math(EXPR last "${PANEL_TEST_SHARDS} - 1")
  foreach(shard RANGE ${last})
    set(name ${program}.${shard})
    add_test(NAME ${name} COMMAND ${program})
    set_tests_properties(
      ${name}
      PROPERTIES
        TIMEOUT ${timeout} ENVIRONMENT
        "${ARGN};GTEST_TOTAL_SHARDS=${PANEL_TEST_SHARDS};GTEST_SHARD_INDEX=${shard};GTEST_BRIEF=1")
  endforeach()
endfunction()

# Lets ctest run a program's tests each on an X server of its own, whose screen
# is that of a panel. Two that take the same display at once are no trouble:
# xvfb-run then takes the next one. It is looked for where the tests run; without
# it they fail.
function(panel_tests_on_x_server name)
  get_target_property(emulator ${name} CROSSCOMPILING_EMULATOR)
  if(NOT emulator)
    set(emulator)
  endif()
  set_property(TARGET ${name} PROPERTY CROSSCOMPILING_EMULATOR xvfb-run --auto-servernum
                                       --server-args "-screen 0 800x480x24" ${emulator})
endfunction()

# panel_test(NAME [WINDOWS|X_SERVER] SOURCES... LIBRARIES ...): a GoogleTest
# program whose tests are known to ctest one by one. WINDOWS says that they open
# windows: off the screen, or, as Qt 4 knows no such platform, on X servers. Qt 4
# ends a test with a window that is run without one ("Cannot create a QWidget").
function(panel_test name)
  cmake_parse_arguments(TEST "WINDOWS;X_SERVER" "TIMEOUT" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 120)
  endif()
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} test_support panel_options)
  set_target_properties(${name} PROPERTIES CXX_STANDARD 17 AUTORCC ON)
  panel_moc(${name})
  panel_precompiled(${name} test_headers GTest::gtest)
  set(platform offscreen)
  if(TEST_X_SERVER OR (TEST_WINDOWS AND PANEL_QT EQUAL 4))
    panel_tests_on_x_server(${name})
    set(platform xcb)
  endif()
  panel_discover_tests(${name} ${TEST_TIMEOUT} ${platform} ${TEST_ENVIRONMENT})
endfunction()
