// The selected item and the view that is shown of it.
#include <gmock/gmock.h>

#include <QSignalSpy>

#include "tests/console/session/session_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class ShownItemTest : public ConsoleSessionTest {};

TEST_F(ShownItemTest, selecting_hides_the_old_view_before_the_new_one_is_made) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_THAT(
      m_script->log,
      ElementsAre("Select -Servers", "Deactivate DefaultListView", "Initialize TableEditorOcxView",
                  "InitializeControl TableEditorOcxView",
                  "Activate TableEditorOcxView with control", "Select +alpha.Catalogs.Machine.Tags",
                  "Controlbar +alpha.Catalogs.Machine.Tags"));
}

TEST_F(ShownItemTest, each_visit_makes_a_fresh_control) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  const std::weak_ptr<platform::Control> first = m_session->CurrentResultView()->HostedControl();
  m_session->Select(Find("alpha"));
  EXPECT_TRUE(first.expired());
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_NE(m_session->CurrentResultView()->HostedControl(), nullptr);
}

TEST_F(ShownItemTest, moving_from_one_grid_to_the_next_keeps_the_toolbar_attached) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  QSignalSpy changed(m_session.get(), &ConsoleSession::ToolbarChanged);
  m_session->Select(Find("alpha.Catalogs.Machine.Data2"));
  EXPECT_EQ(changed.count(), 0);
  EXPECT_NE(m_session->ControlBar().Attached(), nullptr);
  m_session->Select(Find("alpha"));
  EXPECT_EQ(m_session->ControlBar().Attached(), nullptr);
}

TEST_F(ShownItemTest, list_view_is_initialised_afresh_each_time_it_is_shown) {
  Start();
  ExpandToTables();
  m_script->initializeView = [](Services&, platform::ResultView& view) {
    if (view.Name() == "TableStructureListView") view.ListItems().Add("Timestamp", 6);
  };
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  for (int i = 0; i < 2; ++i) {
    m_script->log.clear();
    m_session->ShowView(1);
    EXPECT_THAT(m_script->log, Contains("Initialize TableStructureListView"));
    EXPECT_EQ(m_session->CurrentResultView()->Rows().Count(), 1);
    m_session->ShowView(0);
  }
}

TEST_F(ShownItemTest, structure_view_takes_toolbar_and_refresh_verb_away) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_NE(m_session->ControlBar().Attached(), nullptr);
  EXPECT_TRUE(m_session->IsRefreshEnabled());
  m_session->ShowView(1);
  EXPECT_EQ(m_session->ControlBar().Attached(), nullptr);
  EXPECT_FALSE(m_session->IsRefreshEnabled());
}

TEST_F(ShownItemTest, view_that_the_type_does_not_offer_is_not_shown) {
  Start();
  m_session->ShowView(1);
  EXPECT_TRUE(m_script->log.empty());
}

TEST_F(ShownItemTest, control_that_cannot_be_created_leaves_an_empty_view_whose_control_fails) {
  m_script->bFailControl = true;
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_THAT(m_script->log,
              Contains("NoControl The component \"ORVOLEDBCtls.TableEditor\" is not registered."));
  EXPECT_THAT(m_script->log, Contains("Activate TableEditorOcxView"));
  EXPECT_THAT(m_script->log, Not(Contains("InitializeControl TableEditorOcxView")));
}

TEST_F(ShownItemTest, removing_the_selected_item_moves_the_selection_to_the_parent) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  m_script->log.clear();
  m_session->Tree().Remove("alpha.Catalogs.Machine.Tags");
  EXPECT_EQ(m_session->Selected(), Find("alpha.Catalogs.Machine"));
  EXPECT_EQ(m_script->log[1], "Deactivate TableEditorOcxView");
}

TEST_F(ShownItemTest, removing_an_item_above_moves_the_selection_above_that) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  m_session->Tree().Remove("alpha");
  EXPECT_EQ(m_session->Selected(), m_session->Tree().StaticItem());
}

TEST_F(ShownItemTest, removing_the_children_moves_the_selection_to_the_item_itself) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs"));
  m_session->Tree().RemoveChildren(Find("alpha")->ScopeNode());
  EXPECT_EQ(m_session->Selected(), Find("alpha"));
  m_session->Tree().RemoveChildren(Find("alpha")->ScopeNode());
  EXPECT_EQ(m_session->Selected(), Find("alpha"));
}

TEST_F(ShownItemTest, removing_another_item_leaves_the_selection_alone) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha"));
  m_script->log.clear();
  m_session->Tree().Remove("beta");
  EXPECT_TRUE(m_script->log.empty());
}

TEST_F(ShownItemTest, selection_made_while_a_view_is_shown_follows_it) {
  m_script->activate = [](Services& services, platform::ResultView& view) {
    if (view.ScopeItem()->Key() == "alpha") {
      services.console->CurrentView().SelectScopeItem(services.console->ScopeItems().Item("beta"));
    }
  };
  Start();
  ExpandTo({});
  m_session->Select(Find("alpha"));
  EXPECT_EQ(m_session->Selected(), Find("beta"));
  EXPECT_THAT(m_script->log, Contains("Select +alpha"));
  EXPECT_EQ(m_script->log.back(), "Controlbar +beta");
}

TEST_F(ShownItemTest, refresh_selection_within_a_handler_waits_for_its_end) {
  m_script->menuClick = [this](Services& services, const Text&, const platform::Selection&) {
    services.console->CurrentView().RefreshSelection();
    m_script->log.push_back("handler ends");
  };
  Start();
  m_session->ClickMenu("m", 1, HostedSelection({m_session->Selected()}));
  EXPECT_THAT(m_script->log,
              ElementsAre("Click m 1", "handler ends", "Select +Servers", "Controlbar +Servers"));
}

TEST_F(ShownItemTest, selection_has_the_published_types_and_positions) {
  Start();
  ExpandTo({});
  EXPECT_EQ(HostedSelection().Type(), 5);
  EXPECT_EQ(HostedSelection({Find("alpha")}).Type(), 0);
  EXPECT_EQ(HostedSelection({Find("alpha"), Find("beta")}).Type(), 2);
  EXPECT_EQ(HostedSelection::OfListItems(1).Type(), 1);
  EXPECT_EQ(HostedSelection::OfListItems(2).Type(), 3);
  const HostedSelection both({Find("alpha"), Find("beta")});
  EXPECT_EQ(both.ScopeItem(2)->Key(), "beta");
  EXPECT_THROW(static_cast<void>(both.ScopeItem(0)), Failure);
  EXPECT_THROW(static_cast<void>(both.ScopeItem(3)), Failure);
}

}  // namespace
}  // namespace orvane::console
