# The whole job on a real screen with real mouse and keys, and the pictures of the user guide
# taken in the same way.
find_package(X11 REQUIRED COMPONENTS Xtst)
add_library(orvane_test_stage STATIC EXCLUDE_FROM_ALL
  whole_job/hands.cpp
  whole_job/hands.h
  whole_job/keyboard_hands.cpp
  whole_job/mouse_hands.cpp
  whole_job/new_user.cpp
  whole_job/new_user.h
  whole_job/stage.cpp
  whole_job/stage.h
  whole_job/x_input.cpp
  whole_job/x_input.h
  whole_job/x_screen.cpp
  whole_job/x_screen.h)
target_include_directories(orvane_test_stage PUBLIC ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/src)
target_link_libraries(orvane_test_stage PUBLIC
  orvane_console orvane_provider orvane::qscintilla Qt6::Widgets X11::X11 X11::Xtst)
target_compile_definitions(orvane_test_stage PRIVATE
  ORVANE_SNAP_IN="$<TARGET_FILE:ORVOLEDBSnapIn>"
  ORVANE_CONTROLS="$<TARGET_FILE:ORVOLEDBCtls>"
  ORVANE_PROVIDER="$<TARGET_FILE:ORVOLEDB>")
add_dependencies(orvane_test_stage ORVOLEDBSnapIn ORVOLEDBCtls ORVOLEDB)

orvane_test(console_whole_job QT SHARDS 2
  MAIN whole_job/main.cpp
  LINK orvane_test_stage nlohmann_json::nlohmann_json
  SOURCES
    whole_job/saved_document.cpp
    whole_job/saved_document.h
    whole_job/servers_and_catalogs.cpp
    whole_job/rows_at_work.cpp
    whole_job/tables_and_queries.cpp
    whole_job/whole_job.h
    whole_job/whole_job_test.cpp)

add_executable(orvane-guide-pictures EXCLUDE_FROM_ALL whole_job/guide_pictures.cpp)
target_link_libraries(orvane-guide-pictures PRIVATE orvane_test_stage)
