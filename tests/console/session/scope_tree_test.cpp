#include "console/session/scope_tree.h"

#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "tests/console/session/fake_snap_in.h"

namespace orvane::console {
namespace {

using platform::Failure;
using platform::ScopeItemPtr;
using platform::Text;
namespace failure = platform::failure;

class ScopeTreeTest : public testing::Test {
 protected:
  ScopeTreeTest() {
    platform::SnapInDescription description;
    description.sStaticNodeType = "Servers";
    for (const char* sType : {"Servers", "Server", "Catalogs", "Catalog", "Table", "Queries"}) {
      description.nodeTypes.push_back({sType, "{0}", Text(sType) + " type", 2, {}});
    }
    m_tree.Reset(description);
    m_root = m_tree.StaticItem();
  }

  ScopeItemPtr Add(const ScopeItemPtr& parent, const Text& sKey, bool bHasChildren = true) {
    return m_tree.Add("Server", sKey, parent->ScopeNode(), bHasChildren);
  }
  QModelIndex Root() const { return m_tree.index(0, 0); }
  static Text NumberOf(const std::function<void()>& action) {
    try {
      action();
    } catch (const Failure& e) {
      return std::to_string(e.Number());
    }
    return "none";
  }

  ScopeTree m_tree;
  QAbstractItemModelTester m_tester{&m_tree, QAbstractItemModelTester::FailureReportingMode::Fatal};
  ScopeTreeItemPtr m_root;
};

TEST_F(ScopeTreeTest, static_node_is_alone_at_the_top_and_asks_to_be_expanded) {
  EXPECT_EQ(m_tree.rowCount(), 1);
  EXPECT_EQ(Root().data().toString(), "Servers type");
  EXPECT_TRUE(m_tree.hasChildren(Root()));
  EXPECT_EQ(m_root->State(), NodeState::NotLoaded);
}

TEST_F(ScopeTreeTest, item_starts_with_the_display_name_of_its_type) {
  EXPECT_EQ(Add(m_root, "alpha")->DisplayName(), "Server type");
}

TEST_F(ScopeTreeTest, item_is_found_by_its_key_and_a_taken_key_fails_with_457) {
  const auto item = Add(m_root, "alpha");
  EXPECT_EQ(m_tree.Item("alpha"), item);
  EXPECT_EQ(m_tree.Item("beta"), nullptr);
  EXPECT_EQ(NumberOf([&] { Add(m_root, "alpha"); }), "457");
  m_tree.Flush();
  EXPECT_EQ(m_tree.rowCount(Root()), 1);
}

TEST_F(ScopeTreeTest, no_key_of_the_snap_in_meets_the_static_node) {
  EXPECT_EQ(NumberOf([&] { Add(m_root, m_root->Key()); }), "none");
}

TEST_F(ScopeTreeTest, unknown_node_type_and_a_parent_that_is_gone_are_refused) {
  EXPECT_EQ(NumberOf([&] { m_tree.Add("Nothing", "k", m_root->ScopeNode(), false); }), "5");
  const auto item = Add(m_root, "alpha");
  m_tree.Remove("alpha");
  EXPECT_EQ(NumberOf([&] { Add(item, "beta"); }), "5");
  EXPECT_EQ(NumberOf([&] { m_tree.Add("Server", "k", nullptr, false); }), "5");
}

TEST_F(ScopeTreeTest, key_can_be_changed_unless_the_new_one_is_taken) {
  const auto item = Add(m_root, "alpha");
  Add(m_root, "beta");
  item->Key("gamma");
  EXPECT_EQ(item->Key(), "gamma");
  EXPECT_EQ(m_tree.Item("gamma"), item);
  EXPECT_EQ(m_tree.Item("alpha"), nullptr);
  EXPECT_EQ(NumberOf([&] { item->Key("beta"); }), "457");
  EXPECT_EQ(m_tree.Item("gamma"), item);
  item->Key("gamma");
  EXPECT_EQ(m_tree.Item("gamma"), item);
}

TEST_F(ScopeTreeTest, items_added_during_an_expansion_are_shown_in_one_batch) {
  QSignalSpy inserted(&m_tree, &QAbstractItemModel::rowsInserted);
  m_tree.BeginExpansion(*m_root);
  for (int i = 0; i < 50; ++i) Add(m_root, std::to_string(i));
  m_tree.Flush();
  EXPECT_EQ(m_tree.rowCount(Root()), 0);
  EXPECT_EQ(inserted.count(), 0);
  m_tree.EndExpansion(*m_root, false);
  EXPECT_EQ(m_tree.rowCount(Root()), 50);
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(m_tree.ItemAt(m_tree.index(7, 0, Root()))->Key(), "7");
}

TEST_F(ScopeTreeTest, items_added_outside_an_expansion_are_shown_by_the_event_loop) {
  QSignalSpy inserted(&m_tree, &QAbstractItemModel::rowsInserted);
  for (int i = 0; i < 50; ++i) Add(m_root, std::to_string(i));
  EXPECT_TRUE(inserted.wait());
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(m_tree.rowCount(Root()), 50);
}

TEST_F(ScopeTreeTest, items_beneath_an_item_not_shown_yet_are_shown_after_it) {
  const auto alpha = Add(m_root, "alpha");
  const auto one = Add(alpha, "alpha.1");
  Add(one, "alpha.1.1");
  m_tree.Flush();
  const auto index = m_tree.index(0, 0, m_tree.index(0, 0, m_tree.index(0, 0, Root())));
  EXPECT_EQ(m_tree.ItemAt(index)->Key(), "alpha.1.1");
}

TEST_F(ScopeTreeTest, hundred_thousand_children_are_shown_in_one_step) {
  const auto large = Add(m_root, "large");
  m_tree.Flush();
  QSignalSpy inserted(&m_tree, &QAbstractItemModel::rowsInserted);
  m_tree.BeginExpansion(*m_tree.Find("large"));
  for (int i = 0; i < 100'000; ++i) {
    Add(large, "large." + std::to_string(i), false);
  }
  m_tree.EndExpansion(*m_tree.Find("large"), false);
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(m_tree.Find("large")->Children().size(), 100'000U);
  EXPECT_EQ(m_tree.IndexOf(*m_tree.Find("large.99999")).row(), 99'999);
}

TEST_F(ScopeTreeTest, removal_takes_everything_beneath_and_keeps_the_rows_of_the_others) {
  const auto alpha = Add(m_root, "alpha");
  Add(alpha, "alpha.1");
  Add(m_root, "beta");
  m_tree.Flush();
  m_tree.Remove("alpha");
  EXPECT_EQ(m_tree.Item("alpha"), nullptr);
  EXPECT_EQ(m_tree.Item("alpha.1"), nullptr);
  EXPECT_EQ(m_tree.IndexOf(*m_tree.Find("beta")).row(), 0);
  EXPECT_EQ(NumberOf([&] { m_tree.Remove("alpha"); }), "5");
}

TEST_F(ScopeTreeTest, item_not_shown_yet_can_be_removed) {
  QSignalSpy removed(&m_tree, &QAbstractItemModel::rowsRemoved);
  Add(m_root, "alpha");
  Add(m_root, "beta");
  m_tree.Remove("alpha");
  EXPECT_EQ(removed.count(), 0);
  m_tree.Flush();
  ASSERT_EQ(m_tree.rowCount(Root()), 1);
  EXPECT_EQ(m_tree.ItemAt(m_tree.index(0, 0, Root()))->Key(), "beta");
}

TEST_F(ScopeTreeTest, references_stay_safe_after_a_removal_and_then_do_nothing) {
  const auto item = Add(m_root, "alpha");
  auto model = std::make_shared<platform::Object>();
  const std::weak_ptr<platform::Object> weak = model;
  item->Tag(model);
  model.reset();
  const auto node = item->ScopeNode();
  m_tree.Remove("alpha");
  EXPECT_EQ(item->Tag(), nullptr);
  EXPECT_TRUE(weak.expired());
  item->DisplayName("x");
  item->Key("y");
  item->Tag(std::make_shared<platform::Object>());
  item->ListSubItems().Add(1, "Name", "z");
  item->ColumnHeaders().Clear();
  node->HasChildren(true);
  node->ExpandInNameSpace();
  m_tree.RemoveChildren(node);
  EXPECT_EQ(item->Tag(), nullptr);
  EXPECT_EQ(m_tree.Item("y"), nullptr);
}

TEST_F(ScopeTreeTest, references_outlive_the_tree) {
  ScopeItemPtr item;
  {
    ScopeTree tree;
    platform::SnapInDescription description;
    description.sStaticNodeType = "Servers";
    description.nodeTypes = {{"Servers", "", "Servers", 1, {}}};
    tree.Reset(description);
    item = tree.Add("Servers", "k", tree.StaticItem()->ScopeNode(), false);
  }
  item->DisplayName("still here");
  EXPECT_EQ(item->DisplayName(), "still here");
}

TEST_F(ScopeTreeTest, has_children_sets_and_removes_the_expand_mark) {
  const auto item = Add(m_root, "alpha", false);
  m_tree.Flush();
  const auto index = m_tree.index(0, 0, Root());
  EXPECT_FALSE(m_tree.hasChildren(index));
  item->ScopeNode()->HasChildren(true);
  EXPECT_TRUE(m_tree.hasChildren(index));
  item->ScopeNode()->HasChildren(false);
  EXPECT_FALSE(m_tree.hasChildren(index));
  EXPECT_FALSE(item->ScopeNode()->HasChildren());
}

TEST_F(ScopeTreeTest, expansion_goes_from_not_loaded_over_loading_to_loaded) {
  EXPECT_FALSE(m_root->ScopeNode()->ExpandedOnce());
  m_tree.BeginExpansion(*m_root);
  EXPECT_EQ(Root().data(ScopeTree::StateRole).toInt(), static_cast<int>(NodeState::Loading));
  Add(m_root, "alpha");
  m_tree.EndExpansion(*m_root, false);
  EXPECT_EQ(Root().data(ScopeTree::StateRole).toInt(), static_cast<int>(NodeState::Loaded));
  EXPECT_TRUE(m_root->ScopeNode()->ExpandedOnce());
}

TEST_F(ScopeTreeTest, failed_load_is_not_empty_and_keeps_what_came_before_the_failure) {
  m_tree.BeginExpansion(*m_root);
  Add(m_root, "alpha");
  m_tree.EndExpansion(*m_root, true);
  EXPECT_EQ(Root().data(ScopeTree::StateRole).toInt(), static_cast<int>(NodeState::Failed));
  EXPECT_EQ(Root().data(Qt::AccessibleDescriptionRole).toString(), "could not be opened");
  EXPECT_EQ(m_tree.rowCount(Root()), 1);
  // The second try begins without the leftovers of the first.
  m_tree.BeginExpansion(*m_root);
  EXPECT_EQ(m_tree.Item("alpha"), nullptr);
  Add(m_root, "alpha");
  m_tree.EndExpansion(*m_root, false);
  EXPECT_EQ(m_root->State(), NodeState::Loaded);
}

TEST_F(ScopeTreeTest, loaded_item_without_children_shows_no_expand_mark) {
  m_tree.BeginExpansion(*m_root);
  m_tree.EndExpansion(*m_root, false);
  EXPECT_FALSE(m_tree.hasChildren(Root()));
}

TEST_F(ScopeTreeTest, items_put_back_by_a_command_make_an_expanded_item_loaded_again) {
  const auto alpha = m_tree.ItemOf(Add(m_root, "alpha"));
  m_tree.Flush();
  m_tree.BeginExpansion(*alpha);
  Add(alpha, "alpha.Catalogs");
  m_tree.EndExpansion(*alpha, false);
  m_tree.RemoveChildren(alpha->ScopeNode());
  alpha->ScopeNode()->HasChildren(false);
  EXPECT_EQ(alpha->State(), NodeState::NotLoaded);
  EXPECT_TRUE(alpha->ScopeNode()->ExpandedOnce());
  Add(alpha, "alpha.Catalogs");
  EXPECT_EQ(alpha->State(), NodeState::Loaded);
}

TEST_F(ScopeTreeTest, items_added_after_a_failed_connection_make_the_item_loaded) {
  const auto alpha = m_tree.ItemOf(Add(m_root, "alpha"));
  m_tree.BeginExpansion(*alpha);
  alpha->ScopeNode()->HasChildren(false);
  m_tree.EndExpansion(*alpha, true);
  Add(alpha, "alpha.Catalogs");
  EXPECT_EQ(alpha->State(), NodeState::Loaded);
}

TEST_F(ScopeTreeTest, item_added_beside_a_failed_list_leaves_it_failed) {
  const auto catalogs = m_tree.ItemOf(Add(m_root, "alpha"));
  m_tree.BeginExpansion(*catalogs);
  m_tree.EndExpansion(*catalogs, true);
  Add(catalogs, "alpha.New");
  EXPECT_EQ(catalogs->State(), NodeState::Failed);
}

TEST_F(ScopeTreeTest, names_and_texts_that_change_are_repainted) {
  const auto item = Add(m_root, "alpha");
  m_tree.Flush();
  QSignalSpy changed(&m_tree, &QAbstractItemModel::dataChanged);
  item->DisplayName("new");
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(m_tree.index(0, 0, Root()).data().toString(), "new");
}

TEST_F(ScopeTreeTest, sub_items_are_replaced_by_position_and_a_wild_position_is_refused) {
  const auto item = Add(m_root, "alpha");
  item->ListSubItems().Add(2, "Query", "SELECT 1");
  item->ListSubItems().Add(1, "Name", "a");
  item->ListSubItems().Add(1, "Name", "b");
  EXPECT_THAT(m_tree.Find("alpha")->SubItemTexts(), testing::ElementsAre("b", "SELECT 1"));
  EXPECT_EQ(NumberOf([&] { item->ListSubItems().Add(0, "", ""); }), "9");
  EXPECT_EQ(NumberOf([&] { item->ListSubItems().Add(2'000'000'000, "", ""); }), "9");
  EXPECT_EQ(NumberOf([&] { item->ColumnHeaders().Add(-1, "", "", 1); }), "9");
}

}  // namespace
}  // namespace orvane::console
