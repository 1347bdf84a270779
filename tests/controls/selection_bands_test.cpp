#include "controls/view/selection_bands.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/controls/fake_data.h"
#include "tests/controls/written_cells.h"

namespace orvane::controls {
namespace {

using platform::Value;

class selection_bands : public testing::Test {
 protected:
  selection_bands() { m_model.Recordset(Plant(100'000), CellFormat()); }
  void Select(int nTop, int nLeft, int nBottom, int nRight) {
    m_selection.select(m_model.index(nTop, nLeft), m_model.index(nBottom, nRight));
  }
  RowModel m_model;
  QItemSelection m_selection;
};

TEST_F(selection_bands, count_each_row_and_column_once) {
  EXPECT_EQ(SelectedRows(m_selection), 0);
  Select(1, 0, 3, 0);
  Select(2, 1, 4, 1);
  Select(7, 0, 7, 2);
  EXPECT_EQ(SelectedRows(m_selection), 5);
  EXPECT_EQ(RowSpans(m_selection), (std::vector<std::pair<int, int>>{{1, 4}, {7, 7}}));
  EXPECT_EQ(SelectedColumns(m_selection), (std::vector<int>{0, 1, 2}));
}

TEST_F(selection_bands, have_the_cells_that_the_selection_has) {
  std::mt19937 random(20261122);
  const auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const std::vector<int> columns{3, 0, 2};
  for (int nRound = 0; nRound < 50; ++nRound) {
    m_selection.clear();
    for (int n = upTo(12); n >= 0; --n) {
      const int nTop = upTo(20);
      const int nLeft = upTo(4);
      Select(nTop, nLeft, nTop + upTo(6), nLeft + upTo(4 - nLeft));
    }
    std::vector<std::vector<bool>> cells(30, std::vector<bool>(columns.size()));
    int nBefore = -1;
    for (const RowBand& band : BandsOf(m_selection, columns)) {
      ASSERT_GT(band.nFirst, nBefore);
      ASSERT_GE(band.nLast, band.nFirst);
      nBefore = band.nLast;
      for (int n = band.nFirst; n <= band.nLast; ++n) {
        cells[static_cast<std::size_t>(n)] = *band.selected;
      }
    }
    for (std::size_t row = 0; row < cells.size(); ++row) {
      for (std::size_t n = 0; n < columns.size(); ++n) {
        const QModelIndex cell = m_model.index(static_cast<int>(row), columns[n]);
        ASSERT_EQ(cells[row][n], m_selection.contains(cell)) << row << ", " << columns[n];
      }
    }
  }
}

/// Counts what is asked of it.
class Counting final : public CellsWriter {
 public:
  void Cell(const Value&, const CellFormat&) override { ++nCells; }
  void TextCell(std::string_view) override { ++nCells; }
  void NoCell() override { ++nOthers; }
  int nCells = 0;
  int nOthers = 0;
};

// For each cell all pieces were looked at: fifty thousand of them would not end.
TEST_F(selection_bands, of_many_pieces_take_the_time_of_what_is_in_them) {
  for (int nRow = 0; nRow < 100'000; nRow += 2) Select(nRow, 0, nRow, nRow % 4 == 0 ? 2 : 3);
  const std::vector<int> columns = SelectedColumns(m_selection);
  EXPECT_EQ(SelectedRows(m_selection), 50'000);
  const std::vector<RowBand> bands = BandsOf(m_selection, columns);
  EXPECT_EQ(bands.size(), 50'000U);
  Counting counting;
  WriteAll(m_model, m_selection, columns, counting);
  EXPECT_EQ(counting.nCells, 25'000 * 3 + 25'000 * 4);
  EXPECT_EQ(counting.nOthers, 25'000);
}

}  // namespace
}  // namespace orvane::controls
