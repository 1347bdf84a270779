#include "controls/view/copied_cells.h"

#include <gtest/gtest.h>

namespace orvane::controls {
namespace {

std::string Read(const QMimeData& data) {
  const auto cells = ReadCells(data);
  if (!cells) return "none";
  std::string sAll;
  for (const auto& row : *cells) {
    for (const CopiedCell& cell : row) sAll += cell.sText ? "[" + *cell.sText + "]" : "(null)";
    sAll += '\n';
  }
  return sAll;
}

std::string ReadText(const char* sText) {
  QMimeData data;
  data.setText(sText);
  return Read(data);
}

TEST(copied_cells, of_a_text_are_parted_by_tabs_and_line_breaks) {
  EXPECT_EQ(ReadText("a\tb\r\n\tNULL\n"), "[a][b]\n(null)[NULL]\n");
  EXPECT_EQ(ReadText("\"a\tb\nc \"\"d\"\"\"\t\"\""), "[a\tb\nc \"d\"][]\n");
}

TEST(copied_cells, quotes_that_put_nothing_between_them_are_part_of_the_text) {
  EXPECT_EQ(ReadText("\"left\" and right\tb"), "[\"left\" and right][b]\n");
  EXPECT_EQ(ReadText("\"open\tb\n\"c"), "[\"open][b]\n[\"c]\n");
  EXPECT_EQ(ReadText("5\" pipe"), "[5\" pipe]\n");
}

TEST(copied_cells, of_a_text_that_quotes_without_end_are_read_all_the_same) {
  QString sText;
  for (int n = 0; n < 300'000; ++n) sText += "\"\"\"\t";
  QMimeData data;
  data.setText(sText + "\"");
  const auto cells = ReadCells(data);
  ASSERT_TRUE(cells);
  ASSERT_EQ(cells->size(), 1U);
  EXPECT_EQ(cells->front().back().sText, "\"");
}

TEST(copied_cells, are_not_read_in_greater_number_than_anybody_could_paste) {
  const auto nRead = [](const QString& sText) {
    QMimeData data;
    data.setText(sText);
    std::size_t nCells = 0;
    for (const auto& row : ReadCells(data).value_or(CopiedCells())) nCells += row.size();
    return nCells;
  };
  EXPECT_EQ(nRead(QString("a\n").repeated(1'000'000)), kMostReadCells + 1);
  EXPECT_EQ(nRead(QString("a\t").repeated(1'000'000)), kMostReadCells + 1);
}

TEST(copied_cells, of_a_page_come_before_those_of_its_text) {
  QMimeData data;
  data.setText("1,234.57\ttwo");
  data.setHtml(
      "<table><tr><td sdval=\"1234.56789\" sdnum=\"1033;\">1,234.57<td>two<br>lines</table>");
  EXPECT_EQ(Read(data), "[1234.56789][two\nlines]\n");
}

TEST(copied_cells, of_a_page_without_a_table_are_those_of_its_text) {
  QMimeData data;
  data.setText("a\tb");
  data.setHtml("<p>something <b>else</b></p>");
  EXPECT_EQ(Read(data), "[a][b]\n");
}

TEST(copied_cells, of_this_librarys_form_that_is_damaged_are_those_of_the_page) {
  QMimeData data;
  data.setData("application/x-orvane-cells", "damaged");
  data.setHtml("<table><tr><td>a</table>");
  EXPECT_EQ(Read(data), "[a]\n");
}

}  // namespace
}  // namespace orvane::controls
