# Tests of the engines, on real database files.
orvane_test(engines SHARDS 2
  LINK orvane_provider
  SOURCES
    engines/declared_types_test.cpp
    engines/sqlite_attachments_test.cpp
    engines/sqlite_commit_test.cpp
    engines/sqlite_engine_test.cpp
    engines/sqlite_errors_test.cpp
    engines/sqlite_fetch_test.cpp
    engines/sqlite_functions_test.cpp
    engines/sqlite_limits_test.cpp
    engines/sqlite_memory_test.cpp
    engines/sqlite_reading_test.cpp
    engines/sqlite_room_test.cpp
    engines/sqlite_rows_expected_test.cpp
    engines/sqlite_rows_test.cpp
    engines/sqlite_schema_test.cpp
    engines/sqlite_session_test.cpp
    engines/sqlite_transaction_test.cpp
    engines/statement_thread_test.cpp)

# On a PostgreSQL server that the program starts.
orvane_test(postgres SHARDS 2
  LINK orvane_provider
  SOURCES
    engines/postgres_address_test.cpp
    engines/postgres_batch_test.cpp
    engines/postgres_catalogs_test.cpp
    engines/postgres_cluster.cpp
    engines/postgres_encryption_test.cpp
    engines/postgres_engine_test.cpp
    engines/postgres_failover_test.cpp
    engines/postgres_link_test.cpp
    engines/postgres_parameters_test.cpp
    engines/postgres_schema_test.cpp
    engines/postgres_session_test.cpp
    engines/postgres_silence_test.cpp
    engines/postgres_values_test.cpp
    engines/scarce_memory.cpp
    engines/way_to_server.cpp)
