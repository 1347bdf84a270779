# The dialect, the historian store, sessions and schema rowsets.
list(APPEND PROVIDER_SOURCES
  dialect/catalog_statement.cpp
  dialect/lexer.cpp
  dialect/statement_tree.cpp
  dialect/time_expression.cpp
  dialect/time_zone.cpp
  dialect/translator.cpp)
