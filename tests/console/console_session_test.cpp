#include "console/session/console_session.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

#include "console/document/document_bag.h"
#include "tests/console/fake_snap_in.h"

namespace orvane::console {
namespace {

using fakes::Script;
using platform::Failure;
using platform::ScopeItemPtr;
using platform::Services;
using platform::Text;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class ConsoleSessionTest : public testing::Test {
 protected:
  ConsoleSessionTest() {
    m_script->expand = fakes::ExpandUsualTree;
    Services services;
    services.ui = m_ui;
    m_session = std::make_unique<ConsoleSession>(fakes::MakeCreator(m_script), services, nullptr);
  }

  void Start() {
    m_session->Start(platform::kSnapInProgId, nullptr);
    m_script->log.clear();
  }
  ScopeTreeItemPtr Find(const Text& sKey) { return m_session->Tree().Find(sKey); }
  void ExpandTo(std::initializer_list<const char*> sKeys) {
    m_session->Expand(m_session->Tree().StaticItem());
    for (const char* sKey : sKeys) m_session->Expand(Find(sKey));
    m_script->log.clear();
  }
  void ExpandToTables() { ExpandTo({"alpha", "alpha.Catalogs", "alpha.Catalogs.Machine"}); }

  std::shared_ptr<Script> m_script = std::make_shared<Script>();
  std::shared_ptr<fakes::FakeUserInterface> m_ui = std::make_shared<fakes::FakeUserInterface>();
  std::unique_ptr<ConsoleSession> m_session;
};

TEST_F(ConsoleSessionTest, new_document_initialises_the_snap_in_and_shows_the_static_node) {
  EXPECT_TRUE(m_session->Start(platform::kSnapInProgId, nullptr));
  EXPECT_THAT(m_script->log, ElementsAre("Initialize", "ScopeItems_Initialize Servers",
                                         "Initialize DefaultListView", "Activate DefaultListView",
                                         "Select +Servers", "Controlbar +Servers"));
  EXPECT_EQ(m_session->Selected(), m_session->Tree().StaticItem());
  EXPECT_EQ(m_session->Selected()->DisplayName(), "ORVANE Servers");
}

TEST_F(ConsoleSessionTest, stored_document_is_read_before_the_static_node_is_initialised) {
  DocumentBag bag;
  bag.WriteProperty("Text", Text("stored"));
  EXPECT_TRUE(m_session->Start(platform::kSnapInProgId, &bag));
  EXPECT_EQ(m_script->sRead, "stored");
  EXPECT_EQ(m_script->log[0], "Initialize");
  EXPECT_EQ(m_script->log[1], "ReadProperties");
  EXPECT_EQ(m_script->log[2], "ScopeItems_Initialize Servers");
}

TEST_F(ConsoleSessionTest, document_that_was_not_read_whole_is_told) {
  m_script->bReadWhole = false;
  DocumentBag bag;
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

TEST_F(ConsoleSessionTest, selecting_hides_the_old_view_before_the_new_one_is_made) {
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

TEST_F(ConsoleSessionTest, each_visit_makes_a_fresh_control) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  const std::weak_ptr<platform::Control> first = m_session->CurrentResultView()->HostedControl();
  m_session->Select(Find("alpha"));
  EXPECT_TRUE(first.expired());
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_NE(m_session->CurrentResultView()->HostedControl(), nullptr);
}

TEST_F(ConsoleSessionTest, moving_from_one_grid_to_the_next_keeps_the_toolbar_attached) {
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

TEST_F(ConsoleSessionTest, list_view_is_initialised_afresh_each_time_it_is_shown) {
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

TEST_F(ConsoleSessionTest, structure_view_takes_toolbar_and_refresh_verb_away) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_NE(m_session->ControlBar().Attached(), nullptr);
  EXPECT_TRUE(m_session->IsRefreshEnabled());
  m_session->ShowView(1);
  EXPECT_EQ(m_session->ControlBar().Attached(), nullptr);
  EXPECT_FALSE(m_session->IsRefreshEnabled());
}

TEST_F(ConsoleSessionTest, view_that_the_type_does_not_offer_is_not_shown) {
  Start();
  m_session->ShowView(1);
  EXPECT_TRUE(m_script->log.empty());
}

TEST_F(ConsoleSessionTest,
       control_that_cannot_be_created_leaves_an_empty_view_whose_control_fails) {
  m_script->bFailControl = true;
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  EXPECT_THAT(m_script->log, Contains("NoControl The component \"Grid\" is not registered."));
  EXPECT_THAT(m_script->log, Contains("Activate TableEditorOcxView"));
  EXPECT_THAT(m_script->log, Not(Contains("InitializeControl TableEditorOcxView")));
}

TEST_F(ConsoleSessionTest, expansion_is_asked_for_once) {
  Start();
  m_session->Expand(m_session->Tree().StaticItem());
  m_session->Expand(m_session->Tree().StaticItem());
  EXPECT_THAT(m_script->log, ElementsAre("Expand Servers"));
}

TEST_F(ConsoleSessionTest, item_without_expand_mark_is_expanded_on_request) {
  Start();
  ExpandTo({"alpha"});
  ASSERT_FALSE(Find("alpha.Queries")->HasExpandMark());
  m_session->Expand(Find("alpha.Queries"));
  EXPECT_NE(Find("alpha.Queries.Load"), nullptr);
  EXPECT_TRUE(Find("alpha.Queries")->HasExpandMark());
}

TEST_F(ConsoleSessionTest, failure_reported_during_an_expansion_makes_it_failed_until_tried_again) {
  bool bFail = true;
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    if (item->NodeTypeName() == "Catalogs" && bFail) {
      fakes::AddItem(services, item, "Catalog", item->Key() + ".Half", "Half", true);
      throw platform::Failure(platform::failure::kServerNotFound, "The server is gone.");
    }
    fakes::ExpandUsualTree(services, item);
  };
  Start();
  ExpandTo({"alpha"});
  QSignalSpy failed(m_session.get(), &ConsoleSession::ExpansionFailed);
  m_session->Expand(Find("alpha.Catalogs"));
  EXPECT_EQ(failed.count(), 1);
  EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Failed);
  EXPECT_NE(Find("alpha.Catalogs.Half"), nullptr);
  EXPECT_THAT(m_ui->boxes, ElementsAre("Error: The server is gone."));
  bFail = false;
  m_session->Expand(Find("alpha.Catalogs"));
  EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Loaded);
  EXPECT_EQ(Find("alpha.Catalogs.Half"), nullptr);
  EXPECT_NE(Find("alpha.Catalogs.Machine"), nullptr);
}

TEST_F(ConsoleSessionTest,
       leftover_of_a_failed_expansion_that_is_shown_is_hidden_before_another_try) {
  bool bFail = true;
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    fakes::ExpandUsualTree(services, item);
    if (item->NodeTypeName() == "Catalog" && bFail)
      throw platform::Failure(platform::failure::kServerNotFound, "Half.");
  };
  Start();
  ExpandToTables();
  const auto catalog = Find("alpha.Catalogs.Machine");
  ASSERT_EQ(catalog->State(), NodeState::Failed);
  const auto leftover = Find("alpha.Catalogs.Machine.Tags");
  m_session->Select(leftover);
  ASSERT_TRUE(m_session->CurrentResultView()->IsControl());
  int iGone = 0;
  const auto hidden =
      QObject::connect(m_session.get(), &ConsoleSession::ViewGone, [&](HostedResultView* view) {
        if (view->Item() != leftover) return;
        ++iGone;
        EXPECT_FALSE(leftover->IsRemoved());
        EXPECT_NE(leftover->Tag(), nullptr);
      });
  m_script->log.clear();
  bFail = false;
  m_session->Expand(catalog);
  QObject::disconnect(hidden);
  EXPECT_EQ(iGone, 1);
  EXPECT_TRUE(leftover->IsRemoved());
  EXPECT_EQ(m_session->Selected(), catalog);
  EXPECT_FALSE(m_session->CurrentResultView()->IsControl());
  EXPECT_EQ(catalog->State(), NodeState::Loaded);
  EXPECT_EQ(m_script->log[0], "Select -alpha.Catalogs.Machine.Tags");
  EXPECT_EQ(m_script->log[1], "Deactivate TableEditorOcxView");
  EXPECT_EQ(m_script->log.back(), "Expand Catalog");
}

