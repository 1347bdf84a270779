# Tests of the components' dialogs on widgets.
orvane_test(console_forms QT SHARDS 2
  LINK orvane_console orvane_dialogs
  SOURCES
    forms/add_catalog_form_test.cpp
    forms/drop_down_test.cpp
    forms/focus_ring_test.cpp
    forms/form_geometry_test.cpp
    forms/form_places_test.cpp
    forms/form_rules_test.cpp
    forms/options_form_test.cpp
    forms/query_form_test.cpp
    forms/table_query_columns_test.cpp
    forms/table_query_form_test.cpp)
