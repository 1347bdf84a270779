#include "console/session/console_session.h"

#include <gmock/gmock.h>

#include <new>

#include "tests/console/session/session_fixture.h"
#include "tests/fakes/property_bag.h"

namespace orvane::console {
namespace {

using testing::ElementsAre;

TEST_F(ConsoleSessionTest, new_document_initialises_the_snap_in_and_shows_the_static_node) {
  EXPECT_TRUE(m_session->Start(platform::kSnapInProgId, nullptr));
  EXPECT_THAT(m_script->log, ElementsAre("Initialize", "ScopeItems_Initialize Servers",
                                         "Initialize DefaultListView", "Activate DefaultListView",
                                         "Select +Servers", "Controlbar +Servers"));
  EXPECT_EQ(m_session->Selected(), m_session->Tree().StaticItem());
  EXPECT_EQ(m_session->Selected()->DisplayName(), "ORVANE Servers");
}

TEST_F(ConsoleSessionTest, stored_document_is_read_before_the_static_node_is_initialised) {
  orvane::fakes::FakePropertyBag bag;
  static_cast<platform::PropertyBag&>(bag).WriteProperty("Text", Text("stored"));
  EXPECT_TRUE(m_session->Start(platform::kSnapInProgId, &bag));
  EXPECT_EQ(m_script->sRead, "stored");
  EXPECT_EQ(m_script->log[0], "Initialize");
  EXPECT_EQ(m_script->log[1], "ReadProperties");
  EXPECT_EQ(m_script->log[2], "ScopeItems_Initialize Servers");
}

TEST_F(ConsoleSessionTest, document_that_was_not_read_whole_is_told) {
  m_script->bReadWhole = false;
  orvane::fakes::FakePropertyBag bag;
  EXPECT_FALSE(m_session->Start(platform::kSnapInProgId, &bag));
}

TEST_F(ConsoleSessionTest, snap_in_that_cannot_be_created_leaves_the_session_closed) {
  m_script->bFailCreate = true;
  EXPECT_THROW(m_session->Start(platform::kSnapInProgId, nullptr), Failure);
  EXPECT_FALSE(m_session->IsOpen());
  m_script->bFailCreate = false;
  EXPECT_TRUE(m_session->Start(platform::kSnapInProgId, nullptr));
}

TEST_F(ConsoleSessionTest, closing_hides_the_view_and_lets_go_of_the_snap_in_and_all_tags) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  const std::weak_ptr<platform::Object> tag = Find("alpha")->Tag();
  const std::weak_ptr<platform::Object> control = m_session->CurrentResultView()->HostedControl();
  m_script->log.clear();
  m_session->Close();
  EXPECT_THAT(m_script->log, ElementsAre("Select -alpha.Catalogs.Machine.Tags",
                                         "Controlbar -alpha.Catalogs.Machine.Tags",
                                         "Deactivate TableEditorOcxView", "Unload", "Terminate"));
  EXPECT_EQ(m_script->iAlive, 0);
  EXPECT_TRUE(tag.expired());
  EXPECT_TRUE(control.expired());
  EXPECT_EQ(m_session->Tree().rowCount(), 0);
  EXPECT_EQ(m_session->ControlBar().Attached(), nullptr);
}

TEST_F(ConsoleSessionTest, snap_in_can_be_loaded_again_and_again) {
  for (int i = 0; i < 5; ++i) {
    Start();
    ExpandToTables();
    m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
    EXPECT_EQ(m_script->iAlive, 1);
    m_session->Close();
    EXPECT_EQ(m_script->iAlive, 0);
  }
}

TEST_F(ConsoleSessionTest, console_that_a_component_keeps_outlives_its_session) {
  std::shared_ptr<platform::Console> console;
  ScopeItemPtr item;
  m_script->expand = [&](Services& services, const ScopeItemPtr& expanded) {
    console = services.console;
    item = fakes::AddItem(services, expanded, "Server", "alpha", "alpha", true);
  };
  Start();
  m_session->Expand(m_session->Tree().StaticItem());
  m_session.reset();
  console->StaticNodeDisplayName("x");
  console->CurrentView().SelectScopeItem(item);
  console->CurrentView().RefreshSelection();
  EXPECT_EQ(console->CurrentResultView(), nullptr);
  EXPECT_EQ(console->ScopeItems().Item("alpha"), nullptr);
  item->ScopeNode()->ExpandInNameSpace();
}

TEST_F(ConsoleSessionTest, failure_that_slips_out_of_a_handler_is_shown) {
  m_script->menuClick = [](Services&, const Text&, const platform::Selection&) {
    throw Failure(platform::failure::kStorage, "The disk is full.");
  };
  Start();
  m_session->ClickMenu("m", 1, HostedSelection({m_session->Selected()}));
  EXPECT_THAT(m_ui->boxes, ElementsAre("Error: The disk is full."));
  EXPECT_FALSE(m_session->IsBusy());
}

TEST_F(ConsoleSessionTest, memory_that_runs_out_in_a_handler_is_told_in_a_sentence) {
  m_script->menuClick = [](Services&, const Text&, const platform::Selection&) {
    throw std::bad_alloc();
  };
  Start();
  m_session->ClickMenu("m", 1, HostedSelection({m_session->Selected()}));
  EXPECT_THAT(m_ui->boxes, ElementsAre("Error: There is not enough memory for this; close other "
                                       "programs and try again."));
}

TEST_F(ConsoleSessionTest, clicked_button_is_handed_to_the_snap_in_and_an_unknown_one_is_not) {
  Start();
  ExpandToTables();
  m_session->ClickButton("Sql");
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  m_script->log.clear();
  m_session->ClickButton("Sql");
  EXPECT_THAT(m_script->log, ElementsAre("Button Sql"));
}

TEST_F(ConsoleSessionTest, commands_browsing_and_finding_are_told_apart) {
  std::vector<EventKind> kinds;
  Start();
  QObject listener;
  QObject::connect(m_session.get(), &ConsoleSession::EventEnded, &listener,
                   [&](EventKind kind) { kinds.push_back(kind); });
  m_session->Expand(m_session->Tree().StaticItem());
  m_session->Select(Find("alpha"));
  m_session->ClickMenu("m", 1, HostedSelection({m_session->Selected()}));
  using enum EventKind;
  EXPECT_THAT(kinds, ElementsAre(Finding, Browsing, Command));
}

}  // namespace
}  // namespace orvane::console
