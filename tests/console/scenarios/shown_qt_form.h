// A form on widgets under the hands of a scenario's user: mouse clicks and keys, no calls into the
// dialog. One thread.
#pragma once

#include <QDialog>

#include "tests/scenarios/driver.h"

namespace orvane::console {

class ShownQtForm final : public scenarios::ShownForm {
 public:
  using Text = platform::Text;

  explicit ShownQtForm(QDialog& dialog) : m_dialog(dialog) {}

  Text Title() const override;
  platform::Boolean Enabled(const Text& sControl) const override;
  Text Label(const Text& sControl) const override;
  Text BoxText(const Text& sTextBox) const override;
  void Type(const Text& sTextBox, const Text& sText) override;
  platform::Boolean Checked(const Text& sCheckBox) const override;
  void Click(const Text& sButtonOrCheckBox) override;
  std::vector<Text> Entries(const Text& sList) const override;
  Text Chosen(const Text& sDropDownList) const override;
  void Choose(const Text& sList, const Text& sEntry) override;

 private:
  /// Fails the case by throwing when there is no widget of that name and kind.
  template <class W>
  W& Find(const Text& sName) const;

  QDialog& m_dialog;
};

/// Clicks where the mouse would, through the window that holds the widget. A position outside all
/// windows' widgets reaches nobody, and a disabled widget refuses the click.
void ClickAt(QWidget& widget, const QPoint& at, Qt::MouseButton button = Qt::LeftButton);

}  // namespace orvane::console
