// Text box over an editor of SQL text. Enter breaks the line, Ctrl+Enter is the form's.
// Used by the dialog of a named query; user-interface thread.
#pragma once

#include "console/forms/sql_editor.h"
#include "console/forms/text_control.h"

namespace orvane::console {

class SqlTextControl : public TextControl<SqlEditor> {
 public:
  explicit SqlTextControl(FormDialog& dialog);

 protected:
  void Display(const QString& sText) override;
  QString Displayed() const override;
  /// Black keeps the highlighting; any other colour takes its place.
  void Paint() override;
};

}  // namespace orvane::console
