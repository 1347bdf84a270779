# The engines that the provider stands on.
list(APPEND PROVIDER_SOURCES
  engines/data_source.cpp
  engines/declared_types.cpp
  engines/embedded/embedded_engine.cpp
  engines/embedded/embedded_session.cpp
  engines/sqlite/sqlite_attachments.cpp
  engines/sqlite/sqlite_engine.cpp
  engines/sqlite/sqlite_errors.cpp
  engines/sqlite/sqlite_fetch.cpp
  engines/sqlite/sqlite_files.cpp
  engines/sqlite/sqlite_functions.cpp
  engines/sqlite/sqlite_handle.cpp
  engines/sqlite/sqlite_journals.cpp
  engines/sqlite/sqlite_memory.cpp
  engines/sqlite/sqlite_refusals.cpp
  engines/sqlite/sqlite_room.cpp
  engines/sqlite/sqlite_schema.cpp
  engines/sqlite/sqlite_session.cpp
  engines/sqlite/sqlite_statement.cpp
  engines/sqlite/sqlite_stored_times.cpp
  engines/sqlite/sqlite_values.cpp
  engines/sqlite/sqlite_watch.cpp
  engines/statement_thread.cpp)
