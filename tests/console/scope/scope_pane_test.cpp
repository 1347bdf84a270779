#include "console/scope/scope_pane.h"

#include <gmock/gmock.h>

#include <QMenu>
#include <QMessageBox>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QTest>

#include "console/results/result_pane.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST_F(MainWindowTest, expand_mark_expands_by_mouse) {
  ExpandToTables();
  EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha.Catalogs.Machine")));
  EXPECT_EQ(Session().Tree().rowCount(IndexOf("alpha.Catalogs.Machine")), 3);
}

TEST_F(MainWindowTest, tree_is_walked_and_opened_by_keys) {
  Scope().setFocus();
  QTest::keyClick(&Scope(), Qt::Key_Right);
  Settle();
  ASSERT_NE(Find("alpha"), nullptr);
  EXPECT_TRUE(Scope().isExpanded(IndexOf("")));
  QTest::keyClick(&Scope(), Qt::Key_Down);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
  QTest::keyClick(&Scope(), Qt::Key_Return);
  Settle();
  EXPECT_NE(Find("alpha.Catalogs"), nullptr);
  EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha")));
  QTest::keyClick(&Scope(), Qt::Key_Left);
  Settle();
  EXPECT_FALSE(Scope().isExpanded(IndexOf("alpha")));
  QTest::keyClick(&Scope(), Qt::Key_Right);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Expand Server").Times(1));
}

TEST_F(MainWindowTest, mark_of_the_selected_item_spans_the_pane) {
  const auto spans = [&] {
    return Scope().visualRect(IndexOf("")).right() + 1 >= Scope().viewport()->width();
  };
  EXPECT_TRUE(spans());
  m_window->findChild<QSplitter*>("splitter")->setSizes({500, 500});
  Settle();
  EXPECT_TRUE(spans());
}

TEST_F(MainWindowTest, item_without_expand_mark_opens_by_double_click_enter_and_right) {
  for (const int iWay : {0, 1, 2}) {
    m_window->NewDocument();
    Settle();
    ClickExpandMark("");
    ClickExpandMark("alpha");
    ASSERT_FALSE(Session().Tree().hasChildren(IndexOf("alpha.Queries")));
    ClickItem("alpha.Queries");
    EXPECT_EQ(Find("alpha.Queries.Load"), nullptr);
    if (iWay == 0) {
      QTest::mouseDClick(Scope().viewport(), Qt::LeftButton, {},
                         Scope().visualRect(IndexOf("alpha.Queries")).center());
    } else {
      QTest::keyClick(&Scope(), iWay == 1 ? Qt::Key_Enter : Qt::Key_Right);
    }
    Settle();
    EXPECT_NE(Find("alpha.Queries.Load"), nullptr) << iWay;
    EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha.Queries")));
  }
}

TEST_F(MainWindowTest, star_opens_one_level_only) {
  Scope().setFocus();
  QTest::keyClick(&Scope(), Qt::Key_Asterisk);
  Settle();
  QTest::keyClick(&Scope(), Qt::Key_Asterisk);
  Settle();
  EXPECT_THAT(m_script->log, Contains("Expand Servers"));
  EXPECT_THAT(m_script->log, Not(Contains("Expand Server")));
}

TEST_F(MainWindowTest, failed_expansion_is_folded_up_and_can_be_tried_again) {
  bool bFail = true;
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    if (bFail && item->NodeTypeName() == "Server") {
      throw platform::Failure(platform::failure::kServerNotFound, "The server does not answer.");
    }
    fakes::ExpandUsualTree(services, item);
  };
  ClickExpandMark("");
  {
    DialogAnswer answer([](QWidget* box) {
      EXPECT_EQ(box->windowTitle(), "Error");
      Press(box, QMessageBox::Ok);
    });
    ClickExpandMark("alpha");
    EXPECT_EQ(answer.Count(), 1);
  }
  EXPECT_EQ(Find("alpha")->State(), NodeState::Failed);
  EXPECT_FALSE(Scope().isExpanded(IndexOf("alpha")));
  bFail = false;
  ClickExpandMark("alpha");
  EXPECT_EQ(Find("alpha")->State(), NodeState::Loaded);
  EXPECT_TRUE(Scope().isExpanded(IndexOf("alpha")));
}

