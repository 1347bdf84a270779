// Drop-down list of a form on a widget: entries with a number each. Used by the forms of the
// dialogs; user-interface thread.
#pragma once

#include <vector>

#include "console/forms/form_control.h"
#include "widgets/drop_down_box.h"

namespace orvane::console {

/// Positions outside of the list fail with failure::kOutOfRange. Nothing is chosen until the owner
/// or the user chooses.
class DropDownControl : public FormControl<platform::DropDownList, widgets::DropDownBox> {
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
