#include "console/forms/list_control.h"

#include <QItemSelectionModel>
#include <utility>

#include "platform/failure.h"

namespace orvane::console {

using platform::Boolean;
using platform::Long;
using platform::Text;

ListControl::ListControl(FormDialog& dialog) : FormControl(dialog) {
  dialog.Watch(*m_widget);
  m_widget->OnChoice([this] { m_dialog.Run([this] { m_click.Raise(); }); });
  m_widget->OnDblClick([this] { m_dialog.Run([this] { m_dblClick.Raise(); }); });
}

Text ListControl::Item(Long lIndex) const {
  return m_widget->Names().At(Row(lIndex));
}

Boolean ListControl::Selected(Long lIndex) const {
  return m_widget->selectionModel()->isSelected(m_widget->Names().index(Row(lIndex)));
}

void ListControl::Selected(Long lIndex, Boolean bSelected) {
  m_widget->Choose(Row(lIndex), bSelected);
}

platform::Subscription ListControl::OnClick(std::function<void()> handler) {
  return m_click.Connect(std::move(handler));
}

platform::Subscription ListControl::OnDblClick(std::function<void()> handler) {
  return m_dblClick.Connect(std::move(handler));
}

int ListControl::Row(Long lIndex) const {
  if (lIndex < 1 || lIndex > Count()) {
    throw platform::Failure(
        platform::failure::kOutOfRange,
        "The list has no item " + std::to_string(lIndex) + "; positions are 1 to the count.");
  }
  return lIndex - 1;
}

}  // namespace orvane::console
