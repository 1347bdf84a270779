// What controls look like is kept for their items, and goes where these go.
#include "console/session/kept_layouts.h"

#include <gmock/gmock.h>

#include "tests/console/session/session_fixture.h"

namespace orvane::console {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class kept_layouts : public ConsoleSessionTest {
 protected:
  kept_layouts() {
    Start();
    ExpandToTables();
    m_session->Expand(Find("alpha.Queries"));
  }
  fakes::FakeControl& Show(const Text& sKey) {
    m_session->Select(Find(sKey));
    return static_cast<fakes::FakeControl&>(*m_session->CurrentResultView()->HostedControl());
  }
  void Click(std::function<void(Services&)> what) {
    m_script->menuClick = [what = std::move(what)](Services& services, const Text&,
                                                   const platform::Selection&) { what(services); };
    m_session->ClickMenu("m_mnu", 1, HostedSelection({m_session->Selected()}));
  }
};

constexpr const char* kTags = "alpha.Catalogs.Machine.Tags";
constexpr const char* kData = "alpha.Catalogs.Machine.Data2";
constexpr const char* kQuery = "alpha.Queries.Load";

TEST_F(kept_layouts, each_items_next_control_is_laid_out_as_its_last_one) {
  EXPECT_EQ(Show(kTags).sLayout, "");
  Show(kTags).sLayout = "of Tags";
  EXPECT_EQ(Show(kData).sLayout, "");
  Show(kData).sLayout = "of Data2";
  EXPECT_EQ(Show(kTags).sLayout, "of Tags");
  EXPECT_EQ(Show(kData).sLayout, "of Data2");
}

TEST_F(kept_layouts, that_of_the_control_shown_is_told_too) {
  Show(kQuery).sLayout = "new";
  EXPECT_THAT(m_session->Layouts(), ElementsAre(Pair("alpha/Queries/Load", "new")));
  Show(kQuery).sLayout = "";
  EXPECT_THAT(m_session->Layouts(), IsEmpty());
}

TEST_F(kept_layouts, are_given_back_to_a_session_that_starts) {
  m_session->Close();
  m_session->Layouts({{"alpha/Queries/Load", "kept"}});
  Start();
  ExpandTo({"alpha", "alpha.Queries"});
  EXPECT_EQ(Show(kQuery).sLayout, "kept");
}

TEST_F(kept_layouts, a_renamed_query_takes_its_own_along) {
  Show(kQuery).sLayout = "of the query";
  Click([](Services& services) {
    services.console->ScopeItems().Item(kQuery)->Key("alpha.Queries.Pressure");
  });
  Show(kTags);
  EXPECT_THAT(m_session->Layouts(), ElementsAre(Pair("alpha/Queries/Pressure", "of the query")));
}

TEST_F(kept_layouts, a_name_that_is_taken_over_brings_nothing_of_its_last_owner) {
  m_session->Layouts({{"alpha/Queries/Pressure", "of one before"}});
  Find(kQuery)->Key("alpha.Queries.Pressure");
  EXPECT_EQ(Show("alpha.Queries.Pressure").sLayout, "");
}

TEST_F(kept_layouts, a_removed_query_is_forgotten_also_while_it_is_shown) {
  Show(kQuery).sLayout = "of the query";
  Click([](Services& services) { services.console->ScopeItems().Remove(kQuery); });
  EXPECT_THAT(m_session->Layouts(), IsEmpty());
}

TEST_F(kept_layouts, a_removed_server_takes_all_beneath_it_and_no_namesake) {
  m_session->Layouts({{"alpha/Catalogs/Machine/Tags", "1"},
                      {"alpha/Queries/Not Expanded", "2"},
                      {"alpha.plant/Queries/Load", "3"},
                      {"alpha2/Queries/Load", "4"},
                      {"alpha\\/x/Queries/Load", "5"}});
  m_session->Tree().Remove("alpha");
  EXPECT_THAT(m_session->Layouts(),
              ElementsAre(Pair("alpha.plant/Queries/Load", "3"), Pair("alpha2/Queries/Load", "4"),
                          Pair("alpha\\/x/Queries/Load", "5")));
}

TEST_F(kept_layouts, last_through_a_disconnection) {
  Show(kTags).sLayout = "of Tags";
  Click([this](Services& services) {
    services.console->ScopeItems().RemoveChildren(Find("alpha")->ScopeNode());
  });
  EXPECT_THAT(m_session->Layouts(), ElementsAre(Pair("alpha/Catalogs/Machine/Tags", "of Tags")));
}

TEST_F(kept_layouts, separators_within_names_are_told_from_those_between_them) {
  const auto server = fakes::AddItem(const_cast<Services&>(m_session->Services()),
                                     m_session->Tree().StaticItem(), "Server", "a/b\\c", "s", true);
  fakes::AddItem(const_cast<Services&>(m_session->Services()), server, "Query", "a/b\\c.d/e", "q",
                 false);
  EXPECT_EQ(KeptLayouts::PlaceOf(*Find("a/b\\c.d/e")), "a\\/b\\\\c/d\\/e");
}

TEST_F(kept_layouts, one_that_a_control_refuses_keeps_nobody_from_seeing_it) {
  m_session->Layouts({{"alpha/Queries/Load", "refused"}});
  EXPECT_NE(&Show(kQuery), nullptr);
  EXPECT_EQ(m_session->CurrentResultView()->ControlFailure(), "");
  Show(kQuery).sLayout = "broken";  // it fails when it is asked
  Show(kTags);
  EXPECT_THAT(m_session->Layouts(), ElementsAre(Pair("alpha/Queries/Load", "refused")));
}

}  // namespace
}  // namespace orvane::console
