#include "console/window/last_session.h"

#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::Not;

class LastSessionTest : public MainWindowTest {
 protected:
  /// Ends the console and starts it again, without a document.
  void StartAgain() {
    EXPECT_TRUE(m_window->close());
    m_window.reset();
    m_script->log.clear();
    MakeWindow();
    m_bOpened = m_window->OpenLast();
    if (!m_bOpened && !Session().IsOpen()) m_window->NewDocument();
    Settle();
  }
  Text Opened() { return m_window->Document().Path(); }

  bool m_bOpened = false;
};

TEST_F(LastSessionTest, is_not_brought_back_unless_that_is_wanted) {
  EXPECT_FALSE(Action("actReopen")->isChecked());
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  StartAgain();
  EXPECT_FALSE(m_bOpened);
  EXPECT_EQ(Opened(), "");
  EXPECT_FALSE(Action("actReopen")->isChecked());
}

TEST_F(LastSessionTest, comes_back_with_its_document_and_its_item) {
  Action("actReopen")->trigger();
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  ClickExpandMark("");
  ClickItem("alpha");
  StartAgain();
  EXPECT_TRUE(m_bOpened);
  EXPECT_EQ(Opened(), Path("plant.orvc"));
  EXPECT_EQ(Session().Selected(), Find("alpha"));
  EXPECT_TRUE(Action("actReopen")->isChecked());
}

TEST_F(LastSessionTest, logs_on_nowhere_for_an_item_beneath_a_server) {
  Action("actReopen")->trigger();
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine");
  StartAgain();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
  EXPECT_FALSE(Find("alpha")->ExpandedOnce());
}

TEST_F(LastSessionTest, is_a_new_document_where_the_last_one_had_no_file) {
  Action("actReopen")->trigger();
  StartAgain();
  EXPECT_FALSE(m_bOpened);
  EXPECT_EQ(Session().Selected(), Find(""));
}

TEST_F(LastSessionTest, is_told_of_when_its_document_is_gone) {
  Action("actReopen")->trigger();
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  QFile::remove(QString::fromStdString(Path("plant.orvc")));
  DialogAnswer answer([](QWidget* box) {
    EXPECT_TRUE(qobject_cast<QMessageBox*>(box)->text().contains("plant.orvc"));
    Press(box, QMessageBox::Ok);
  });
  StartAgain();
  EXPECT_FALSE(m_bOpened);
  EXPECT_EQ(answer.Count(), 1);
  EXPECT_TRUE(Session().IsOpen());
}

TEST_F(LastSessionTest, is_forgotten_when_it_is_not_wanted_any_more) {
  Action("actReopen")->trigger();
  ASSERT_TRUE(m_window->SaveTo(Path("plant.orvc")));
  StartAgain();
  Action("actReopen")->trigger();
  EXPECT_THAT(
      m_settings.allKeys(),
      Not(Contains(testing::Property(&QString::toStdString, testing::StartsWith("LastSession")))));
  StartAgain();
  EXPECT_FALSE(m_bOpened);
}

}  // namespace
}  // namespace orvane::console