TEST_F(MainWindowTest, walking_through_the_tree_stays_there_after_a_control_had_the_focus) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  auto* control = m_window->findChild<QWidget*>("fakeControl");
  control->setFocusPolicy(Qt::StrongFocus);
  control->setFocus();
  ASSERT_TRUE(control->hasFocus());
  Scope().setFocus();
  QTest::keyClick(&Scope(), Qt::Key_Up);
  Settle();
  EXPECT_NE(Session().Selected(), Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_TRUE(Scope().hasFocus());
}

TEST_F(MainWindowTest, collapsing_a_branch_selects_it_when_the_selected_item_lies_beneath) {
  ExpandToTables();
  ClickItem("alpha.Catalogs.Machine.Tags");
  Scope().collapse(IndexOf("alpha.Catalogs"));
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha.Catalogs"));
  EXPECT_THAT(ListTexts(), ElementsAre("Machine"));
  // Any other branch leaves the selection alone.
  ClickItem("alpha");
  Scope().expand(IndexOf("alpha.Catalogs"));
  Scope().collapse(IndexOf("alpha.Catalogs"));
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
}

TEST_F(MainWindowTest, selection_spans_the_whole_row_of_the_scope_pane) {
  ClickExpandMark("");
  ClickItem("alpha");
  const auto rect = Scope().visualRect(IndexOf("alpha"));
  const int iMiddle = rect.center().y();
  const auto colours = [&] {
    const auto picture = Scope().viewport()->grab().toImage();
    return std::vector<QColor>{picture.pixelColor(1, iMiddle),
                               picture.pixelColor(picture.width() - 2, iMiddle)};
  };
  // The style shades the item a little.
  const auto isNear = [](const QColor& colour) {
    return testing::Truly([colour](const QColor& other) {
      return std::abs(colour.red() - other.red()) < 8 &&
             std::abs(colour.green() - other.green()) < 8 &&
             std::abs(colour.blue() - other.blue()) < 8;
    });
  };
  const auto highlight = isNear(Scope().palette().color(QPalette::Highlight));
  EXPECT_THAT(colours(), ElementsAre(highlight, highlight));
  // The row can be hit where it is seen, and leaves nothing behind.
  const auto other = Scope().visualRect(IndexOf("beta"));
  QTest::mouseClick(Scope().viewport(), Qt::LeftButton, {},
                    {Scope().viewport()->width() - 3, other.center().y()});
  Settle();
  EXPECT_EQ(Session().Selected(), Find("beta"));
  const auto base = isNear(Scope().palette().color(QPalette::Base));
  EXPECT_THAT(colours(), ElementsAre(base, base));
}

TEST_F(MainWindowTest, long_name_in_the_scope_pane_is_scrolled_to_and_a_wider_pane_shows_it) {
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    fakes::AddItem(services, item, "Server", "long", Text(200, 'm'), true);
  };
  ClickExpandMark("");
  EXPECT_GT(Scope().horizontalScrollBar()->maximum(), 0);
  Session().Tree().Remove("long");
  Settle();
  EXPECT_TRUE(Waits([&] { return Scope().horizontalScrollBar()->maximum() == 0; }));
}

TEST_F(MainWindowTest, hundred_thousand_children_are_opened_in_one_step) {
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    for (int i = 0; i < 100'000; ++i) {
      const auto sName = std::to_string(i);
      services.console->ScopeItems()
          .Add("Server", sName, item->ScopeNode(), true)
          ->DisplayName(sName);
    }
  };
  QSignalSpy inserted(&Session().Tree(), &QAbstractItemModel::rowsInserted);
  ClickExpandMark("");
  EXPECT_EQ(Results().List().RowCount(), 100'000);
  Session().Select(Find("99999"));
  Settle();
  Session().Tree().Remove("50000");
  Settle();
  // One step for all of them: nothing is sorted or laid out for each item.
  EXPECT_EQ(inserted.count(), 1);
}

