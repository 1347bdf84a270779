# The forms of the components' dialogs on widgets.
list(APPEND CONSOLE_SOURCES
  forms/add_catalog_layout.cpp
  forms/button_controls.cpp
  forms/caption_controls.cpp
  forms/column_list.cpp
  forms/drop_down_control.cpp
  forms/elided_label.cpp
  forms/find_bar.cpp
  forms/form_dialog.cpp
  forms/form_layouts.cpp
  forms/legible_color.cpp
  forms/line_text_control.cpp
  forms/list_control.cpp
  forms/memo_text_control.cpp
  forms/options_layout.cpp
  forms/pointer_rest.cpp
  forms/qt_form.cpp
  forms/qt_forms.cpp
  forms/query_layout.cpp
  forms/sql_editor.cpp
  forms/sql_text_control.cpp
  forms/sql_view.cpp
  forms/table_query_layout.cpp)
