#include "nodes/keyed_list.h"

#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Failure;
using platform::Long;
using platform::Text;
using platform::Value;

using List = KeyedList<Text>;

std::shared_ptr<Text> Make(const Text& sText) {
  return std::make_shared<Text>(sText);
}

Text Order(const List& list) {
  Text sOrder;
  for (Long i = 1; i <= list.Count(); ++i) sOrder += *list.Item(i) + " ";
  return sOrder;
}

TEST(keyed_list, keeps_the_order_in_which_items_were_added) {
  List list;
  for (const char* sKey : {"pump", "Fan", "mixer"}) list.Add(sKey, Make(sKey));
  EXPECT_EQ(Order(list), "pump Fan mixer ");
  EXPECT_EQ(list.Count(), 3);
}

TEST(keyed_list, finds_a_key_without_regard_to_case) {
  List list;
  list.Add("Tag", Make("first"));
  EXPECT_EQ(*list.Item("TAG"), "first");
  EXPECT_EQ(FailureOf([&] { list.Add("tAG", Make("second")); }), 457);
  EXPECT_EQ(list.Count(), 1);
}

TEST(keyed_list, finds_a_key_without_regard_to_case_outside_ascii) {
  List list;
  list.Add("Größe", Make("de"));
  list.Add("Ένταση", Make("el"));
  list.Add("Давление", Make("ru"));
  EXPECT_EQ(*list.Item("GRÖSSE"), "de");
  EXPECT_EQ(*list.Item("ΈΝΤΑΣΗ"), "el");
  EXPECT_EQ(*list.Item("ДАВЛЕНИЕ"), "ru");
  EXPECT_EQ(FailureOf([&] { list.Add("ДАВЛЕНИЕ", Make("again")); }), 457);
}

TEST(keyed_list, a_present_key_is_refused_with_457_and_named) {
  List list;
  list.Add("Main", Make("1"));
  try {
    list.Add("MAIN", Make("2"));
    FAIL() << "the key was taken";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), 457);
    EXPECT_EQ(failure.Description(),
              "The key \"MAIN\" is already in the collection; choose another name.");
  }
  EXPECT_EQ(Order(list), "1 ");
}

TEST(keyed_list, an_absent_key_fails_with_5_and_is_named) {
  List list;
  try {
    list.Item("x");
    FAIL() << "the key was found";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), 5);
    EXPECT_EQ(failure.Description(),
              "The argument is invalid: the collection has no key \"x\"; check the name.");
  }
  EXPECT_EQ(FailureOf([&] { list.Remove("x"); }), 5);
}

TEST(keyed_list, a_position_outside_the_list_fails_with_9_and_is_named) {
  List list;
  try {
    list.Item(Long{1});
    FAIL() << "the position was found";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), 9);
    EXPECT_EQ(failure.Description(), "The position 1 is out of range; the collection is empty.");
  }
  list.Add("a", Make("a"));
  list.Add("b", Make("b"));
  try {
    list.Remove(Long{3});
    FAIL() << "the position was found";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), 9);
    EXPECT_EQ(failure.Description(),
              "The position 3 is out of range; choose a position from 1 to 2.");
  }
  EXPECT_EQ(FailureOf([&] { list.Item(Long{0}); }), 9);
  EXPECT_EQ(FailureOf([&] { list.Item(Long{-1}); }), 9);
  EXPECT_EQ(list.Count(), 2);
}

TEST(keyed_list, an_index_that_is_neither_number_nor_text_fails_with_13) {
  List list;
  list.Add("a", Make("a"));
  EXPECT_EQ(FailureOf([&] { list.Item(Value()); }), 13);
  EXPECT_EQ(FailureOf([&] { list.Remove(Value()); }), 13);
}

TEST(keyed_list, a_text_of_digits_is_a_key_and_a_number_a_position) {
  List list;
  list.Add("2", Make("first"));
  list.Add("1", Make("second"));
  EXPECT_EQ(*list.Item("2"), "first");
  EXPECT_EQ(*list.Item(Long{2}), "second");
  EXPECT_EQ(*list.Item(std::int64_t{2}), "second");
}

