// Copying many rows: in slices, with a way to end it, the clipboard as it was until it is done.
#include "controls/view/row_copier.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "controls/view/copied_cells.h"
#include "tests/controls/row_view_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

class row_copier : public testing::Test {
 protected:
  row_copier() {
    QGuiApplication::clipboard()->setText("before");
    m_view.Copier().OnCopied([&](const QString& sSentence) { m_told << sSentence; });
    m_view.Copier().OnProgress(
        [&](RowIndex done, RowIndex of) { m_progress.emplace_back(done, of); });
  }
  void ShowAll(std::shared_ptr<FakeRecordset> rs) {
    m_rs = std::move(rs);
    m_view.ShowRows(m_rs, kUtcZone);
    m_view.selectAll();
    m_rs->TakeCellsAsked();
  }
  void AwaitCopy() {
    ASSERT_TRUE(tests::Until([&] { return !m_told.empty(); }));
  }
  static QString OnClipboard() { return QGuiApplication::clipboard()->text(); }

  std::shared_ptr<FakeRecordset> m_rs;
  RowView m_view;
  QStringList m_told;
  std::vector<std::pair<RowIndex, RowIndex>> m_progress;
};

TEST_F(row_copier, writes_many_rows_in_slices_and_reads_each_value_once) {
  ShowAll(Plant(30'000));
  m_view.Copy(false);
  EXPECT_EQ(m_rs->TakeCellsAsked(), RowCopier::kCellsInSlice);
  EXPECT_EQ(OnClipboard(), "before");
  EXPECT_EQ(m_progress.back(), (std::pair<RowIndex, RowIndex>(5'000, 30'000)));
  AwaitCopy();
  EXPECT_EQ(m_rs->TakeCellsAsked(), 120'000U - RowCopier::kCellsInSlice);
  EXPECT_EQ(m_told, QStringList(QString()));
  EXPECT_EQ(m_progress.back(), (std::pair<RowIndex, RowIndex>(0, 0)));
  const QMimeData& data = *QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(data.text().count(u'\n'), 30'000);
  EXPECT_TRUE(data.text().endsWith("29999\trow 29999\t\t2023-11-15 06:33:19\n") ||
              data.text().endsWith("29999\trow 29999\tFalse\t2023-11-15 06:33:19\n"));
  EXPECT_EQ(data.html().count("<tr>"), 30'000);
  const auto cells = ReadCells(data);
  ASSERT_TRUE(cells);
  EXPECT_EQ(cells->size(), 30'000U);
  EXPECT_EQ(cells->back()[1].sText, "row 29999");
}

TEST_F(row_copier, writes_a_few_large_values_in_slices_too) {
  const platform::Text sLarge(600'000, 'x');
  auto rs = std::make_shared<FakeRecordset>(20, [&](auto, auto) { return Value(sLarge); });
  rs->Column("a", platform::DataType::WChar);
  ShowAll(std::move(rs));
  m_view.Copy(false);
  EXPECT_EQ(m_rs->TakeCellsAsked(), 2U) << "more than enough bytes for once";
  AwaitCopy();
  EXPECT_EQ(OnClipboard().size(), 20 * 600'001);
}

TEST_F(row_copier, is_ended_by_escape_and_leaves_the_clipboard_as_it_was) {
  ShowAll(Plant(100'000));
  Show(m_view);
  m_view.setFocus();
  m_view.Copy(true);
  QTest::keyClick(&m_view, Qt::Key_Escape);
  EXPECT_EQ(m_told, QStringList("Stopped: nothing was copied."));
  EXPECT_EQ(m_progress.back(), (std::pair<RowIndex, RowIndex>(0, 0)));
  m_rs->TakeCellsAsked();
  for (int n = 0; n < 10; ++n) QCoreApplication::processEvents();
  EXPECT_EQ(OnClipboard(), "before");
  EXPECT_EQ(m_told.size(), 1);
  EXPECT_FALSE(m_view.Copier().Stop());
}

TEST_F(row_copier, ends_when_its_rows_change_or_go) {
  ShowAll(Plant(50'000));
  m_view.CopyAs(exports::Form::Csv);
  EXPECT_LE(m_rs->TakeCellsAsked(), RowCopier::kCellsInSlice);
  m_view.ShowRows(Plant(3), kUtcZone);
  EXPECT_EQ(m_told, QStringList("Not copied: the rows have changed meanwhile; copy them again."));
  for (int n = 0; n < 10; ++n) QCoreApplication::processEvents();
  EXPECT_EQ(OnClipboard(), "before");
}

TEST_F(row_copier, drops_what_it_copied_before_for_what_is_copied_now) {
  ShowAll(Plant(100'000));
  m_view.Copy(false);
  m_view.SelectRow(7);
  m_view.CopyAs(exports::Form::Csv);
  EXPECT_TRUE(OnClipboard().contains("row 7")) << OnClipboard().toStdString();
  for (int n = 0; n < 10; ++n) QCoreApplication::processEvents();
  EXPECT_EQ(OnClipboard().count("row"), 1);
}

TEST_F(row_copier, copies_forms_of_exports_in_slices) {
  ShowAll(Plant(20'000));
  m_view.CopyAs(exports::Form::JsonLines);
  EXPECT_EQ(OnClipboard(), "before");
  AwaitCopy();
  EXPECT_EQ(OnClipboard().count(u'\n'), 20'000);
}

}  // namespace
}  // namespace orvane::controls
