# Tests of the window.
orvane_test(console_window QT
  LINK orvane_console
  SOURCES
    console_session_test.cpp
    fake_snap_in.h
    main_window_test.cpp
    scope_tree_test.cpp)

# What an administrator does, in the real window with the components of this build tree.
if(TARGET ORVOLEDBCtls AND TARGET ORVOLEDB AND TARGET ORVOLEDBSnapIn)
  orvane_test(console_scenarios QT
    LINK orvane_console orvane_provider
    SOURCES
      host_driver.cpp
      host_driver.h
      unloading_test.cpp
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
    SOURCES program_test.cpp
    TIMEOUT 600)
  target_compile_definitions(console_program_tests PRIVATE
    ORVANE_CONSOLE="$<TARGET_FILE:orvane-console>"
    ORVANE_HISTORIAN="$<TARGET_FILE:orvane-historian>"
    ORVANE_SNAP_IN="$<TARGET_FILE:ORVOLEDBSnapIn>"
    ORVANE_CONTROLS="$<TARGET_FILE:ORVOLEDBCtls>"
    ORVANE_PROVIDER="$<TARGET_FILE:ORVOLEDB>"
    ORVANE_SAMPLE="${CMAKE_SOURCE_DIR}/samples/Localhost.orvc"
    ORVANE_VERSION="${PROJECT_VERSION}")
  add_dependencies(console_program_tests
    orvane-console orvane-historian ORVOLEDBSnapIn ORVOLEDBCtls ORVOLEDB)
endif()
