# Tests of documents, data access, waiting and dialogs.
orvane_test(console_support QT
  LINK orvane_console
  SOURCES
    document_bag_test.cpp
    document_format_test.cpp
    document_state_test.cpp
    document_test.cpp
    logon_dialog_test.cpp
    message_boxes_test.cpp
    recent_documents_test.cpp
    waiting_test.cpp)
