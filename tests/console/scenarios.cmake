# What an administrator does, in the real window with the components of this build tree.
orvane_test(console_scenarios QT SHARDS 3
  LINK orvane_console orvane_provider
  SOURCES
    scenarios/far_server_test.cpp
    scenarios/followed_advice_test.cpp
    scenarios/historians_by_guid_test.cpp
    scenarios/log_file_question_test.cpp
    scenarios/counted_objects.h
    scenarios/embedded_servers.cpp
    scenarios/embedded_servers.h
    scenarios/host_driver.cpp
    scenarios/host_driver.h
    scenarios/host_driver_commands.cpp
    scenarios/host_driver_dialogs.cpp
    scenarios/kept_columns_test.cpp
    scenarios/living_tree_test.cpp
    scenarios/merged_documents_test.cpp
    scenarios/postgres_server_test.cpp
    scenarios/reader_first_test.cpp
    scenarios/shown_qt_form.cpp
    scenarios/shown_qt_form.h
    scenarios/ten_servers_test.cpp
    scenarios/unloading_test.cpp
    scenarios/unsent_rows_question_test.cpp
    scenarios/visible_widget.h
    ../provider/engines/postgres_cluster.cpp
    ../scenarios/catalog_cases.cpp
    ../scenarios/command_cases.cpp
    ../scenarios/document_cases.cpp
    ../scenarios/grid_cases.cpp
    ../scenarios/query_cases.cpp
    ../scenarios/shell_cases.cpp)
target_compile_definitions(console_scenarios_tests PRIVATE
  ORVANE_SNAP_IN="$<TARGET_FILE:ORVOLEDBSnapIn>"
  ORVANE_CONTROLS="$<TARGET_FILE:ORVOLEDBCtls>"
  ORVANE_PROVIDER="$<TARGET_FILE:ORVOLEDB>"
  ORVANE_SAMPLE="${CMAKE_SOURCE_DIR}/samples/Localhost.orvc")
add_dependencies(console_scenarios_tests ORVOLEDBSnapIn ORVOLEDBCtls ORVOLEDB)
