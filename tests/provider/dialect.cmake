orvane_test(dialect
  LINK orvane_provider
  SOURCES
    dialect/catalog_statement_test.cpp
    dialect/lexer_test.cpp
    dialect/time_expression_test.cpp
    dialect/time_zone_test.cpp
    dialect/translator_test.cpp)