/// Letters that count as one word for as long as the test wants them to.
class TypingTest : public MainWindowTest {
 protected:
  TypingTest() {
    ExpandToTables();
    Scope().setFocus();
    LettersCountTogetherFor(60'000);
    m_script->log.clear();
  }
  ~TypingTest() override { LettersCountTogetherFor(m_iUsual); }

  static void LettersCountTogetherFor(int iMilliseconds) {
    QApplication::setKeyboardInputInterval(iMilliseconds);
  }
  void Type(const char* sLetters) {
    for (const char* s = sLetters; *s; ++s) {
      QTest::keyClick(&Scope(), *s);
      Settle();
    }
  }

 private:
  int m_iUsual = QApplication::keyboardInputInterval();
};

TEST_F(TypingTest, every_letter_is_taken_and_what_is_passed_is_not_shown) {
  Type("data2");
  EXPECT_EQ(Scope().currentIndex(), IndexOf("alpha.Catalogs.Machine.Data2"));
  EXPECT_EQ(Session().Selected(), Find(""));
  EXPECT_THAT(m_script->log, IsEmpty());
}

TEST_F(TypingTest, selection_is_shown_when_the_keys_rest) {
  LettersCountTogetherFor(1);
  Type("t");
  EXPECT_TRUE(Waits([&] { return Session().Selected() == Find("alpha.Catalogs.Machine.Tags"); }));
}

TEST_F(TypingTest, key_that_is_held_down_passes_over_what_lies_between) {
  QTest::keyClick(&Scope(), Qt::Key_Down);
  Settle();
  EXPECT_EQ(Session().Selected(), Find("alpha"));
  m_script->log.clear();
  for (int i = 0; i < 5; ++i) {
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier, {}, true);
    QApplication::sendEvent(&Scope(), &held);
    Settle();
  }
  EXPECT_EQ(Scope().currentIndex(), IndexOf("alpha.Catalogs.Machine.Data2"));
  EXPECT_THAT(m_script->log, IsEmpty());
}

TEST_F(TypingTest, click_shows_its_item_although_letters_went_before) {
  Type("d");
  ClickItem("beta");
  EXPECT_EQ(Session().Selected(), Find("beta"));
}

TEST_F(TypingTest, commands_are_about_the_item_typed_to) {
  m_script->menus["Table"] = {{"m_mnuQuery", "Query...", true}};
  Type("tags");
  auto* menu = m_window->findChild<QMenu*>("mnuAction");
  emit menu->aboutToShow();
  EXPECT_NE(menu->findChild<QAction*>("m_mnuQuery"), nullptr);
}

TEST_F(TypingTest, open_menu_keeps_its_item_from_being_shown) {
  LettersCountTogetherFor(1);
  QTest::keyClick(&Scope(), Qt::Key_T);
  QTest::keyClick(&Scope(), Qt::Key_F10, Qt::ShiftModifier);
  ASSERT_TRUE(Waits([&] { return m_window->findChild<QMenu*>("contextMenu") != nullptr; }));
  // Due after the timer of the keys.
  bool bRested = false;
  QTimer::singleShot(20, Qt::PreciseTimer, m_window.get(), [&] { bRested = true; });
  ASSERT_TRUE(Waits([&] { return bRested; }));
  EXPECT_EQ(Session().Selected(), Find(""));
  QTest::keyClick(m_window->findChild<QMenu*>("contextMenu"), Qt::Key_Escape);
  EXPECT_TRUE(Waits([&] { return Session().Selected() == Find("alpha.Catalogs.Machine.Tags"); }));
}

}  // namespace
}  // namespace orvane::console
