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

class LineTextControl : public TextControl<SizedLineEdit> {
 public:
  explicit LineTextControl(FormDialog& dialog);

 protected:
  void Display(const QString& sText) override;
  QString Displayed() const override { return m_widget->text(); }
};

}  // namespace orvane::console
