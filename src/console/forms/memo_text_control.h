// Text box of a few lines on a widget, for one long text: it wraps where the box ends, Tab leaves
// it, Enter is the form's and Shift+Enter breaks the line.
#pragma once

#include <QPlainTextEdit>

#include "console/forms/text_control.h"

namespace orvane::console {

class MemoEdit : public QPlainTextEdit {
 public:
  explicit MemoEdit(QWidget* parent = nullptr);

  /// A locked text can still be walked through and copied by keys.
  void setReadOnly(bool bReadOnly);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 private:
  QSize SizeFor(int iCharacters, int iLines) const;
};

class MemoTextControl : public TextControl<MemoEdit> {
 public:
  explicit MemoTextControl(FormDialog& dialog);

 protected:
  void Display(const QString& sText) override { m_widget->setPlainText(sText); }
  QString Displayed() const override;
};

}  // namespace orvane::console
