# Tests of the window and its panes.
orvane_test(console_window QT SHARDS 4
  LINK orvane_console
  SOURCES
    document/document_fixture.h
    results/result_list_test.cpp
    results/result_pane_test.cpp
    scope/scope_look_test.cpp
    scope/scope_pane_test.cpp
    session/fake_snap_in.h
    window/document_keeper_test.cpp
    window/doubtful_document_test.cpp
    window/kept_view_test.cpp
    window/last_session_test.cpp
    window/main_window_fixture.h
    window/main_window_test.cpp
    window/selection_menus_test.cpp
    window/server_marks_test.cpp
    window/shown_control.h
    window/spoken_names_test.cpp
    window/toolbar_view_test.cpp
    window/unsaved_work_test.cpp
    window/window_geometry_test.cpp
    window/window_looks_test.cpp)
# F1 opens what is made of the documents.
add_dependencies(console_window_tests guide)