TEST_F(ConsoleSessionTest,
       expansion_that_says_it_succeeded_is_none_that_failed_whatever_it_showed) {
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    fakes::ExpandUsualTree(services, item);
    fakes::ReportFailure(services, "Something else went wrong meanwhile.");
  };
  Start();
  m_session->Expand(m_session->Tree().StaticItem());
  EXPECT_EQ(m_session->Tree().StaticItem()->State(), NodeState::Loaded);
}

TEST_F(ConsoleSessionTest, selected_item_that_failed_is_tried_again_without_leaving_it) {
  bool bFail = true;
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    fakes::ExpandUsualTree(services, item);
    if (item->NodeTypeName() == "Servers" && bFail)
      throw platform::Failure(platform::failure::kServerNotFound, "Half.");
  };
  Start();
  m_session->Expand(m_session->Tree().StaticItem());
  m_script->log.clear();
  bFail = false;
  m_session->Expand(m_session->Tree().StaticItem());
  EXPECT_THAT(m_script->log, ElementsAre("Expand Servers"));
}

TEST_F(ConsoleSessionTest, refresh_of_a_failed_item_tries_again) {
  bool bFail = true;
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    if (bFail) throw platform::Failure(platform::failure::kServerNotFound, "No.");
    fakes::ExpandUsualTree(services, item);
  };
  Start();
  m_session->Expand(m_session->Tree().StaticItem());
  EXPECT_EQ(m_session->Selected()->State(), NodeState::Failed);
  bFail = false;
  m_session->Refresh();
  EXPECT_EQ(m_session->Selected()->State(), NodeState::Loaded);
}

