#include "console/forms/drop_down_control.h"

#include "platform/failure.h"
#include "widgets/tool_tip.h"

namespace orvane::console {

using platform::Long;
using platform::Text;

DropDownControl::DropDownControl(FormDialog& dialog) : FormControl(dialog) {
  dialog.Watch(*m_widget);
}

void DropDownControl::Clear() {
  m_items.clear();
  m_widget->clear();
}

void DropDownControl::Add(const Text& sText, Long lItemData) {
  // The widget would choose its first entry by itself.
  const int iIndex = m_widget->currentIndex();
  m_items.push_back({sText, lItemData});
  const auto sShown = QString::fromStdString(sText);
  m_widget->addItem(sShown);
  m_widget->setItemData(m_widget->count() - 1, widgets::ToolTipOf(sShown), Qt::ToolTipRole);
  m_widget->setCurrentIndex(iIndex);
}

void DropDownControl::ListIndex(Long lIndex) {
  if (lIndex != -1) At(lIndex);
  m_widget->setCurrentIndex(lIndex);
}

const DropDownControl::Entry& DropDownControl::At(Long lIndex) const {
  if (lIndex < 0 || lIndex >= Count()) {
    throw platform::Failure(
        platform::failure::kOutOfRange,
        "The list has no entry " + std::to_string(lIndex) + "; positions are 0 to count less 1.");
  }
  return m_items[static_cast<std::size_t>(lIndex)];
}

}  // namespace orvane::console
