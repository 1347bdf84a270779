// How items are expanded, fail to be, and are tried again.
#include <gmock/gmock.h>

#include <QSignalSpy>

#include "tests/console/session/session_fixture.h"

namespace orvane::console {
namespace {

using testing::ElementsAre;

class ExpansionTest : public ConsoleSessionTest {};

TEST_F(ExpansionTest, expansion_is_asked_for_once) {
  Start();
  m_session->Expand(m_session->Tree().StaticItem());
  m_session->Expand(m_session->Tree().StaticItem());
  EXPECT_THAT(m_script->log, ElementsAre("Expand Servers"));
}

TEST_F(ExpansionTest, item_without_expand_mark_is_expanded_on_request) {
  Start();
  ExpandTo({"alpha"});
  ASSERT_FALSE(Find("alpha.Queries")->HasExpandMark());
  m_session->Expand(Find("alpha.Queries"));
  EXPECT_NE(Find("alpha.Queries.Load"), nullptr);
  EXPECT_TRUE(Find("alpha.Queries")->HasExpandMark());
}

TEST_F(ExpansionTest, failure_reported_during_an_expansion_makes_it_failed_until_tried_again) {
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

TEST_F(ExpansionTest, leftover_of_a_failed_expansion_that_is_shown_is_hidden_before_another_try) {
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

TEST_F(ExpansionTest, expansion_that_says_it_succeeded_is_none_that_failed_whatever_it_showed) {
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    fakes::ExpandUsualTree(services, item);
    fakes::ReportFailure(services, "Something else went wrong meanwhile.");
  };
  Start();
  m_session->Expand(m_session->Tree().StaticItem());
  EXPECT_EQ(m_session->Tree().StaticItem()->State(), NodeState::Loaded);
}

TEST_F(ExpansionTest, selected_item_that_failed_is_tried_again_without_leaving_it) {
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

TEST_F(ExpansionTest, refresh_of_a_failed_item_tries_again) {
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

TEST_F(ExpansionTest, expansion_fails_by_its_result_and_not_by_its_mark) {
  m_script->expand = [&](Services& services, const ScopeItemPtr& item) {
    if (item->NodeTypeName() == "Server") return item->ScopeNode()->HasChildren(false);
    fakes::ExpandUsualTree(services, item);
  };
  Start();
  ExpandTo({"alpha"});
  EXPECT_EQ(Find("alpha")->State(), NodeState::Loaded);
  EXPECT_FALSE(Find("alpha")->HasExpandMark());
}

TEST_F(ExpansionTest, expand_in_the_name_space_is_done_when_it_returns) {
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

}  // namespace
}  // namespace orvane::console
