// What a copy leaves on the clipboard: its forms are written when they are asked for, whatever has
// become of the rows and of the grid.
#include "controls/view/copied_data.h"

#include <QClipboard>
#include <QGuiApplication>

#include "controls/view/copied_cells.h"
#include "controls/view/copied_forms.h"
#include "tests/controls/row_view_fixture.h"
#include "tests/controls/written_cells.h"

namespace orvane::controls {
namespace {

using platform::Text;
using platform::Timestamp;

CopiedText Written(const std::vector<Value>& values, const zones::TimeZone& zone = kUtcZone.Zone(),
                   bool bNames = false) {
  auto rs = std::make_shared<FakeRecordset>(
      static_cast<RowIndex>(values.size()),
      [&](auto row, auto) { return values[static_cast<std::size_t>(row)]; });
  rs->Column("a\tname", platform::DataType::Empty);
  RowModel model;
  model.Recordset(rs, CellFormat(zone));
  ClipboardText text(1);
  if (bNames) text.Names(model, {0});
  WriteAll(model, {model.index(0, 0), model.index(model.rowCount() - 1, 0)}, {0}, text);
  return text.Take();
}

std::string Shown(const QMimeData& data) {
  std::string sAll;
  for (const auto& row : ReadCells(data).value_or(CopiedCells())) {
    for (const CopiedCell& cell : row) sAll += cell.sText ? "[" + *cell.sText + "]" : "(null)";
  }
  return sAll;
}

TEST(copied_data, has_the_forms_that_were_copied_and_no_others) {
  const CopiedText copied = Written({Text("a"), 1.5});
  const CopiedData all(copied, {true, true}, zones::TimeZone(), {});
  EXPECT_EQ(all.formats(), QStringList({"text/plain", "text/html", kCellsFormat}));
  EXPECT_EQ(all.text(), "a\n1.5\n");
  EXPECT_EQ(all.html(),
            "<meta charset=\"utf-8\"><table data-orvane-cells>"
            "<tr><td sdnum=\"1033;0;@\">a</td></tr>"
            "<tr><td sdval=\"1.5\" sdnum=\"1033;\">1.5</td></tr></table>");
  const CopiedData text(copied, {}, zones::TimeZone(), {});
  EXPECT_EQ(text.formats(), QStringList("text/plain"));
  EXPECT_FALSE(text.hasHtml());
  EXPECT_EQ(text.data("text/html"), QByteArray());
  EXPECT_EQ(text.data(kCellsFormat), QByteArray());
}

TEST(copied_data, names_are_a_row_of_their_own_in_the_page) {
  const CopiedData data(Written({Value(), Text("=\"x\"")}, kUtcZone.Zone(), true), {true, false},
                        zones::TimeZone(), {});
  EXPECT_EQ(data.text(), "\"a\tname\"\n\n\"=\"\"x\"\"\"\n");
  EXPECT_NE(data.html().indexOf("<tr><th>a&#9;name</th></tr><tr><td><i></i></td></tr>"
                                "<tr><td sdnum=\"1033;0;@\">=&quot;x&quot;</td></tr>"),
            -1)
      << data.html().toStdString();
}

TEST(copied_data, cells_of_every_kind_come_back_as_they_can_be_typed) {
  // Both hours that the clocks show as half past two.
  const Timestamp first{std::chrono::microseconds(1'792'888'200'000'000)};
  const std::vector<Value> values{Value(),
                                  Text(),
                                  Text("NULL"),
                                  Text("\"a\"\t\n\r\n"),
                                  Text("\"\""),
                                  true,
                                  platform::Long{-7},
                                  -0.0,
                                  platform::Decimal{"12345678901234567890.10"},
                                  first,
                                  Timestamp(first + std::chrono::hours(1)),
                                  platform::Bytes{std::byte{0}, std::byte{255}}};
  const zones::TimeZone berlin("Europe/Berlin");
  const CopiedData data(Written(values, berlin), {true, true}, berlin, {});
  EXPECT_EQ(Shown(data),
            "(null)[][NULL][\"a\"\t\n\r\n][\"\"][True][-7][-0][12345678901234567890.10]"
            "[2026-10-25 02:30:00+02:00][2026-10-25 02:30:00+01:00][0x00FF]");
  const auto cells = ReadCells(data);
  ASSERT_TRUE(cells && cells->size() == values.size());
  for (std::size_t n = 0; n < values.size(); ++n) {
    EXPECT_EQ((*cells)[n][0].kind, values[n].Kind()) << n;
  }
}

TEST(copied_data, bytes_that_are_no_text_stay_in_the_cells_of_this_library) {
  const Text sBroken = "\xEF\xBB\xBF\xC3\xA4\xFF|";
  const CopiedData data(Written({sBroken}), {true, true}, zones::TimeZone(), {});
  const QString sSeen = QChar(0xFEFF) + QString::fromUtf8("\u00e4\uFFFD|");
  EXPECT_EQ(data.text(), sSeen + "\n");
  EXPECT_EQ(data.data("text/plain"), (sSeen + "\n").toUtf8());
  EXPECT_EQ(Shown(data), "[" + sBroken + "]");
}

TEST(copied_data, is_read_when_rows_and_grid_are_gone_and_keeps_the_library) {
  auto life = std::make_shared<int>();
  const std::weak_ptr<int> alive = life;
  {
    RowView view;
    view.Copier().KeepAlive(std::exchange(life, nullptr));
    view.ShowRows(Plant(2), kUtcZone);
    view.selectAll();
    view.Copy(false);
  }
  EXPECT_FALSE(alive.expired());
  const QMimeData& data = *QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(data.text(), "0\trow 0\t\t2023-11-14 22:13:20\n1\trow 1\tFalse\t2023-11-14 22:13:21\n");
  EXPECT_EQ(data.html().count("<tr>"), 2);
  EXPECT_EQ(Shown(data),
            "[0][row 0](null)[2023-11-14 22:13:20][1][row 1][False][2023-11-14 22:13:21]");
  QGuiApplication::clipboard()->setText("else");
  EXPECT_TRUE(alive.expired());
}

TEST(copied_data, for_this_program_writes_no_form_but_its_own) {
  const CopiedData own(Written({Text("a")}), {true, true}, zones::TimeZone(), {});
  EXPECT_EQ(CellsOn(own)->formats(), QStringList(kCellsFormat));
  const CopiedData inexact(Written({Text("a")}), {true, false}, zones::TimeZone(), {});
  EXPECT_TRUE(CellsOn(inexact)->hasHtml());
}

TEST(long_text, is_too_long_by_its_characters_and_not_by_its_bytes) {
  LongText text;
  for (std::size_t n = 0; n < kMostCopiedCharacters; ++n) text.Next() += "\xC3\xA4";
  EXPECT_FALSE(text.IsTooLong());
  EXPECT_FALSE(text.IsTooLong()) << "counted once";
  text.Next() += "\xF0\x9F\x98\x80";
  EXPECT_TRUE(text.IsTooLong());
  LongText bytes;
  bytes.Next().assign(kMostCopiedCharacters * 3 + 1, '\x80');
  EXPECT_TRUE(bytes.IsTooLong()) << "as each of them takes a character";
}

}  // namespace
}  // namespace orvane::controls
