#include "controls/view/copied_cells.h"

#include <gtest/gtest.h>

#include "tests/controls/spreadsheet_pages.h"

namespace orvane::controls {
namespace {

std::string Read(const QMimeData& data) {
  const auto cells = ReadCells(data);
  if (!cells) return "none";
  std::string sAll;
  for (const auto& row : *cells) {
    for (const CopiedCell& cell : row) {
      const std::string sNone = cell.bGap ? "(gap)" : "(null)";
      sAll += cell.sText ? "[" + *cell.sText + "]" : sNone;
    }
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

TEST(copied_cells, of_blanks_alone_are_told_by_the_text_beside_a_page) {
  QMimeData data;
  data.setHtml(QString::fromUtf8(tests::kEnglishCells));
  data.setText(QString::fromUtf8(tests::kEnglishCellsText));
  const std::string sRead = Read(data);
  EXPECT_TRUE(sRead.starts_with("[a\tb][1234.5][2026-05-31 12:00:00]\n[\n][-0.05]")) << sRead;
  EXPECT_NE(sRead.find("\n[\xC2\xA0][1E-300]"), std::string::npos) << sRead;
  EXPECT_TRUE(sRead.ends_with("[True](null)\n")) << sRead;
  // A text of other cells, or with anything else in them, is not believed.
  data.setText("a b\t1234.5\n");
  EXPECT_EQ(Read(data).find("[\n]"), std::string::npos);
  data.setHtml("<table><tr><td>a<td></table>");
  data.setText("a\tb");
  EXPECT_EQ(Read(data), "[a](null)\n");
  data.setText("a\t\" \"");
  EXPECT_EQ(Read(data), "[a][ ]\n");
}

TEST(copied_cells, of_a_page_without_a_table_are_those_of_its_text) {
  QMimeData data;
  data.setText("a\tb");
  data.setHtml("<p>something <b>else</b></p>");
  EXPECT_EQ(Read(data), "[a][b]\n");
}

TEST(copied_cells, of_this_librarys_form_that_is_damaged_are_those_of_the_page) {
  ClipboardText text(4);
  text.BeginRow();
  text.Cell(platform::Timestamp(std::chrono::microseconds(-1)), CellFormat());
  text.NoCell();
  text.Cell({}, CellFormat());
  text.TextCell("text");
  text.EndRow();
  const QByteArray bytes = ExactCells(text.Take(), zones::TimeZone::Utc());
  const QString sFormat = kCellsFormat;
  QMimeData whole;
  whole.setData(sFormat, bytes);
  EXPECT_EQ(Read(whole), "[1969-12-31 23:59:59.999999](gap)(null)[text]\n");
  for (qsizetype n = 0; n < bytes.size(); ++n) {
    QMimeData data;
    data.setData(sFormat, bytes.first(n));
    data.setHtml("<table><tr><td>a</table>");
    // What breaks off in front of the first cell has none.
    EXPECT_EQ(Read(data), n == 4 ? "" : "[a]\n") << n;
  }
  QByteArray unknown = bytes;
  unknown[4] = static_cast<char>(0x70);
  QMimeData data;
  data.setData(sFormat, unknown);
  data.setHtml("<table><tr><td>a</table>");
  EXPECT_EQ(Read(data), "[a]\n");
}

TEST(copied_cells, of_times_are_told_by_their_instant_beside_what_the_clocks_show) {
  const CellFormat inMadrid(zones::TimeZone("Europe/Madrid"));
  const platform::Timestamp summer(std::chrono::seconds(1'780'221'600));
  ClipboardText text(1);
  text.BeginRow();
  text.Cell(summer, inMadrid);
  text.EndRow();
  QMimeData data;
  data.setData(kCellsFormat, ExactCells(text.Take(), inMadrid.Zone()));
  const auto cells = ReadCells(data);
  ASSERT_TRUE(cells);
  EXPECT_EQ(cells->front().front().sText, "2026-05-31 12:00:00");
  EXPECT_EQ(cells->front().front().instant, summer);
}

}  // namespace
}  // namespace orvane::controls
