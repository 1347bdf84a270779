#include "console/window/document_keeper.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "console/window/notice_bar.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

TEST_F(MainWindowTest, save_as_and_open_bring_everything_back) {
  DoWork("stored text");
  {
    DialogAnswer answer([this](QWidget* widget) {
      auto* dialog = qobject_cast<QFileDialog*>(widget);
      ASSERT_NE(dialog, nullptr);
      auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
      ASSERT_NE(name, nullptr);
      name->setText(m_folder.filePath("plant"));
      QTest::keyClick(name, Qt::Key_Return);
    });
    QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(answer.Count(), 1);
  }
  EXPECT_TRUE(QFileInfo::exists(m_folder.filePath("plant.orvc")));
  EXPECT_EQ(m_window->windowTitle(), "plant[*] - ORVANE Console");
  EXPECT_FALSE(m_window->isWindowModified());
  m_window->NewDocument();
  EXPECT_EQ(m_window->windowTitle(), "Untitled[*] - ORVANE Console");
  EXPECT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(m_script->sRead, "stored text");
  EXPECT_FALSE(m_window->IsModified());
  DoWork("newer text");
  EXPECT_TRUE(m_window->Save());
  EXPECT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(m_script->sRead, "newer text");
  EXPECT_EQ(m_script->iAlive, 1);
}

TEST_F(MainWindowTest, question_before_unsaved_work_is_dropped_can_be_cancelled) {
  DoWork();
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->objectName(), "unsavedWorkBox");
    QTest::keyClick(box, Qt::Key_Escape);
  });
  EXPECT_FALSE(m_window->NewDocument());
  EXPECT_FALSE(m_window->OpenDocument(Path("any.orvc")));
  EXPECT_FALSE(m_window->close());
  EXPECT_EQ(answer.Count(), 3);
  EXPECT_TRUE(m_window->isVisible());
  EXPECT_TRUE(m_window->IsModified());
}

TEST_F(MainWindowTest, a_question_comes_before_rows_that_are_not_stored_are_lost) {
  const platform::RowsPlace kTable{"localhost", "Plant", "Data"};
  m_unsentRows->Tell(kTable, 2);
  {
    DialogAnswer answer([](QWidget* box) {
      EXPECT_EQ(box->objectName(), "unsentRowsBox");
      EXPECT_EQ(qobject_cast<QMessageBox*>(box)->text(),
                "2 rows of the table \"Data\" are not stored.");
      QTest::keyClick(box, Qt::Key_Return);
    });
    EXPECT_FALSE(m_window->NewDocument());
    EXPECT_FALSE(m_window->close());
    EXPECT_EQ(answer.Count(), 2);
  }
  EXPECT_EQ(m_unsentRows->Sentence(), "2 rows of the table \"Data\" are not stored.");
  const auto lRound = m_unsentRows->Round(kTable);
  {
    DialogAnswer answer([](QWidget* box) {
      for (auto* button : qobject_cast<QMessageBox*>(box)->buttons()) {
        if (button->text() == "&Discard Changes") button->click();
      }
    });
    EXPECT_TRUE(m_window->NewDocument());
  }
  EXPECT_EQ(m_unsentRows->Sentence(), "");
  EXPECT_GT(m_unsentRows->Round(kTable), lRound);
  m_unsentRows->Tell(kTable, 1);
  m_unsentRows->Tell(kTable, 0);
  EXPECT_TRUE(m_window->NewDocument());
}

TEST_F(MainWindowTest, question_discards_or_saves_as_answered) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  DoWork("one");
  {
    DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Discard); });
    EXPECT_TRUE(m_window->NewDocument());
    EXPECT_EQ(answer.Count(), 1);
  }
  m_window->OpenDocument(Path("plant.orvc"));
  EXPECT_EQ(m_script->sRead, "first");
  DoWork("two");
  {
    DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Save); });
    EXPECT_TRUE(m_window->NewDocument());
  }
  m_window->OpenDocument(Path("plant.orvc"));
  EXPECT_EQ(m_script->sRead, "two");
}

TEST_F(MainWindowTest, failed_save_shows_a_sentence_and_keeps_the_mark) {
  DoWork();
  Text sText;
  DialogAnswer answer([&](QWidget* box) {
    sText = qobject_cast<QMessageBox*>(box)->text().toStdString();
    Press(box, QMessageBox::Ok);
  });
  EXPECT_FALSE(m_window->SaveTo(Path("no/such/folder/plant.orvc")));
  EXPECT_EQ(answer.Count(), 1);
  EXPECT_THAT(sText, HasSubstr("plant.orvc"));
  EXPECT_TRUE(m_window->IsModified());
  EXPECT_EQ(m_window->windowTitle(), "Untitled[*] - ORVANE Console");
}

TEST_F(MainWindowTest, save_that_the_snap_in_cannot_complete_keeps_the_old_file) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  m_script->bWriteWhole = false;
  m_script->sSaved = "half";
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->windowTitle(), "Error");
    Press(box, QMessageBox::Ok);
  });
  EXPECT_FALSE(m_window->Save());
  EXPECT_EQ(answer.Count(), 1);
  m_window->OpenDocument(Path("plant.orvc"));
  EXPECT_EQ(m_script->sRead, "first");
}

TEST_F(MainWindowTest, document_that_cannot_be_opened_leaves_the_present_one) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  ClickExpandMark("");
  DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
  EXPECT_FALSE(m_window->OpenDocument(Path("missing.orvc")));
  EXPECT_EQ(answer.Count(), 1);
  EXPECT_EQ(m_window->windowTitle(), "plant[*] - ORVANE Console");
  EXPECT_NE(Find("alpha"), nullptr);
}

