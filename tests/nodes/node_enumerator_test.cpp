#include "nodes/node_enumerator.h"

#include <functional>

#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;
using platform::Text;

using List = KeyedList<Text>;

std::shared_ptr<Text> MakeItem(const Text& sText) {
  return std::make_shared<Text>(sText);
}

TEST(node_enumerator, walks_in_list_order_and_ends_with_none) {
  const auto list = std::make_shared<List>();
  list->Add("b", MakeItem("b"));
  list->Add("a", MakeItem("a"));
  NodeEnumerator<Text> walk(list);
  EXPECT_EQ(*walk.Next(), "b");
  EXPECT_EQ(*walk.Next(), "a");
  EXPECT_EQ(walk.Next(), nullptr);
  EXPECT_EQ(walk.Next(), nullptr);
}

TEST(node_enumerator, the_end_of_the_list_does_not_end_its_walk) {
  auto list = std::make_shared<List>();
  for (const char* sKey : {"a", "b"}) list->Add(sKey, MakeItem(sKey));
  NodeEnumerator<Text> walk(list);
  EXPECT_EQ(*walk.Next(), "a");
  list.reset();
  EXPECT_EQ(*walk.Next(), "b");
  EXPECT_EQ(walk.Next(), nullptr);
}

/// What a walk visits while this is done at each item.
Text Visited(const std::shared_ptr<List>& list, const std::function<void(const Text&)>& at) {
  Text sVisited;
  for (const auto& item : NodeEnumerator<Text>(list)) {
    sVisited += *item + " ";
    at(*item);
  }
  return sVisited;
}

std::shared_ptr<List> Letters(const Text& sLetters) {
  auto list = std::make_shared<List>();
  for (const char c : sLetters) list->Add(Text(1, c), MakeItem(Text(1, c)));
  return list;
}

TEST(node_enumerator, visits_all_when_each_visited_one_is_removed) {
  const auto list = Letters("abcd");
  EXPECT_EQ(Visited(list, [&](const Text& sKey) { list->Remove(sKey); }), "a b c d ");
  EXPECT_EQ(list->Count(), 0);
}

TEST(node_enumerator, goes_on_behind_a_visited_one_that_went_with_those_before_it) {
  const auto list = Letters("abcd");
  EXPECT_EQ(Visited(list,
                    [&](const Text& sKey) {
                      if (sKey != "c") return;
                      for (const char* sGone : {"b", "c", "a"}) list->Remove(sGone);
                    }),
            "a b c d ");
}

TEST(node_enumerator, passes_by_those_removed_before_they_are_reached) {
  const auto list = Letters("abcd");
  EXPECT_EQ(Visited(list,
                    [&](const Text& sKey) {
                      if (sKey == "a") list->Remove("b");
                      if (sKey == "c") list->Remove("d");
                    }),
            "a c ");
}

TEST(node_enumerator, visits_those_that_are_added_before_they_are_reached) {
  const auto list = Letters("ab");
  EXPECT_EQ(Visited(list,
                    [&](const Text& sKey) {
                      if (sKey != "a") return;
                      list->Insert("x", MakeItem("x"), 1);
                      list->Insert("y", MakeItem("y"), 3);
                      list->Add("z", MakeItem("z"));
                    }),
            "a y b z ");
}

TEST(node_enumerator, visits_one_that_is_put_back_at_its_place_once) {
  const auto list = Letters("abc");
  EXPECT_EQ(Visited(list,
                    [&](const Text& sKey) {
                      const auto item = list->Remove(sKey);
                      const Long lPlace = sKey == "a" ? 1 : sKey == "b" ? 2 : 3;
                      if (lPlace > list->Count()) return list->Add(sKey, item);
                      list->Insert(sKey, item, lPlace);
                    }),
            "a b c ");
}

TEST(node_enumerator, walks_do_not_disturb_each_other) {
  const auto list = Letters("abc");
  NodeEnumerator<Text> outer(list);
  EXPECT_EQ(*outer.Next(), "a");
  {
    NodeEnumerator<Text> inner(list);
    EXPECT_EQ(*inner.Next(), "a");
    EXPECT_EQ(*inner.Next(), "b");
    list->Remove("a");
    EXPECT_EQ(*outer.Next(), "b");
    list->Remove("b");
    EXPECT_EQ(*inner.Next(), "c");
  }
  EXPECT_EQ(*outer.Next(), "c");
}

}  // namespace
}  // namespace orvane::nodes
