# The dialect, the historian store, sessions and schema rowsets.
list(APPEND PROVIDER_SOURCES
  dialect/lexer.cpp
  dialect/time_expression.cpp
  dialect/time_zone.cpp)
