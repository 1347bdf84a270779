#include "controls/view/pasted_page.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "controls/view/copied_forms.h"
#include "platform/conversions.h"
#include "tests/controls/fake_data.h"
#include "tests/controls/spreadsheet_pages.h"
#include "tests/controls/written_cells.h"

namespace orvane::controls {
namespace {

using platform::Text;

std::string Shown(const std::optional<CopiedCells>& cells) {
  if (!cells) return "none";
  std::string sAll;
  for (const auto& row : *cells) {
    for (const CopiedCell& cell : row) sAll += cell.sText ? "[" + *cell.sText + "]" : "(null)";
    sAll += '\n';
  }
  return sAll;
}

std::string Read(const char* sPage) {
  return Shown(CellsOfPage(QString::fromUtf8(sPage)));
}

/// As a spreadsheet of an office suite puts its cells there.
constexpr const char* kSpreadsheet =
    R"page(<!DOCTYPE html PUBLIC "-//W3C//DTD HTML 4.0 Transitional//EN">

<html>
<head>

	<meta http-equiv="content-type" content="text/html; charset=utf-8"/>
	<title></title>
	<meta name="generator" content="LibreOffice 7.4.7.2 (Linux)"/>
	<style type="text/css">
		body,div,table,thead,tbody,tfoot,tr,th,td,p { font-family:"Liberation Sans"; font-size:x-small }
		a.comment-indicator:hover + comment { background:#ffd; position:absolute; display:block; border:1px solid black; padding:0.5em;  }
	</style>

</head>

<body>
<table cellspacing="0" border="0">
	<colgroup width="85"></colgroup>
	<colgroup span="3" width="120"></colgroup>
	<tr>
		<td height="17" align="left" valign=bottom>P-101</td>
		<td align="right" valign=bottom sdval="1234.56789" sdnum="1033;0;#,##0.00">1,234.57</td>
		<td align="left" valign=bottom><br></td>
		<td align="left" valign=bottom>NULL</td>
	</tr>
	<tr>
		<td height="32" align="left" valign=bottom>two<br>lines &amp; a &lt;tag&gt;</td>
		<td align="right" valign=bottom sdval="1.5E-010" sdnum="1033;">1.5E-10</td>
		<td align="left" valign=bottom><b><font color="#C9211E">  bold,  spaced</font></b></td>
		<td align="left" valign=bottom>a&nbsp;b</td>
	</tr>
	<tr>
		<td align="left" valign=bottom sdval="1" sdnum="1033;0;BOOLEAN">TRUE</td>
		<td align="right" valign=bottom sdval="45244.9266203704" sdnum="1033;0;YYYY-MM-DD HH:MM:SS.000000">2023-11-14 22:14:20.123456</td>
		<td align="right" valign=bottom sdval="45244.9266203704" sdnum="1031;1031;DD.MM.YYYY HH:MM:SS">14.11.2023 22:14:20</td>
		<td align="left" valign=bottom sdnum="1033;0;@">007</td>
	</tr>
</table>
<!-- ************************************************************************** -->
</body>

</html>
)page";

TEST(pasted_page, of_a_spreadsheet_is_read_cell_by_cell) {
  EXPECT_EQ(Read(kSpreadsheet),
            "[P-101][1234.56789](null)[NULL]\n"
            "[two\nlines & a <tag>][0.00000000015][  bold,  spaced][a\xC2\xA0"
            "b]\n"
            "[True][2023-11-14 22:14:20.123456][2023-11-14 22:14:20][007]\n");
}

TEST(pasted_page, of_an_office_suite_has_what_its_cells_hold_in_any_language) {
  const char* const sCells =
      "[a\tb][1234.5][2026-05-31 12:00:00]\n"
      "(null)[-0.05][2026-05-31 12:00:00.123]\n"
      "(null)[1E-300][2026-05-31]\n"
      "[two\n\nlines\n][9.00719925474099E+015][12:30:15]\n"
      "[  <b> & ][True](null)\n";
  EXPECT_EQ(Read(tests::kEnglishCells), sCells);
  EXPECT_EQ(Read(tests::kGermanCells), sCells);
}

TEST(pasted_page, attributes_and_tags_that_say_nothing_of_values_are_passed_over) {
  EXPECT_EQ(
      Read("<meta name=\"generator\" content=\"Sheets\"/><style type=\"text/css\"><!--td "
           "{border: 1px solid #ccc;}br {mso-data-placement:same-cell;}--></style><span "
           "data-sheets-root=\"1\"><table data-sheets-baot=\"1\"><colgroup><col "
           "width=\"100\"/></colgroup><tbody><tr style=\"height:21px;\"><td "
           "data-sheets-value=\"{&quot;1&quot;:2,&quot;2&quot;:&quot;a > b&quot;}\" "
           "style=\"overflow:hidden\">a &gt; b</td><td data-sheets-value='{\"1\":3,\"3\":1.5}' "
           "data-sheets-numberformat='{\"1\":2}'>1.5</td><td></td></tr></tbody></table></span>"),
      "[a > b][1.5](null)\n");
}

TEST(pasted_page, line_breaks_of_the_source_are_blanks_and_others_are_kept) {
  EXPECT_EQ(Read("<table>\n<tr>\n  <td>\n    one\n    two  three\n  </td>\r\n<td>a<br>\n b<br><br>"
                 "</td><td><p>x</p>\n<p>y</p></td></tr></table>"),
            "[one two  three][a\nb\n\n][x\ny]\n");
}

TEST(pasted_page, cells_without_content_are_null) {
  EXPECT_EQ(Read("<table><tr><td></td><td>&nbsp;</td><td> &#32;</td><td><br/></td></table>"),
            "(null)(null)[  ](null)\n");
  // Texts have an empty one among them.
  EXPECT_EQ(Read("<table><tr><td sdnum='1033;0;@'></td><td sdnum='1033;0;@'><br></td><td "
                 "sdnum='1033;0;@'>&nbsp;</td></table>"),
            "[][][\xC2\xA0]\n");
}

TEST(pasted_page, merged_cells_leave_null_where_they_reach) {
  EXPECT_EQ(Read("<table><tr><td rowspan=2>a<td colspan=2>b<td rowspan=3>c"
                 "<tr><td>d<td>e<tr><td>f</table>"),
            "[a][b](null)[c]\n(null)[d][e](null)\n[f](null)(null)(null)\n");
}

TEST(pasted_page, names_and_numbers_stand_for_characters) {
  EXPECT_EQ(Read("<table><td>&auml;&#228;&#xE4;&euro;&copy;&bogus;&#xD800;&#99999999999;& &;&#;"),
            "[\xC3\xA4\xC3\xA4\xC3\xA4\xE2\x82\xAC\xC2\xA9&bogus;\xEF\xBF\xBD&#99999999999;& &;&#;]"
            "\n");
}

TEST(pasted_page, of_a_stranger_is_text_and_nothing_else) {
  EXPECT_EQ(Read("<script>document.write('<table><tr><td>no</td></tr></table>')</script>"
                 "<table background='http://example.invalid/a.png'><tr>"
                 "<td><img src=\"file:///etc/passwd\" onerror='x'>1 < 2 <style>td{}</style></td>"
                 "<td><a href=\"x>y\">link</a><!-- <td>no</td> --></td>"
                 "<td><table><tr><td>within</td></tr></table></td></tr></table>"
                 "<table><tr><td>second</td></tr></table>"),
            "[1 < 2 ][link][within]\n");
}

TEST(pasted_page, that_breaks_off_gives_what_there_is) {
  EXPECT_EQ(Read("<table><tr><td>a</td><td>b"), "[a][b]\n");
  EXPECT_EQ(Read("<table><tr><td>a</td><td class=\"b"), "[a](null)\n");
  EXPECT_EQ(Read("<table><tr><td>a<!--"), "[a]\n");
  EXPECT_EQ(Read("<table><tr><td>a<"), "[a<]\n");
}

TEST(pasted_page, without_a_cell_is_none) {
  for (const char* sPage :
       {"", "text", "<table></table>", "<p>a</p>", "<td>a</td>", "<", "&", "</"}) {
    EXPECT_EQ(Read(sPage), "none") << sPage;
  }
}

TEST(pasted_page, with_more_cells_than_anybody_pastes_is_none) {
  QString sPage = "<table>";
  for (int n = 0; n < 200; ++n) sPage += "<tr><td colspan=999999999 rowspan=999999999>a</td></tr>";
  EXPECT_EQ(CellsOfPage(sPage), std::nullopt);
  const QString sLong = "<table><tr><td>" + QString(kMostCopiedCharacters, u'a');
  EXPECT_EQ(CellsOfPage(sLong), std::nullopt);
}

TEST(pasted_page, survives_whatever_it_is_cut_to) {
  const QString sPage = QString::fromUtf8(kSpreadsheet);
  for (qsizetype n = 0; n < sPage.size(); ++n) {
    const auto cut = CellsOfPage(QStringView(sPage).first(n));
    EXPECT_LE(cut.value_or(CopiedCells()).size(), 3U);
  }
}

TEST(pasted_page, of_this_library_comes_back_exactly) {
  const std::vector<platform::Value> values{platform::Value(),
                                            Text(),
                                            Text("NULL"),
                                            Text("a\tb\nc\r\nd\re"),
                                            Text("  two  blanks "),
                                            Text("\"quoted\" <b>&amp;"),
                                            Text("\n"),
                                            Text("\xC2\xA0"),
                                            Text("007"),
                                            0.1,
                                            platform::Long{-5},
                                            true,
                                            Text(" ")};
  auto rs = std::make_shared<FakeRecordset>(
      static_cast<platform::RowIndex>(values.size()),
      [&](auto row, auto) { return values[static_cast<std::size_t>(row)]; });
  rs->Column("a", platform::DataType::WChar);
  RowModel model;
  model.Recordset(rs, CellFormat());
  const QItemSelection all(model.index(0, 0), model.index(model.rowCount() - 1, 0));
  ClipboardText text(1);
  WriteAll(model, all, {0}, text);
  EXPECT_EQ(Shown(CellsOfPage(QString::fromStdString(PageOf(text.Take())))),
            "(null)\n[]\n[NULL]\n[a\tb\nc\nd\re]\n[  two  blanks ]\n[\"quoted\" <b>&amp;]\n[\n]\n"
            "[\xC2\xA0]\n[007]\n[0.1]\n[-5]\n[True]\n[ ]\n");
}

TEST(pasted_page, of_this_library_has_a_text_of_what_a_spreadsheet_would_change) {
  const platform::Timestamp time(std::chrono::microseconds(1'700'000'000'123'456));
  const std::vector<std::pair<platform::Value, bool>> values{
      {0.1 + 0.2, true},
      {5e-324, false},
      {-0.0, false},
      {0.0, true},
      {std::numeric_limits<double>::infinity(), false},
      {std::int64_t{999'999'999'999'999}, true},
      {std::int64_t{-9'007'199'254'740'993}, false},
      {platform::Decimal{"-0.00123456789012345"}, true},
      {platform::Decimal{"1.234567890123456"}, false},
      {platform::Decimal{"NaN"}, false},
      {time, false},
      {platform::Timestamp(std::chrono::seconds(1)), true},
      {platform::TimeOfDay(std::chrono::milliseconds(1)), false}};
  auto rs = std::make_shared<FakeRecordset>(
      static_cast<platform::RowIndex>(values.size()),
      [&](auto row, auto) { return values[static_cast<std::size_t>(row)].first; });
  rs->Column("a", platform::DataType::Empty);
  RowModel model;
  model.Recordset(rs, CellFormat());
  const auto pageOf = [&](int nRow) {
    ClipboardText text(1);
    WriteAll(model, QItemSelection(model.index(nRow, 0), model.index(nRow, 0)), {0}, text);
    return QString::fromStdString(PageOf(text.Take()));
  };
  for (int nRow = 0; nRow < model.rowCount(); ++nRow) {
    const QString sPage = pageOf(nRow);
    const auto& [vtValue, bPlain] = values[static_cast<std::size_t>(nRow)];
    EXPECT_EQ(sPage.contains("sdnum=\"1033;0;@\""), !bPlain) << sPage.toStdString();
    EXPECT_EQ(Shown(CellsOfPage(sPage)), "[" + platform::ToText(vtValue) + "]\n");
  }
}

}  // namespace
}  // namespace orvane::controls
