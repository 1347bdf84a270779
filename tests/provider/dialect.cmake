orvane_test(dialect
  LINK orvane_provider
  SOURCES
    dialect/catalog_statement_test.cpp
    dialect/lexer_test.cpp
    dialect/time_expression_test.cpp
    dialect/time_zone_test.cpp
    dialect/translator_test.cpp)

orvane_test(historian
  LINK orvane_provider
  SOURCES
    historian/data_folder_test.cpp
    historian/historian_test.cpp)

orvane_test(session
  LINK orvane_provider
  SOURCES
    session_options_test.cpp
    session_test.cpp)
