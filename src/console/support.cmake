# Documents, data access, waiting and dialogs.
list(APPEND CONSOLE_SOURCES
  data_access/component_providers.cpp
  data_access/data_access.cpp
  data_access/option_texts.cpp
  dialogs/logon_dialog.cpp
  dialogs/logon_dialog.h
  dialogs/message_boxes.cpp
  dialogs/program_title.h
  dialogs/window_in_front.cpp
  document/document.cpp
  document/document_bag.cpp
  document/document_content.cpp
  document/document_file.cpp
  document/document_format.cpp
  document/document_state.cpp
  document/recent_documents.cpp
  document/save_snapshot.cpp
  document/utf8.cpp
  log/log_file.cpp
  waiting/input_hold.cpp
  waiting/input_hold.h
  waiting/waiting.cpp
  waiting/waiting_panel.cpp
  waiting/waiting_panel.h
  waiting/waiting_worker.cpp)
