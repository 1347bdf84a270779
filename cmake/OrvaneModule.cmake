# One target per folder under src/, made by one function that knows the allowed doors.

set(ORVANE_DOORS_FILE ${CMAKE_SOURCE_DIR}/cmake/doors.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ORVANE_DOORS_FILE})

# The link targets behind the names of doors.txt that are not rooms.
set(ORVANE_DOOR_qtcore Qt6::Core)
set(ORVANE_DOOR_qt Qt6::Widgets)
set(ORVANE_DOOR_svg Qt6::Svg)
set(ORVANE_DOOR_sqlite SQLite::SQLite3)
set(ORVANE_DOOR_libpq orvane::libpq)
set(ORVANE_DOOR_date date::date date::date-tz)
set(ORVANE_DOOR_spdlog spdlog::spdlog)
set(ORVANE_DOOR_fmt fmt::fmt)
set(ORVANE_DOOR_cli11 CLI11::CLI11)
set(ORVANE_DOOR_json nlohmann_json::nlohmann_json)
set(ORVANE_DOOR_qscintilla orvane::qscintilla)
set(ORVANE_DOOR_qcustomplot QCustomPlotQt6::QCustomPlotQt6)
set(ORVANE_DOOR_dl ${CMAKE_DL_LIBS})

# orvane_room_target(ROOM RESULT): the library of a room; of a room within a folder, such as
# console/session, it is orvane_console_session.
function(orvane_room_target room result)
  string(REPLACE "/" "_" name ${room})
  set(${result} orvane_${name} PARENT_SCOPE)
endfunction()

# orvane_doors(ROOM RESULT): the link targets for the doors that doors.txt gives the room.
function(orvane_doors room result)
  file(STRINGS ${ORVANE_DOORS_FILE} line REGEX "^${room}:")
  if(line STREQUAL "")
    message(FATAL_ERROR "cmake/doors.txt has no line for ${room}")
  endif()
  string(REGEX REPLACE "^${room}:[ ]*" "" doors "${line}")
  separate_arguments(doors)
  set(targets)
  foreach(door IN LISTS doors)
    if(DEFINED ORVANE_DOOR_${door})
      list(APPEND targets ${ORVANE_DOOR_${door}})
    else()
      orvane_room_target(${door} target)
      list(APPEND targets ${target})
    endif()
  endforeach()
  set(${result} ${targets} PARENT_SCOPE)
endfunction()

# orvane_module(ROOM SOURCES...): the static library of the folder src/ROOM with the doors of its
# room. Without sources it is a library of headers.
function(orvane_module room)
  orvane_doors(${room} doors)
  orvane_room_target(${room} target)
  if(ARGN)
    add_library(${target} STATIC ${ARGN})
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${target} PUBLIC ${doors})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${target} INTERFACE ${doors})
  endif()
endfunction()

# orvane_component(TARGET ROOM VERSION SOURCES...): the in-process component libTARGET.so, which
# exports the four entry points only and carries a version resource.
function(orvane_component target room version)
  add_library(${target} MODULE ${ARGN})
  target_link_libraries(${target} PRIVATE orvane_${room})
  target_link_options(${target} PRIVATE
    -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/entry_points.map)
  set_target_properties(${target} PROPERTIES
    LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/entry_points.map)
  orvane_version_resource(${target} ${version})
endfunction()

# orvane_version_resource(TARGET VERSION): links the fixed file-information record into the
# target, as file and product version, in the section that the component runtime reads. VERSION
# is MAJOR.MINOR.BUILD.REVISION or, short, MAJOR.MINOR.REVISION: 1.0.1 is "1.00.0001", build 0.
function(orvane_version_resource target version)
  if(version MATCHES "^([0-9]+)\\.([0-9]+)\\.([0-9]+)\\.([0-9]+)$")
    set(numbers "${CMAKE_MATCH_1};${CMAKE_MATCH_2};${CMAKE_MATCH_3};${CMAKE_MATCH_4}")
  elseif(version MATCHES "^([0-9]+)\\.([0-9]+)\\.([0-9]+)$")
    set(numbers "${CMAKE_MATCH_1};${CMAKE_MATCH_2};0;${CMAKE_MATCH_3}")
  else()
    message(FATAL_ERROR
      "the version of ${target} is neither MAJOR.MINOR.REVISION nor MAJOR.MINOR.BUILD.REVISION")
  endif()
  foreach(number IN LISTS numbers)
    if(number GREATER 65535)
      message(FATAL_ERROR "the version of ${target} has a number above 65535")
    endif()
  endforeach()
  list(GET numbers 0 ORVANE_VERSION_MAJOR)
  list(GET numbers 1 ORVANE_VERSION_MINOR)
  list(GET numbers 2 ORVANE_VERSION_BUILD)
  list(GET numbers 3 ORVANE_VERSION_REVISION)
  foreach(part MAJOR MINOR BUILD REVISION)
    math(EXPR ORVANE_VERSION_${part} "${ORVANE_VERSION_${part}}")
  endforeach()
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.cpp)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/version_resource.cpp.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/src)
endfunction()
