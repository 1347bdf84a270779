orvane_test(dialect SHARDS 4
  LINK orvane_provider
  SOURCES
    dialect/catalog_statement_test.cpp
    dialect/column_names_test.cpp
    dialect/day_forms_test.cpp
    dialect/day_random_test.cpp
    dialect/day_texts_test.cpp
    dialect/lexer_test.cpp
    dialect/statement_parameters_test.cpp
    dialect/statement_reader_test.cpp
    dialect/statement_work_test.cpp
    dialect/stored_days_test.cpp
    dialect/stored_times_test.cpp
    dialect/time_comparisons_test.cpp
    dialect/time_forms_test.cpp
    dialect/time_guards_test.cpp
    dialect/time_meetings_test.cpp
    dialect/time_random_test.cpp
    dialect/translator_limits_test.cpp
    dialect/translator_names_test.cpp
    dialect/translator_refusals_test.cpp
    dialect/translator_times_test.cpp
    dialect/written_times_test.cpp)

orvane_test(historian SHARDS 2
  LINK orvane_provider
  SOURCES
    historian/attached_catalogs_test.cpp
    historian/catalogs_test.cpp
    historian/data_folder_test.cpp
    historian/historian_test.cpp
    historian/interrupted_changes_test.cpp
    historian/killed_programs_test.cpp
    historian/known_historians_test.cpp
    historian/recorder_lock_test.cpp
    historian/shared_catalogs_test.cpp
    historian/shared_journals_test.cpp)

orvane_test(session SHARDS 2
  LINK orvane_provider
  SOURCES
    deadline_test.cpp
    result_times_test.cpp
    row_source_test.cpp
    schema_rowsets_test.cpp
    session_options_test.cpp
    session_catalogs_test.cpp
    session_ending_test.cpp
    session_engine_test.cpp
    session_parameters_test.cpp
    session_rows_test.cpp
    session_test.cpp
    session_times_test.cpp
    shown_names_test.cpp
    statement_log_test.cpp
    stored_numbers_test.cpp)

orvane_test(provider_component
  LINK orvane_provider ${CMAKE_DL_LIBS}
  SOURCES entry_points_test.cpp)
add_dependencies(provider_component_tests ORVOLEDB)
target_compile_definitions(provider_component_tests PRIVATE
  ORVANE_PROVIDER_LIBRARY="$<TARGET_FILE:ORVOLEDB>")
