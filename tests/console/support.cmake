# Tests of documents, data access, waiting, dialogs and looks.
add_subdirectory(fixtures)
orvane_test(console_support QT SHARDS 4
  LINK orvane_console
  SOURCES
    ../own_folders_test.cpp
    app/row_memory_test.cpp
    data_access/data_access_test.cpp
    data_access/earlier_servers_test.cpp
    data_access/log_file_consent_test.cpp
    dialogs/logon_dialog_test.cpp
    dialogs/message_boxes_test.cpp
    document/document_bag_test.cpp
    document/document_damage_test.cpp
    document/document_fixture.h
    document/document_format_fixture.h
    document/document_format_test.cpp
    document/document_merging_test.cpp
    document/document_saving_test.cpp
    document/document_sharing_test.cpp
    document/document_state_test.cpp
    document/document_test.cpp
    document/recent_documents_test.cpp
    document/unsent_rows_test.cpp
    document/user_views_test.cpp
    fake_objects.h
    log/log_file_test.cpp
    look/control_style_test.cpp
    look/drawn_icon_test.cpp
    look/image_list_test.cpp
    look/picture_fixture.h
    look/tool_tip_test.cpp
    waiting/waiting_fixture.h
    waiting/waiting_keys_test.cpp
    waiting/waiting_panel_test.cpp
    waiting/waiting_shown_test.cpp
    waiting/waiting_test.cpp
    waiting/waiting_window_test.cpp
    waiting/waiting_yielding_test.cpp)
add_dependencies(console_support_tests fixture_data_access)
target_compile_definitions(console_support_tests PRIVATE
  ORVANE_DATA_ACCESS_FIXTURE="$<TARGET_FILE:fixture_data_access>")
