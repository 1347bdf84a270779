# The engines that the provider stands on.
list(APPEND PROVIDER_SOURCES
  engines/sqlite/sqlite_engine.cpp
  engines/sqlite/sqlite_errors.cpp
  engines/sqlite/sqlite_files.cpp
  engines/sqlite/sqlite_functions.cpp
  engines/sqlite/sqlite_session.cpp
  engines/sqlite/sqlite_statement.cpp
  engines/sqlite/sqlite_types.cpp
  engines/sqlite/sqlite_watch.cpp)
