// A view of rows on the screen, for tests of what is seen and done there.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>
#include <memory>
#include <utility>
#include <vector>

#include "controls/view/header_view.h"
#include "controls/view/row_numbers.h"
#include "controls/view/row_view.h"
#include "tests/controls/fake_data.h"

namespace orvane::controls {

/// More rows than any pixels could number.
inline constexpr int kMany = 200'000'000;

using platform::RowIndex;
using platform::Value;

inline const CellFormat kUtcZone;

inline void Show(RowView& view, QSize size = {600, 400}) {
  view.resize(size);
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
}

inline void ClickCell(RowView& view, int nRow, int nColumn, Qt::KeyboardModifiers modifiers = {}) {
  QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                    view.visualRect(view.model()->index(nRow, nColumn)).center());
}

inline void ClickRowNumber(RowView& view, int nRow, Qt::KeyboardModifiers modifiers = {}) {
  QTest::mouseClick(&view.Numbers(), Qt::LeftButton, modifiers,
                    {view.Numbers().width() / 2, view.Numbers().YOf(nRow) + view.RowHeight() / 2});
}

inline void ClickColumnName(RowView& view, int nColumn, Qt::KeyboardModifiers modifiers = {}) {
  QTest::mouseClick(
      view.Names().viewport(), Qt::LeftButton, modifiers,
      {view.Names().sectionViewportPosition(nColumn) + 15, view.Names().height() / 2});
}

inline std::pair<int, int> Current(const RowView& view) {
  return {view.currentIndex().row(), view.currentIndex().column()};
}

inline std::shared_ptr<FakeRecordset> OneColumn(std::vector<Value> values) {
  const auto nRows = static_cast<RowIndex>(values.size());
  auto rs = std::make_shared<FakeRecordset>(nRows, [values = std::move(values)](auto row, auto) {
    return values[static_cast<std::size_t>(row)];
  });
  rs->Column("a", platform::DataType::WChar);
  return rs;
}

}  // namespace orvane::controls
