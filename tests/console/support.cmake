# Tests of documents, data access, waiting and dialogs.
add_subdirectory(fixtures)
orvane_test(console_support QT
  LINK orvane_console
  SOURCES
    data_access_test.cpp
    document_bag_test.cpp
    document_damage_test.cpp
    document_fixture.h
    document_format_fixture.h
    document_format_test.cpp
    document_merging_test.cpp
    document_saving_test.cpp
    document_sharing_test.cpp
    document_state_test.cpp
    document_test.cpp
    log_file_consent_test.cpp
    log_file_test.cpp
    logon_dialog_test.cpp
    message_boxes_test.cpp
    recent_documents_test.cpp
    waiting_panel_test.cpp
    waiting_test.cpp)
add_dependencies(console_support_tests fixture_data_access)
target_compile_definitions(console_support_tests PRIVATE
  ORVANE_DATA_ACCESS_FIXTURE="$<TARGET_FILE:fixture_data_access>")
