// Rows of trees and lists a little taller than their text, so that they can be read and hit.
// User-interface thread.
#pragma once

#include <QStyledItemDelegate>

namespace orvane::console {

class RoomyRows final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    constexpr int kExtraHeight = 6;
    auto size = QStyledItemDelegate::sizeHint(option, index);
    size.rheight() += kExtraHeight;
    return size;
  }
};

}  // namespace orvane::console
