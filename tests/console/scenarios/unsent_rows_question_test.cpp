// Rows that were edited and not stored, when the connection, the catalog or the document that they
// lie in is to go. Only real grids are typed into, so this stands beside the cases that every
// console is put to.
#include <dlfcn.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QTest>

#include "tests/console/scenarios/host_driver.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

constexpr const char* kSentence = "1 row of the table \"Pumps\" is not stored.";
constexpr MenuWay kWays[] = {MenuWay::RightClick, MenuWay::Keyboard, MenuWay::MenuBar};

class unsent_rows_question : public command_scenario {
 protected:
  static QAbstractItemView* Rows() {
    for (QWidget* widget : QApplication::allWidgets()) {
      if (widget->objectName() == "rows" && widget->isVisible()) {
        return qobject_cast<QAbstractItemView*>(widget);
      }
    }
    return nullptr;
  }
  /// A key for the cell that is being typed, or for the rows.
  static void Press(int nKey, Qt::KeyboardModifiers modifiers = {}) {
    auto* rows = Rows();
    ASSERT_NE(rows, nullptr);
    QWidget* target = rows->findChild<QWidget*>("cellEditor");
    QTest::keyClick(target ? target : rows, static_cast<Qt::Key>(nKey), modifiers);
  }
  static void Type(const char* sText) {
    auto* rows = Rows();
    ASSERT_NE(rows, nullptr);
    const auto cell = rows->model()->index(0, 1);
    QTest::mouseClick(rows->viewport(), Qt::LeftButton, {}, rows->visualRect(cell).center());
    for (const char* c = sText; *c; ++c) {
      QWidget* target = rows->findChild<QWidget*>("cellEditor");
      QTest::keyClick(target ? target : rows, *c);
    }
  }
  /// A value in the first row that is not stored, as the row was not left.
  void Edit() {
    driver->Select(kPumps);
    Type("77.5");
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
  }
  Text FirstSpeed() {
    driver->Select(kPumps);
    const auto* rows = Rows();
    return rows ? rows->model()->index(0, 1).data().toString().toStdString() : "(no rows)";
  }
  void ExpectAsked(std::vector<Text> expected = {kSentence}) {
    std::vector<Text> seen;
    for (const auto& box : driver->TakeBoxes()) seen.push_back(box.sText);
    EXPECT_EQ(seen, expected);
  }
  void OpenTree() {
    for (const char* sKey : {kServer, kCatalogs, kPlant}) driver->Expand(sKey);
  }
  QWidget* Window() { return &static_cast<console::HostDriver&>(*driver).Window(); }
};

TEST_F(unsent_rows_question, comes_before_a_server_is_disconnected) {
  OpenTables();
  for (const auto way : kWays) {
    Edit();
    driver->AnswerBox(BoxAnswer::No);
    driver->Choose(kServer, "Disconnect", way);
    ExpectAsked();
    EXPECT_EQ(driver->Menu(kServer)[1], (MenuEntry{"Disconnect", true}));
    EXPECT_TRUE(driver->HasItem(kPumps));
    EXPECT_EQ(FirstSpeed(), "77.5") << "what was typed is still there";
    driver->AnswerBox(BoxAnswer::Yes);
    driver->Choose(kServer, "Disconnect", way);
    ExpectAsked();
    EXPECT_FALSE(driver->HasItem(kPumps));
    driver->Choose(kServer, "Connect...");
    OpenTree();
    EXPECT_EQ(FirstSpeed(), "1.5") << "what was given up does not come back";
    driver->Choose(kServer, "Disconnect", way);
    driver->Choose(kServer, "Connect...");
    OpenTree();
  }
  ExpectNoBoxes();
}

TEST_F(unsent_rows_question, comes_while_a_value_is_being_typed) {
  OpenTables();
  driver->Select(kPumps);
  Type("88");
  driver->AnswerBox(BoxAnswer::No);
  driver->Choose(kServer, "Disconnect");
  ExpectAsked();
  EXPECT_EQ(FirstSpeed(), "88");
}

TEST_F(unsent_rows_question, comes_before_another_document_while_a_value_is_being_typed) {
  OpenTables();
  driver->Select(kPumps);
  Type("88");
  driver->AnswerBox(BoxAnswer::No);
  Press(Qt::Key_N, Qt::ControlModifier);
  ExpectAsked();
  EXPECT_EQ(FirstSpeed(), "88");
  driver->AnswerBox(BoxAnswer::No);
  EXPECT_FALSE(Window()->close());
  ExpectAsked();
  EXPECT_EQ(FirstSpeed(), "88");
}

TEST_F(unsent_rows_question, comes_before_a_catalog_is_dropped) {
  const Text sRemoval = "Are you sure you want to remove the \"Plant\" catalog?";
  OpenTables();
  for (const auto way : kWays) {
    Edit();
    driver->AnswerBox(BoxAnswer::Yes);
    driver->AnswerBox(BoxAnswer::No);
    driver->Choose(kPlant, "Remove", way);
    ExpectAsked({sRemoval, kSentence});
    EXPECT_EQ(FirstSpeed(), "77.5");
  }
  driver->AnswerBox(BoxAnswer::Yes);
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(kPlant, "Remove");
  ExpectAsked({sRemoval, kSentence});
  EXPECT_FALSE(driver->HasItem(kPlant));
  // Nothing is left to ask about.
  driver->NewDocument();
  ExpectNoBoxes();
}

TEST_F(unsent_rows_question, comes_before_a_server_is_removed) {
  const Text sRemoval = "Are you sure you want to remove the \"localhost\" server from the tree?";
  OpenTables();
  Edit();
  driver->AnswerBox(BoxAnswer::Yes);
  driver->AnswerBox(BoxAnswer::No);
  driver->Choose(kServer, "Remove");
  ExpectAsked({sRemoval, kSentence});
  EXPECT_EQ(FirstSpeed(), "77.5");
  driver->AnswerBox(BoxAnswer::Yes);
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(kServer, "Remove");
  ExpectAsked({sRemoval, kSentence});
  EXPECT_EQ(driver->Tree(), "ORVANE Servers\n");
  driver->NewDocument();
  ExpectNoBoxes();
}

TEST_F(unsent_rows_question, is_about_what_goes_and_nothing_else) {
  driver->AddServer({"north", {{"Mill", {}}}});
  OpenTables();
  driver->ChooseServer("north");
  driver->Choose(kStaticNode, "Connect...");
  driver->Expand("north");
  driver->Expand("north.Catalogs");
  Edit();
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose("north.Catalogs.Mill", "Remove");
  ExpectAsked({"Are you sure you want to remove the \"Mill\" catalog?"});
  driver->Choose("north", "Disconnect");
  ExpectNoBoxes();
  EXPECT_EQ(FirstSpeed(), "77.5");
}

// What the toolkit remembers of a library is no good when it was unloaded and loaded again.
TEST_F(unsent_rows_question, is_asked_by_grids_that_were_loaded_again_and_lose_no_edit) {
  for (int n = 0; n < 3; ++n) {
    driver.reset();
    ASSERT_EQ(dlopen(ORVANE_CONTROLS, RTLD_LAZY | RTLD_NOLOAD), nullptr);
    driver = MakeDriver();
    driver->AddServer(Localhost());
    OpenTables();
    Edit();
    driver->AnswerBox(BoxAnswer::No);
    driver->Choose(kServer, "Disconnect");
    ExpectAsked();
    EXPECT_EQ(FirstSpeed(), "77.5");
  }
}

}  // namespace
}  // namespace orvane::scenarios::commands
