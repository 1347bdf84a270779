# The components' dialogs on widgets.
list(APPEND CONSOLE_SOURCES
  forms/qt_forms.cpp)
