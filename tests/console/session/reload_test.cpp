// How a branch is read anew.
#include <gmock/gmock.h>

#include "tests/console/session/session_fixture.h"

namespace orvane::console {
namespace {

using testing::Contains;
using testing::Not;

class ReloadTest : public ConsoleSessionTest {};

TEST_F(ReloadTest, reload_reads_a_branch_anew_and_keeps_the_selection) {
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

TEST_F(ReloadTest, reload_selects_what_is_left_of_the_way_to_an_item_that_went) {
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

TEST_F(ReloadTest, reload_that_fails_leaves_an_item_that_can_be_tried_again) {
  Start();
  ExpandToTables();
  m_session->Select(Find("alpha.Catalogs.Machine"));
  m_script->expand = [](Services&, const ScopeItemPtr&) {
    throw Failure(platform::failure::kServerNotFound, "The server is gone.", "test");
  };
  m_session->Reload(Find("alpha"));
  EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Failed);
  EXPECT_EQ(m_session->Selected(), Find("alpha.Catalogs"));
  for (const char* sKey : {"alpha", "alpha.Catalogs"}) {
    ASSERT_TRUE(m_session->CanReload(*Find(sKey))) << sKey;
    m_session->Reload(Find(sKey));
    EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Failed);
  }
  m_script->expand = fakes::ExpandUsualTree;
  m_session->Refresh();
  EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Loaded);
}

TEST_F(ReloadTest, reload_of_a_server_reads_the_catalogs_that_were_never_opened) {
  Start();
  m_session->Expand(m_session->Tree().StaticItem());
  EXPECT_FALSE(m_session->CanReload(*Find("alpha")));
  m_session->Expand(Find("alpha"));
  ASSERT_EQ(Find("alpha.Catalogs")->State(), NodeState::NotLoaded);
  ASSERT_TRUE(m_session->CanReload(*Find("alpha")));
  m_session->Reload(Find("alpha"));
  EXPECT_EQ(Find("alpha.Catalogs")->State(), NodeState::Loaded);
  EXPECT_NE(Find("alpha.Catalogs.Machine"), nullptr);
}

TEST_F(ReloadTest, reload_of_a_server_tries_again_what_failed_beneath_it) {
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

TEST_F(ReloadTest, reload_keeps_what_no_server_could_bring_back) {
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

TEST_F(ReloadTest, only_lists_that_were_loaded_are_reloaded) {
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

}  // namespace
}  // namespace orvane::console
