# The window: scope pane, result pane, menus, toolbars.
list(APPEND CONSOLE_SOURCES)