TEST(keyed_list, probing_gives_none_where_item_fails) {
  List list;
  EXPECT_EQ(list.Probe("x"), nullptr);
  EXPECT_EQ(list.Probe(Long{1}), nullptr);
  EXPECT_EQ(list.Probe(Value()), nullptr);
  list.Add("x", Make("found"));
  EXPECT_EQ(*list.Probe("X"), "found");
  EXPECT_EQ(*list.Probe(Long{1}), "found");
}

TEST(keyed_list, inserts_before_a_position) {
  List list;
  list.Add("a", Make("a"));
  list.Add("b", Make("b"));
  list.Insert("c", Make("c"), 2);
  list.Insert("d", Make("d"), 1);
  EXPECT_EQ(Order(list), "d a c b ");
  EXPECT_EQ(FailureOf([&] { list.Insert("e", Make("e"), 0); }), 9);
  EXPECT_EQ(FailureOf([&] { list.Insert("e", Make("e"), 5); }), 9);
  EXPECT_EQ(FailureOf([&] { list.Insert("A", Make("e"), 1); }), 457);
  EXPECT_EQ(Order(list), "d a c b ");
}

TEST(keyed_list, removes_by_position_and_by_key_and_frees_the_key) {
  List list;
  for (const char* sKey : {"a", "b", "c"}) list.Add(sKey, Make(sKey));
  EXPECT_EQ(*list.Remove(Long{1}), "a");
  EXPECT_EQ(*list.Remove("C"), "c");
  EXPECT_EQ(Order(list), "b ");
  list.Add("A", Make("new"));
  EXPECT_EQ(Order(list), "b new ");
  EXPECT_EQ(*list.Item("a"), "new");
}

TEST(keyed_list, finds_every_item_of_a_long_list_after_many_removals) {
  List list;
  for (int i = 0; i < 5000; ++i) list.Add("key" + std::to_string(i), Make(std::to_string(i)));
  for (int i = 0; i < 5000; i += 2) list.Remove("KEY" + std::to_string(i));
  ASSERT_EQ(list.Count(), 2500);
  for (int i = 1; i < 5000; i += 2) {
    EXPECT_EQ(*list.Item("key" + std::to_string(i)), std::to_string(i));
    EXPECT_EQ(*list.Item(Long{(i + 1) / 2}), std::to_string(i));
  }
}

TEST(keyed_list, an_item_that_is_none_is_refused_with_91_and_leaves_its_key_free) {
  List list;
  EXPECT_EQ(FailureOf([&] { list.Add("a", nullptr); }), 91);
  list.Add("b", Make("b"));
  EXPECT_EQ(FailureOf([&] { list.Insert("a", nullptr, 1); }), 91);
  list.Add("a", Make("a"));
  EXPECT_EQ(Order(list), "b a ");
}

TEST(keyed_list, a_failed_filing_leaves_key_and_order_as_they_were) {
  List list;
  for (const char* sKey : {"a", "b"}) list.Add(sKey, Make(sKey));
  EXPECT_EQ(FailureOf([&] { list.Insert("B", Make("other"), 1); }), 457);
  EXPECT_EQ(FailureOf([&] { list.Insert("c", Make("c"), 3); }), 9);
  EXPECT_EQ(list.Probe("c"), nullptr);
  EXPECT_EQ(*list.Item("b"), "b");
  EXPECT_EQ(Order(list), "a b ");
}

TEST(keyed_list, a_long_list_is_filled_and_emptied_from_its_front) {
  constexpr int kItems = 100'000;
  List list;
  const auto item = Make("x");
  list.Add("0", item);
  for (int i = 1; i < kItems; ++i) list.Insert(std::to_string(i), item, 1);
  ASSERT_EQ(list.Count(), kItems);
  for (int i = 0; i < kItems; i += 2) list.Remove(std::to_string(i));
  ASSERT_EQ(list.Count(), kItems / 2);
  while (list.Count() > 0) list.Remove(Long{1});
  EXPECT_EQ(list.Probe("1"), nullptr);
}

}  // namespace
}  // namespace orvane::nodes
