# Tests of the session, which knows no window: nothing but its own library stands behind them.
orvane_test(console_session QTCORE
  LINK orvane_console_session
  SOURCES
    ../own_folders_test.cpp
    session/console_session_test.cpp
    session/expansion_test.cpp
    session/fake_snap_in.h
    session/kept_layouts_test.cpp
    session/reload_test.cpp
    session/scope_tree_test.cpp
    session/session_fixture.h
    session/shown_item_test.cpp)
