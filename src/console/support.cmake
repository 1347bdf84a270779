# Documents, data access, waiting and dialogs.
list(APPEND CONSOLE_SOURCES)