TEST_F(ConsoleSessionTest, reload_reads_a_branch_anew_and_keeps_the_selection) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Data10"));
  m_session->ShowView(1);
  m_script->log.clear();
  const auto before = Find("alpha.Catalogs.Machine.Data10");
  m_session->Reload(Find("alpha.Catalogs"));
  EXPECT_THAT(m_script->log, Contains("Expand Catalogs").Times(1));
  EXPECT_THAT(m_script->log, Contains("Expand Catalog").Times(1));
  EXPECT_THAT(m_script->log, Not(Contains("Expand Server")));
  EXPECT_TRUE(before->IsRemoved());
  EXPECT_EQ(m_session->Selected(), Find("alpha.Catalogs.Machine.Data10"));
  EXPECT_EQ(m_session->CurrentResultView()->Name(), "TableStructureListView");
}

TEST_F(ConsoleSessionTest, reload_selects_what_is_left_of_the_way_to_an_item_that_went) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Data10"));
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    fakes::ExpandUsualTree(services, item);
    if (item->NodeTypeName() == "Catalog") {
      services.console->ScopeItems().Remove(item->Key() + ".Data10");
    }
  };
  m_session->Reload(Find("alpha"));
  EXPECT_EQ(m_session->Selected(), Find("alpha.Catalogs.Machine"));
  EXPECT_EQ(Find("alpha.Catalogs.Machine.Data10"), nullptr);
}

TEST_F(ConsoleSessionTest, reload_that_fails_leaves_an_item_that_can_be_tried_again) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine"));
  m_script->expand = [](Services&, const ScopeItemPtr&) {
    throw Failure(platform::failure::kServerNotFound, "The server is gone.", "test");
  };
  m_session->Reload(Find("alpha"));
  EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Failed);
  EXPECT_EQ(m_session->Selected(), Find("alpha.Catalogs"));
  EXPECT_FALSE(m_session->CanReload(*Find("alpha.Catalogs")));
  EXPECT_TRUE(m_session->CanReload(*Find("alpha")));
  m_script->expand = fakes::ExpandUsualTree;
  m_session->Refresh();
  EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Loaded);
}

TEST_F(ConsoleSessionTest, reload_of_a_server_tries_again_what_failed_beneath_it) {
  Start();
  ExpandToTables();
  m_script->expand = [](Services&, const ScopeItemPtr&) {
    throw Failure(platform::failure::kServerNotFound, "The server is gone.", "test");
  };
  m_session->Reload(Find("alpha"));
  m_script->expand = fakes::ExpandUsualTree;
  m_session->Reload(Find("alpha"));
  EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Loaded);
}

TEST_F(ConsoleSessionTest, reload_keeps_what_no_server_could_bring_back) {
  Start();
  ExpandToTables();
  m_session->Expand(Find("alpha.Queries"));
  const auto query = Find("alpha.Queries.Load");
  ASSERT_NE(query, nullptr);
  m_session->Select(query);
  // A query whose rename was refused stands in the tree alone: its folder would not list it again.
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    if (item->NodeTypeName() != "Queries") fakes::ExpandUsualTree(services, item);
  };
  const auto catalog = Find("alpha.Catalogs.Machine");
  m_session->Reload(Find("alpha"));
  EXPECT_TRUE(catalog->IsRemoved());
  EXPECT_EQ(Find("alpha.Queries.Load"), query);
  EXPECT_EQ(m_session->Selected(), query);
  EXPECT_FALSE(m_session->CanReload(*Find("alpha.Queries")));
  m_session->Reload(Find("alpha.Queries"));
  EXPECT_EQ(Find("alpha.Queries.Load"), query);
}

TEST_F(ConsoleSessionTest, only_lists_that_were_loaded_are_reloaded) {
  Start();
  ExpandToTables();
  EXPECT_FALSE(m_session->CanReload(*m_session->Tree().StaticItem()));
  EXPECT_FALSE(m_session->CanReload(*Find("beta")));
  EXPECT_TRUE(m_session->CanReload(*Find("alpha")));
  EXPECT_TRUE(m_session->CanReload(*Find("alpha.Catalogs")));
  EXPECT_TRUE(m_session->CanReload(*Find("alpha.Catalogs.Machine")));
  const auto table = Find("alpha.Catalogs.Machine.Tags");
  m_session->Expand(table);
  EXPECT_FALSE(m_session->CanReload(*table));
  m_session->Reload(table);
  EXPECT_EQ(Find("alpha.Catalogs.Machine.Tags"), table);
}

