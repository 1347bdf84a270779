#include "controls/grid/export_dialog.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace orvane::controls {
namespace {

using exports::Form;

TEST(ExportDialog, starts_from_the_choice_before) {
  const ExportDialog dialog(
      nullptr, {.shown = 3, .selected = 2, .bAll = true},
      {ExportRows::Selected, {.form = Form::JsonLines, .cSeparator = ';', .bNames = false}});
  const ExportChoice choice = dialog.Choice();
  EXPECT_EQ(choice.rows, ExportRows::Selected);
  EXPECT_EQ(choice.writer.form, Form::JsonLines);
  EXPECT_EQ(choice.writer.cSeparator, ';');
  EXPECT_FALSE(choice.writer.bNames);
}

TEST(ExportDialog, offers_only_what_there_is) {
  const ExportDialog dialog(nullptr, {.shown = 3}, {ExportRows::All, {}});
  EXPECT_FALSE(dialog.findChild<QRadioButton*>("m_optSelected")->isEnabled());
  EXPECT_FALSE(dialog.findChild<QRadioButton*>("m_optAll")->isEnabled());
  EXPECT_EQ(dialog.Choice().rows, ExportRows::Shown);
}

TEST(ExportDialog, takes_what_is_chosen_by_keys) {
  ExportDialog dialog(nullptr, {.shown = 3, .selected = 0, .bAll = true}, {});
  dialog.show();
  QTest::keyClick(dialog.findChild<QRadioButton*>("m_optAll"), Qt::Key_Space);
  EXPECT_EQ(dialog.Choice().rows, ExportRows::All);
  QTest::keyClick(dialog.findChild<QCheckBox*>("m_chkNames"), Qt::Key_Space);
  EXPECT_FALSE(dialog.Choice().writer.bNames);
  auto* separator = dialog.findChild<QComboBox*>("m_cboSeparator");
  QTest::keyClick(separator, Qt::Key_End);
  EXPECT_EQ(dialog.Choice().writer.cSeparator, '\t');
}

TEST(ExportDialog, asks_for_a_separator_only_where_there_is_one) {
  ExportDialog dialog(nullptr, {.shown = 3}, {});
  auto* form = dialog.findChild<QComboBox*>("m_cboForm");
  EXPECT_TRUE(dialog.findChild<QComboBox*>("m_cboSeparator")->isEnabled());
  QTest::keyClick(form, Qt::Key_End);
  EXPECT_EQ(dialog.Choice().writer.form, Form::Sql);
  EXPECT_FALSE(dialog.findChild<QComboBox*>("m_cboSeparator")->isEnabled());
  EXPECT_FALSE(dialog.findChild<QCheckBox*>("m_chkNames")->isEnabled());
}

TEST(FileNameOf, makes_a_file_name_of_anything) {
  EXPECT_EQ(FileNameOf("Data", Form::Csv), "Data.csv");
  EXPECT_EQ(FileNameOf("../a/b\nc", Form::JsonLines), "_a_b c.jsonl");
  EXPECT_EQ(FileNameOf("", Form::Sql), "Rows.sql");
  EXPECT_EQ(FileNameOf("...", Form::Csv), "Rows.csv");
  EXPECT_LT(FileNameOf(QString(500, u'x'), Form::Csv).size(), 100);
}

}  // namespace
}  // namespace orvane::controls
