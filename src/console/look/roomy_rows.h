// Rows of trees and lists a little taller than their text, so that they can be read and hit, with
// pictures as large as the text. Every text is on one line, so that all rows are of one height.
// User-interface thread.
#pragma once

#include <QStyledItemDelegate>

#include "console/look/picture_side.h"

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

  QString displayText(const QVariant& value, const QLocale& locale) const override {
    const auto sText = QStyledItemDelegate::displayText(value, locale);
    return sText.contains(QChar::LineSeparator) || sText.contains('\n') ? sText.simplified()
                                                                        : sText;
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const int iSide = PictureSide(option->fontMetrics);
    option->decorationSize = {iSide, iSide};
  }
};

}  // namespace orvane::console
