// List view on a widget.
// Used by the forms of the dialogs; user-interface thread.
#pragma once

#include "console/forms/column_list.h"
#include "console/forms/form_control.h"

namespace orvane::console {

/// Positions outside of the list fail with failure::kOutOfRange.
class ListControl : public FormControl<platform::FormListView, ColumnList> {
 public:
  explicit ListControl(FormDialog& dialog);
  void Clear() override { m_widget->Names().Clear(); }
  void Add(const platform::Text& sText) override { m_widget->Names().Append(sText); }
  void Remove(platform::Long lIndex) override { m_widget->Names().Remove(Row(lIndex)); }
  platform::Long Count() const override { return m_widget->Names().rowCount(); }
  platform::Text Item(platform::Long lIndex) const override;
  platform::Boolean Selected(platform::Long lIndex) const override;
  void Selected(platform::Long lIndex, platform::Boolean bSelected) override;
  platform::Subscription OnClick(std::function<void()> handler) override;
  platform::Subscription OnDblClick(std::function<void()> handler) override;

 private:
  int Row(platform::Long lIndex) const;

  platform::Signal<> m_click;
  platform::Signal<> m_dblClick;
};

}  // namespace orvane::console