TEST_F(ConsoleSessionTest, expansion_fails_by_its_result_and_not_by_its_mark) {
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    if (item->NodeTypeName() == "Server") return item->ScopeNode()->HasChildren(false);
    fakes::ExpandUsualTree(services, item);
  };
  Start();
  ExpandTo({"alpha"});
  EXPECT_EQ(Find("alpha")->State(), NodeState::Loaded);
  EXPECT_FALSE(Find("alpha")->HasExpandMark());
}

TEST_F(ConsoleSessionTest, expand_in_the_name_space_is_done_when_it_returns) {
  m_script->menuClick = [](Services& services, const Text&, const platform::Selection& selection) {
    const auto item = selection.ScopeItem(1);
    EXPECT_FALSE(item->ScopeNode()->ExpandedOnce());
    item->ScopeNode()->ExpandInNameSpace();
    EXPECT_TRUE(item->ScopeNode()->ExpandedOnce());
    EXPECT_NE(services.console->ScopeItems().Item("alpha"), nullptr);
  };
  Start();
  QSignalSpy expanded(m_session.get(), &ConsoleSession::Expanded);
  m_session->ClickMenu("m_mnuServersConnect", 1, HostedSelection({m_session->Selected()}));
  EXPECT_EQ(expanded.count(), 1);
}

TEST_F(ConsoleSessionTest, removing_the_selected_item_moves_the_selection_to_the_parent) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  m_script->log.clear();
  m_session->Tree().Remove("alpha.Catalogs.Machine.Tags");
  EXPECT_EQ(m_session->Selected(), Find("alpha.Catalogs.Machine"));
  EXPECT_EQ(m_script->log[1], "Deactivate TableEditorOcxView");
}

TEST_F(ConsoleSessionTest, removing_an_item_above_moves_the_selection_above_that) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  m_session->Tree().Remove("alpha");
  EXPECT_EQ(m_session->Selected(), m_session->Tree().StaticItem());
}

TEST_F(ConsoleSessionTest, removing_the_children_moves_the_selection_to_the_item_itself) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs"));
  m_session->Tree().RemoveChildren(Find("alpha")->ScopeNode());
  EXPECT_EQ(m_session->Selected(), Find("alpha"));
  m_session->Tree().RemoveChildren(Find("alpha")->ScopeNode());
  EXPECT_EQ(m_session->Selected(), Find("alpha"));
}

TEST_F(ConsoleSessionTest, removing_another_item_leaves_the_selection_alone) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha"));
  m_script->log.clear();
  m_session->Tree().Remove("beta");
  EXPECT_TRUE(m_script->log.empty());
}

TEST_F(ConsoleSessionTest, selection_made_while_a_view_is_shown_follows_it) {
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

TEST_F(ConsoleSessionTest, refresh_selection_within_a_handler_waits_for_its_end) {
  m_script->menuClick = [this](Services& services, const Text&, const platform::Selection&) {
    services.console->CurrentView().RefreshSelection();
    m_script->log.push_back("handler ends");
  };
  Start();
  m_session->ClickMenu("m", 1, HostedSelection({m_session->Selected()}));
  EXPECT_THAT(m_script->log,
              ElementsAre("Click m 1", "handler ends", "Select +Servers", "Controlbar +Servers"));
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

TEST_F(ConsoleSessionTest, clicked_button_is_handed_to_the_snap_in_and_an_unknown_one_is_not) {
  Start();
  ExpandToTables();
  m_session->ClickButton("Sql");
  m_session->Select(Find("alpha.Catalogs.Machine.Tags"));
  m_script->log.clear();
  m_session->ClickButton("Sql");
  EXPECT_THAT(m_script->log, ElementsAre("Button Sql"));
}

TEST_F(ConsoleSessionTest, selection_has_the_published_types_and_positions) {
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

TEST_F(ConsoleSessionTest, commands_browsing_and_finding_are_told_apart) {
  std::vector<ConsoleSession::EventKind> kinds;
  Start();
  QObject listener;
  QObject::connect(m_session.get(), &ConsoleSession::EventEnded, &listener,
                   [&](ConsoleSession::EventKind kind) { kinds.push_back(kind); });
  m_session->Expand(m_session->Tree().StaticItem());
  m_session->Select(Find("alpha"));
  m_session->ClickMenu("m", 1, HostedSelection({m_session->Selected()}));
  using enum ConsoleSession::EventKind;
  EXPECT_THAT(kinds, ElementsAre(Finding, Browsing, Command));
}

}  // namespace
}  // namespace orvane::console