TEST_F(MainWindowTest, open_document_stays_when_opening_it_again_finds_it_damaged) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  ClickExpandMark("");
  QFile file(m_folder.filePath("plant.orvc"));
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  ASSERT_TRUE(file.resize(file.size() / 2));
  file.close();
  m_script->log.clear();
  {
    DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
    EXPECT_FALSE(m_window->OpenDocument(Path("plant.orvc")));
    EXPECT_EQ(answer.Count(), 1);
  }
  EXPECT_THAT(m_script->log, Not(Contains("Terminate")));
  EXPECT_NE(Find("alpha"), nullptr);
  EXPECT_EQ(m_window->windowTitle(), "plant[*] - ORVANE Console");
  // What is in memory can be saved over the damaged file.
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->objectName(), "changedOnDiskBox");
    for (auto* button : qobject_cast<QMessageBox*>(box)->buttons()) {
      if (button->text().contains("Replace")) button->click();
    }
  });
  EXPECT_TRUE(m_window->Save());
  EXPECT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_FALSE(m_window->Document().IsReadOnly());
}

TEST_F(MainWindowTest, saving_as_its_own_name_asks_before_a_change_of_another_program_is_replaced) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  QFile file(m_folder.filePath("plant.orvc"));
  ASSERT_TRUE(file.open(QIODevice::Append));
  file.write("theirs");
  file.close();
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->objectName(), "changedOnDiskBox");
    QTest::keyClick(box, Qt::Key_Escape);
  });
  EXPECT_FALSE(m_window->SaveTo(Path("plant.orvc")));
  EXPECT_EQ(answer.Count(), 1);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.readAll().endsWith("theirs"));
}

TEST_F(MainWindowTest, recent_document_is_forgotten_only_when_it_is_gone) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  m_window->NewDocument();
  const auto recent = [&] { return m_settings.value("recentDocuments").toStringList().size(); };
  QFile file(m_folder.filePath("plant.orvc"));
  ASSERT_TRUE(file.resize(3));
  DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
  EXPECT_FALSE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(recent(), 1);
  ASSERT_TRUE(file.remove());
  EXPECT_FALSE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_EQ(recent(), 0);
}

TEST_F(MainWindowTest, failures_around_a_document_are_noted_in_the_log) {
  DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
  EXPECT_FALSE(m_window->OpenDocument(Path("missing.orvc")));
  ASSERT_EQ(m_log->failures.size(), 1U);
  EXPECT_EQ(m_log->failures[0].Number(), 3810);
  EXPECT_EQ(m_log->failures[0].Source(), "DocumentFile");
  EXPECT_EQ(m_log->failures[0].NativeError(), ENOENT);
  m_script->bFailCreate = true;
  m_window->NewDocument();
  ASSERT_EQ(m_log->failures.size(), 2U);
  EXPECT_EQ(m_log->failures[1].Number(), 3809);
}

TEST_F(MainWindowTest, second_opener_gets_the_document_read_only_and_is_told) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  auto first = std::move(m_window);
  const auto script = std::make_shared<Script>();
  script->expand = fakes::ExpandUsualTree;
  m_script = script;
  MakeWindow();
  ASSERT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_TRUE(m_window->Document().IsReadOnly());
  EXPECT_EQ(m_window->findChild<QLabel*>("readOnlyMark")->text(), "Read-only");
  EXPECT_EQ(m_window->findChild<NoticeBar*>("noticeBar")->Sentence().toStdString(),
            m_window->Document().ReadOnlyReason());
  // Saving asks for another name.
  DialogAnswer answer([](QWidget* dialog) {
    EXPECT_EQ(dialog->objectName(), "saveDialog");
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  EXPECT_FALSE(m_window->Save());
  EXPECT_EQ(answer.Count(), 1);
}

TEST_F(MainWindowTest, save_as_opens_beside_the_document) {
  QDir(m_folder.path()).mkdir("plant");
  ASSERT_TRUE(m_window->SaveTo(Path("plant/one.orvc")));
  DialogAnswer answer([&](QWidget* widget) {
    auto* dialog = qobject_cast<QFileDialog*>(widget);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->directory().path(), m_folder.filePath("plant"));
    EXPECT_EQ(dialog->selectedFiles(), QStringList({m_folder.filePath("plant/one.orvc")}));
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  Action("actSaveAs")->trigger();
  EXPECT_EQ(answer.Count(), 1);
}

TEST_F(MainWindowTest, document_not_read_whole_is_not_written_again) {
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  m_script->bReadWhole = false;
  ASSERT_TRUE(m_window->OpenDocument(Path("plant.orvc")));
  EXPECT_FALSE(Action("actSave")->isEnabled());
  EXPECT_FALSE(Action("actSaveAs")->isEnabled());
  EXPECT_FALSE(m_window->Save());
  EXPECT_FALSE(m_window->SaveTo(Path("other.orvc")));
  EXPECT_FALSE(QFileInfo::exists(m_folder.filePath("other.orvc")));
  EXPECT_NE(m_window->findChild<NoticeBar*>("noticeBar")->Sentence(), "");
}

TEST_F(MainWindowTest, recent_documents_are_listed_and_opened) {
  ASSERT_TRUE(m_window->SaveTo(Path("a & b.orvc")));
  m_window->NewDocument();
  auto* menu = m_window->findChild<QMenu*>("mnuRecent");
  emit menu->aboutToShow();
  ASSERT_EQ(menu->actions().size(), 1);
  EXPECT_THAT(menu->actions()[0]->text().toStdString(), HasSubstr("a && b.orvc"));
  menu->actions()[0]->trigger();
  Settle();
  EXPECT_EQ(m_window->windowTitle(), "a & b[*] - ORVANE Console");
}

}  // namespace
}  // namespace orvane::console
