# What every engine promises, on every engine that there is.
orvane_test(conformance SHARDS 2
  LINK orvane_provider
  SOURCES
    conformance/batch_test.cpp
    conformance/catalogs_test.cpp
    conformance/embedded_under_test.cpp
    conformance/ending_test.cpp
    conformance/engine_test.cpp
    conformance/engine_under_test.cpp
    conformance/hostile_test.cpp
    conformance/log_test.cpp
    conformance/parameters_test.cpp
    conformance/postgres_under_test.cpp
    conformance/report_test.cpp
    conformance/rows_test.cpp
    conformance/schema_test.cpp
    conformance/server_rows_test.cpp
    conformance/sql_examples_test.cpp
    conformance/statements_test.cpp
    conformance/times_test.cpp
    engines/postgres_cluster.cpp)
target_compile_definitions(conformance_tests PRIVATE
  ORVANE_CONFORMANCE="${CMAKE_CURRENT_SOURCE_DIR}/conformance"
  ORVANE_SQL_PAGE="${CMAKE_SOURCE_DIR}/docs/sql.md"
  ORVANE_SAMPLE="${CMAKE_SOURCE_DIR}/samples/Localhost.orvc"
  ORVANE_SERVER_SAMPLE="${CMAKE_SOURCE_DIR}/samples/Server.orvc")
