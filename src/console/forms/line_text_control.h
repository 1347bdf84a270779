// Single-line text box on a widget.
// Used by the forms of the dialogs; user-interface thread.
#pragma once

#include <QLineEdit>

#include "console/forms/text_control.h"

namespace orvane::console {

/// A single-line box as wide as a number of characters.
class SizedLineEdit : public QLineEdit {
 public:
  explicit SizedLineEdit(QWidget* parent = nullptr) : QLineEdit(parent) {}

  /// A box that may grow, or one of exactly that width.
  void Characters(int iCharacters, bool bMayGrow);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 private:
  int m_iCharacters = 20;
};

/// A text that the form's owner puts back while the user changes it stands there as before, with
/// its marking and its caret.
class LineTextControl : public TextControl<SizedLineEdit> {
 public:
  explicit LineTextControl(FormDialog& dialog);

 protected:
  void Display(const QString& sText) override;
  QString Displayed() const override { return m_widget->text(); }

 private:
  struct Look {
    QString sText;
    int iCaret = 0;
    int iMarkedFrom = 0;
    int iMarkedTo = 0;
  };
  void Remember();
  void BringBack(const Look& look);

  /// As the box looked before the change that is under way. The box tells of a new caret or marking
  /// after it has told of a new text.
  Look m_before;
};

}  // namespace orvane::console
