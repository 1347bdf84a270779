# Tests of the programs around the window.
orvane_test(console_program QT SHARDS 2
  LINK orvane_component
  SOURCES
    app/program_test.cpp
    app/tour_test.cpp)
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
