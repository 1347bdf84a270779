#include "trend/trend_saving.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include "tests/fakes/until.h"
#include "tests/trend/trend_rows.h"
#include "trend/trend_view.h"

namespace orvane::trend {
namespace {

class trend_saving : public testing::Test {
 protected:
  void Show(const platform::RecordsetPtr& rs) {
    m_view.resize(700, 600);
    m_view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_view));
    m_view.ShowRows(rs, zones::TimeZone::Utc());
    ASSERT_TRUE(tests::Until([&] { return !m_view.IsReading(); }));
  }
  QAction* Action(const QString& sText) const {
    for (QAction* action : m_view.findChildren<QAction*>()) {
      if (action->text().remove(u'&') == sText) return action;
    }
    return nullptr;
  }
  TrendView m_view;
};

TEST_F(trend_saving, points_are_saved_beside_the_window) {
  const QTemporaryDir folder;
  const QString sPath = folder.filePath("t.csv");
  QStringList remarks;
  m_view.OnRemark([&](const QString& sSentence, bool bWarning) {
    remarks << (bWarning ? "! " : "") + sSentence;
  });
  Show(TwoTags(3));
  m_view.SaveAs(sPath);
  EXPECT_TRUE(m_view.IsSaving());
  EXPECT_EQ(remarks.takeLast(), "Saving the points in sight\u2026");
  EXPECT_NE(Action("Stop Saving"), nullptr);
  // What is shown meanwhile is none of the file's.
  m_view.ShowRows(nullptr, zones::TimeZone::Utc());
  ASSERT_TRUE(tests::Until([&] { return !m_view.IsSaving(); }));
  EXPECT_EQ(remarks.takeLast(), "Saved to " + sPath);
  QFile file(sPath);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll().count('\n'), 7);
  m_view.SaveAs("/nowhere/t.csv");
  ASSERT_TRUE(tests::Until([&] { return !m_view.IsSaving(); }));
  EXPECT_TRUE(remarks.takeLast().startsWith("! "));
}

TEST_F(trend_saving, saving_that_is_stopped_is_not_waited_for) {
  const QTemporaryDir folder;
  QStringList remarks;
  m_view.OnRemark([&](const QString& sSentence, bool) { remarks << sSentence; });
  Show(TwoTags(20'000));
  m_view.SaveAs(folder.filePath("u.csv"));
  QAction* stop = Action("Stop Saving");
  stop->trigger();
  EXPECT_TRUE(m_view.IsSaving()) << "the disk may take its time";
  EXPECT_EQ(remarks.takeLast(), "Stopping\u2026");
  EXPECT_FALSE(stop->isEnabled());
  ASSERT_TRUE(tests::Until([&] { return !m_view.IsSaving(); }));
  EXPECT_TRUE(stop->isEnabled());
  EXPECT_NE(Action("Save As\u2026"), nullptr);
  // It may have been too late to stop it; then it says so.
  const bool bThere = QFileInfo::exists(folder.filePath("u.csv"));
  EXPECT_EQ(remarks.takeLast(), bThere ? "Saved to " + folder.filePath("u.csv")
                                       : QString("Stopped: the points were not saved."));
}

/// Rows of which the source has more.
platform::RecordsetPtr CutTags(int nSeconds) {
  ado::RecordsetBuilder builder({{"Tag", platform::DataType::WChar},
                                 {"Timestamp", platform::DataType::DBTimeStamp},
                                 {"Value", platform::DataType::Double}});
  for (int n = 0; n < nSeconds; ++n) builder.AppendRow({"a", Second(n), 1.0 * n});
  return builder.Finish(true);
}

TEST_F(trend_saving, points_of_a_result_that_was_cut_say_so_wherever_they_go) {
  const QTemporaryDir folder;
  QString sRemark;
  m_view.OnRemark([&](const QString& sSentence, bool bWarning) {
    sRemark = (bWarning && !sSentence.isEmpty() ? "! " : "") + sSentence;
  });
  Show(CutTags(3));
  m_view.Copy();
  EXPECT_EQ(sRemark, "! Copied only the points of the first 3 rows, as the source has more.");
  m_view.SaveAs(folder.filePath("t.csv"));
  ASSERT_TRUE(tests::Until([&] { return !m_view.IsSaving(); }));
  const QString sPath = folder.filePath("t (first 3 rows).csv");
  EXPECT_EQ(sRemark,
            "! Saved only the points of the first 3 rows, as the source has more: " + sPath);
  EXPECT_TRUE(QFileInfo::exists(sPath));
  EXPECT_FALSE(QFileInfo::exists(folder.filePath("t.csv")));
  Show(TwoTags(3));
  m_view.Copy();
  EXPECT_EQ(sRemark, "");
}

TEST_F(trend_saving, the_name_of_the_file_ends_in_the_kind_that_is_chosen) {
  const std::unique_ptr<QFileDialog> dialog(NewSaveDialog(nullptr));
  dialog->setOption(QFileDialog::DontUseNativeDialog);
  const auto name = [&] {
    return QFileInfo(dialog->selectedFiles().value(0)).fileName().toStdString();
  };
  EXPECT_EQ(name(), "trend.png");
  emit dialog->filterSelected("Comma-Separated Values (*.csv)");
  EXPECT_EQ(name(), "trend.csv");
  EXPECT_EQ(dialog->defaultSuffix(), "csv");
  dialog->selectFile("pumps.of.today");
  emit dialog->filterSelected("Vector Picture (*.svg)");
  EXPECT_EQ(name(), "pumps.of.today.svg");
}

}  // namespace
}  // namespace orvane::trend
