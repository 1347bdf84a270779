# Tests of the window.
orvane_test(console_window QT
  LINK orvane_console
  SOURCES
    console_session_test.cpp
    document_keeper_test.cpp
    document_fixture.h
    doubtful_document_test.cpp
    fake_snap_in.h
    main_window_fixture.h
    main_window_test.cpp
    result_list_test.cpp
    result_pane_test.cpp
    scope_pane_test.cpp
    scope_tree_test.cpp
    selection_menus_test.cpp
    server_marks_test.cpp
    toolbar_view_test.cpp
    unsaved_work_test.cpp
    window_looks_test.cpp)

# What an administrator does, in the real window with the components of this build tree.
orvane_test(console_scenarios QT
  LINK orvane_console orvane_provider
  SOURCES
    historians_by_guid_test.cpp
    log_file_question_test.cpp
    host_driver.cpp
    host_driver.h
    living_tree_test.cpp
    reader_first_test.cpp
    shown_qt_form.cpp
    shown_qt_form.h
    unloading_test.cpp
    ../scenarios/catalog_cases.cpp
    ../scenarios/command_cases.cpp
    ../scenarios/document_cases.cpp
    ../scenarios/grid_cases.cpp
    ../scenarios/query_cases.cpp
    ../scenarios/shell_cases.cpp
  TIMEOUT 600)
target_compile_definitions(console_scenarios_tests PRIVATE
  ORVANE_SNAP_IN="$<TARGET_FILE:ORVOLEDBSnapIn>"
  ORVANE_CONTROLS="$<TARGET_FILE:ORVOLEDBCtls>"
  ORVANE_PROVIDER="$<TARGET_FILE:ORVOLEDB>"
  ORVANE_SAMPLE="${CMAKE_SOURCE_DIR}/samples/Localhost.orvc")
add_dependencies(console_scenarios_tests ORVOLEDBSnapIn ORVOLEDBCtls ORVOLEDB)

orvane_test(console_program QT
  LINK orvane_component
  SOURCES
    app/program_test.cpp
    app/tour_test.cpp
  TIMEOUT 600)
target_compile_definitions(console_program_tests PRIVATE
  ORVANE_CONSOLE="$<TARGET_FILE:orvane-console>"
  ORVANE_TOUR="$<TARGET_FILE:orvane-tour>"
  ORVANE_HISTORIAN="$<TARGET_FILE:orvane-historian>"
  ORVANE_SNAP_IN="$<TARGET_FILE:ORVOLEDBSnapIn>"
  ORVANE_CONTROLS="$<TARGET_FILE:ORVOLEDBCtls>"
  ORVANE_PROVIDER="$<TARGET_FILE:ORVOLEDB>"
  ORVANE_SAMPLE="${CMAKE_SOURCE_DIR}/samples/Localhost.orvc"
  ORVANE_VERSION="${PROJECT_VERSION}")
add_dependencies(console_program_tests
  orvane-console orvane-tour orvane-historian ORVOLEDBSnapIn ORVOLEDBCtls ORVOLEDB)

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

orvane_test(console_whole_job QT
  MAIN whole_job/main.cpp
  LINK orvane_test_stage nlohmann_json::nlohmann_json
  SOURCES
    whole_job/saved_document.cpp
    whole_job/saved_document.h
    whole_job/whole_job_test.cpp
  TIMEOUT 600)

add_executable(orvane-guide-pictures EXCLUDE_FROM_ALL whole_job/guide_pictures.cpp)
target_link_libraries(orvane-guide-pictures PRIVATE orvane_test_stage)
