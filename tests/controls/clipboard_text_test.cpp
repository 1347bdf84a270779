#include "controls/view/clipboard_text.h"

#include <gtest/gtest.h>

#include "tests/controls/fake_data.h"
#include "tests/controls/written_cells.h"

namespace orvane::controls {
namespace {

using platform::Value;

class clipboard_text : public testing::Test {
 protected:
  clipboard_text() { m_model.Recordset(Plant(10), CellFormat()); }
  void Select(int nTop, int nLeft, int nBottom, int nRight) {
    m_selection.select(m_model.index(nTop, nLeft), m_model.index(nBottom, nRight));
  }
  std::string Copied(bool bNames = false) const {
    const std::vector<int> columns = SelectedColumns(m_selection);
    ClipboardText text(columns.size());
    if (bNames) text.Names(m_model, columns);
    WriteAll(m_model, m_selection, columns, text);
    return text.Take().sText;
  }
  RowModel m_model;
  QItemSelection m_selection;
};

TEST_F(clipboard_text, is_a_line_a_row_with_tabs_between_cells) {
  Select(1, 0, 2, 1);
  EXPECT_EQ(Copied(), "1\trow 1\n2\trow 2\n");
}

TEST_F(clipboard_text, names_of_the_columns_come_first_when_wanted) {
  Select(1, 1, 1, 2);
  EXPECT_EQ(Copied(true), "Name\tFlag\nrow 1\tFalse\n");
}

TEST_F(clipboard_text, keeps_texts_of_any_length_and_what_elsewhere_marks_an_encoding) {
  const platform::Text sMark = "\xEF\xBB\xBF";
  const platform::Text sLong = sMark + platform::Text(50'000, 'x') + "\xF0\x9F\x98\x80";
  const auto rs = std::make_shared<FakeRecordset>(3, [&](auto, auto) { return Value(sLong); });
  rs->Column("a", platform::DataType::WChar);
  m_model.Recordset(rs, CellFormat());
  Select(0, 0, 2, 0);
  EXPECT_EQ(Copied(), sLong + "\n" + sLong + "\n" + sLong + "\n");
}

TEST_F(clipboard_text, null_is_an_empty_cell) {
  Select(0, 1, 0, 3);
  EXPECT_EQ(Copied(), "row 0\t\t2023-11-14 22:13:20\n");
}

TEST_F(clipboard_text, of_scattered_cells_keeps_their_places) {
  Select(5, 0, 5, 0);
  Select(1, 1, 2, 1);
  EXPECT_EQ(Copied(), "\trow 1\n\trow 2\n5\t\n");
}

TEST_F(clipboard_text, of_overlapping_ranges_has_each_row_once) {
  Select(1, 0, 3, 0);
  Select(2, 1, 4, 1);
  EXPECT_EQ(Copied(), "1\t\n2\trow 2\n3\trow 3\n\trow 4\n");
}

TEST_F(clipboard_text, quotes_what_would_break_the_table) {
  const std::vector<Value> values{Value("a\tb"), Value("a\nb"), Value("say \"x\""), Value("it's")};
  const auto rs = std::make_shared<FakeRecordset>(
      1, [&](auto, auto column) { return values[static_cast<std::size_t>(column)]; });
  for (int n = 0; n < 4; ++n) rs->Column("c\"" + std::to_string(n), platform::DataType::WChar);
  m_model.Recordset(rs, CellFormat());
  Select(0, 0, 0, 3);
  EXPECT_EQ(Copied(true),
            "\"c\"\"0\"\t\"c\"\"1\"\t\"c\"\"2\"\t\"c\"\"3\"\n"
            "\"a\tb\"\t\"a\nb\"\t\"say \"\"x\"\"\"\tit's\n");
}

TEST_F(clipboard_text, of_nothing_is_nothing) {
  EXPECT_EQ(Copied(), "");
}

}  // namespace
}  // namespace orvane::controls
