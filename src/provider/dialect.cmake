# The dialect, the historian store, sessions and schema rowsets.
list(APPEND PROVIDER_SOURCES
  deadline.cpp
  dialect/catalog_statement.cpp
  dialect/lexer.cpp
  dialect/statement_tree.cpp
  dialect/time_expression.cpp
  dialect/translator.cpp
  historian/catalog_file.cpp
  historian/catalog_record.cpp
  historian/data_folder.cpp
  historian/functions_catalog.cpp
  historian/historian.cpp
  historian_provider.cpp
  known_schema.cpp
  result_times.cpp
  schema_reader.cpp
  schema_rowsets.cpp
  session.cpp
  session_options.cpp
  shown_names.cpp
  statement_log.cpp
  statement_thread.cpp)
