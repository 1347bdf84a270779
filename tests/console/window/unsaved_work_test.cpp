#include "console/window/unsaved_work.h"

#include <gmock/gmock.h>

#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

TEST_F(MainWindowTest, title_has_the_name_and_the_mark_of_unsaved_work) {
  EXPECT_EQ(m_window->windowTitle(), "Untitled[*] - ORVANE Console");
  EXPECT_FALSE(m_window->isWindowModified());
  DoWork();
  EXPECT_TRUE(Waits([&] { return m_window->isWindowModified(); }));
  DoWork("first");
  EXPECT_TRUE(Waits([&] { return !m_window->isWindowModified(); }));
}

TEST_F(MainWindowTest, browsing_is_no_unsaved_work) {
  m_script->expand = [this](Services& services, const ScopeItemPtr& item) {
    m_script->sSaved += " " + item->Key();
    fakes::ExpandUsualTree(services, item);
  };
  ExpandToTables();
  EXPECT_FALSE(m_window->IsModified());
  DoWork(m_script->sSaved);
  EXPECT_FALSE(m_window->IsModified());
  DoWork("work");
  EXPECT_TRUE(m_window->IsModified());
  ClickItem("beta");
  EXPECT_TRUE(m_window->IsModified());
}

TEST_F(MainWindowTest, work_before_browsing_stays_unsaved) {
  DoWork();
  ClickExpandMark("");
  EXPECT_TRUE(m_window->IsModified());
}

TEST_F(MainWindowTest, input_to_a_control_is_looked_at) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto* box = m_window->findChild<QLineEdit*>("fakeControl");
  QTest::keyClick(box, Qt::Key_A);
  m_script->sSaved = "changed by the control";
  EXPECT_TRUE(Waits([&] { return m_window->isWindowModified(); }));
}

TEST_F(MainWindowTest, looking_for_unsaved_work_says_nothing_to_the_user) {
  m_script->bWriteWhole = false;
  DialogAnswer answer([](QWidget* box) { Press(box, QMessageBox::Ok); });
  DoWork();
  static_cast<void>(m_window->IsModified());
  EXPECT_EQ(answer.Count(), 0);
}

TEST_F(MainWindowTest, work_that_cannot_be_saved_counts_as_unsaved) {
  m_script->bWriteWhole = false;
  DoWork();
  EXPECT_TRUE(m_window->IsModified());
  DialogAnswer answer([](QWidget* box) {
    EXPECT_EQ(box->objectName(), "unsavedWorkBox");
    QTest::keyClick(box, Qt::Key_Escape);
  });
  EXPECT_FALSE(m_window->close());
  EXPECT_EQ(answer.Count(), 1);
}

TEST_F(MainWindowTest, moving_about_asks_the_snap_in_for_nothing_that_is_saved) {
  ExpandToTables();
  EXPECT_FALSE(m_window->IsModified());
  ASSERT_TRUE(Waits([&] { return m_script->iWrites >= 2; }));
  ClickItem("alpha.Catalogs.Machine.Tags");
  QTest::mouseClick(m_window->findChild<QLineEdit*>("fakeControl"), Qt::LeftButton);
  const int iBefore = m_script->iWrites;
  ClickItem("alpha.Catalogs.Machine.Data2");
  ClickItem("beta");
  EXPECT_EQ(m_script->iWrites, iBefore);
  // The click into the control is looked at when it is calm, and nothing else is.
  EXPECT_TRUE(Waits([&] { return m_script->iWrites == iBefore + 1; }));
  // So is the next one: a look too many in between would be counted with it.
  ClickItem("alpha.Catalogs.Machine.Tags");
  QTest::mouseClick(m_window->findChild<QLineEdit*>("fakeControl"), Qt::LeftButton);
  EXPECT_TRUE(Waits([&] { return m_script->iWrites > iBefore + 1; }));
  EXPECT_EQ(m_script->iWrites, iBefore + 2);
}

TEST_F(MainWindowTest, work_is_looked_at_when_a_wait_has_ended_and_not_before) {
  DoWork();
  m_wait->bRunning = true;
  const int iWrites = m_script->iWrites;
  // A wait is asked after at each calm moment.
  const int iAsked = m_wait->iAsked;
  ASSERT_TRUE(Waits([&] { return m_wait->iAsked >= iAsked + 3; }));
  EXPECT_EQ(m_script->iWrites, iWrites);
  EXPECT_FALSE(m_window->isWindowModified());
  m_wait->bRunning = false;
  EXPECT_TRUE(Waits([&] { return m_window->isWindowModified(); }));
  EXPECT_EQ(m_script->iWrites, iWrites + 1);
}

}  // namespace
}  // namespace orvane::console
