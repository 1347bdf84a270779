// Rows of trees and lists a little taller than their text, so that they can be read and hit, with
// pictures as large as the text.
// User-interface thread.
#pragma once

#include <QStyledItemDelegate>
#include <algorithm>

namespace orvane::console {

class RoomyRows : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    constexpr int kExtraHeight = 6;
    auto size = QStyledItemDelegate::sizeHint(option, index);
    size.rheight() += kExtraHeight;
    return size;
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    constexpr int kSmallest = 16;
    QStyledItemDelegate::initStyleOption(option, index);
    const int iSide = std::max(kSmallest, option->fontMetrics.height());
    option->decorationSize = {iSide, iSide};
  }
};

}  // namespace orvane::console
