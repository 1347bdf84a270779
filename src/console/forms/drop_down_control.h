// Drop-down list on a widget: it shows fifteen entries at once, and cuts what is too long for it.
// Used by the forms of the dialogs; user-interface thread.
#pragma once

#include <QComboBox>
#include <vector>

#include "console/forms/form_control.h"

namespace orvane::console {

/// Takes the wheel only while it has the focus: a form that scrolls under the mouse changes
/// nothing.
class DropDownBox : public QComboBox {
 public:
  explicit DropDownBox(QWidget* parent = nullptr);

 protected:
  bool event(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

/// Positions outside of the list fail with failure::kOutOfRange. Nothing is chosen until the owner
/// or the user chooses.
class DropDownControl : public FormControl<platform::DropDownList, DropDownBox> {
 public:
  explicit DropDownControl(FormDialog& dialog);
  void Clear() override;
  void Add(const platform::Text& sText, platform::Long lItemData) override;
  platform::Long Count() const override { return static_cast<platform::Long>(m_items.size()); }
  platform::Text Item(platform::Long lIndex) const override { return At(lIndex).sText; }
  platform::Long ItemData(platform::Long lIndex) const override { return At(lIndex).lData; }
  platform::Long ListIndex() const override { return m_widget->currentIndex(); }
  void ListIndex(platform::Long lIndex) override;

 private:
  struct Entry {
    platform::Text sText;
    platform::Long lData;
  };
  const Entry& At(platform::Long lIndex) const;

  std::vector<Entry> m_items;
};

}  // namespace orvane::console
