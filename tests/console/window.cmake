# Tests of the window.
orvane_test(console_window QT
  LINK orvane_console
  SOURCES
    console_session_test.cpp
    fake_snap_in.h
    main_window_test.cpp
    scope_tree_test.cpp)
