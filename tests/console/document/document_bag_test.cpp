#include "console/document/document_bag.h"

#include <gtest/gtest.h>

#include "tests/console/fake_objects.h"

namespace orvane::console {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

TEST(document_bag, gives_back_what_was_written) {
  DocumentBag bag(CreateFakeObject);
  bag.WriteProperty("b", true);
  bag.WriteProperty("l", Long{-2147483647 - 1});
  bag.WriteProperty("t", "text");
  bag.WriteProperty("o", std::make_shared<FakeObject>("state"));
  EXPECT_EQ(bag.ReadProperty("b", false), Value(true));
  EXPECT_EQ(bag.ReadProperty("l", Long{0}), Value(Long{-2147483647 - 1}));
  EXPECT_EQ(bag.ReadProperty("t", ""), Value("text"));
  EXPECT_EQ(StateOf(bag, "o"), "state");
}

TEST(document_bag, gives_the_default_for_an_absent_name) {
  const DocumentBag bag;
  EXPECT_EQ(bag.ReadProperty("absent", Long{60}), Value(Long{60}));
  const auto object = std::make_shared<FakeObject>();
  EXPECT_EQ(bag.ReadProperty("absent", object), Value(object));
}

TEST(document_bag, replaces_an_earlier_value_of_any_kind_in_its_place) {
  DocumentBag bag;
  bag.WriteProperty("first", "text");
  bag.WriteProperty("second", true);
  bag.WriteProperty("first", Long{1});
  EXPECT_EQ(bag.ReadProperty("first", {}), Value(Long{1}));
  ASSERT_EQ(bag.Count(), 2U);
  EXPECT_EQ(bag.Entries().front().sName, "first");
}

TEST(document_bag, names_are_told_apart_by_case) {
  DocumentBag bag;
  bag.WriteProperty("Name", "upper");
  bag.WriteProperty("name", "lower");
  EXPECT_EQ(bag.ReadProperty("Name", {}), Value("upper"));
}

TEST(document_bag, does_not_store_a_value_equal_to_its_default) {
  DocumentBag bag;
  bag.WriteProperty("kept", "other", "default");
  bag.WriteProperty("left out", "default", "default");
  bag.WriteProperty("taken out", "other");
  bag.WriteProperty("taken out", "default", "default");
  EXPECT_EQ(bag.Count(), 1U);
  EXPECT_NE(bag.Find("kept"), nullptr);
}

TEST(document_bag, refuses_values_of_other_kinds_with_13) {
  DocumentBag bag;
  for (const Value& vtValue :
       {Value(), Value(1.5), Value(std::int64_t{1}), Value(platform::Bytes{}),
        Value(platform::ObjectPtr()), Value(std::make_shared<platform::Object>())}) {
    EXPECT_EQ(NumberOf([&] { bag.WriteProperty("name", vtValue); }), failure::kTypeMismatch);
  }
  EXPECT_EQ(bag.Count(), 0U);
}

TEST(document_bag, refuses_a_name_that_is_not_utf8_with_5) {
  DocumentBag bag;
  EXPECT_EQ(NumberOf([&] { bag.WriteProperty("\xC3", true); }), failure::kInvalidArgument);
}

TEST(document_bag, asks_an_object_for_its_state_at_once) {
  DocumentBag bag(CreateFakeObject);
  const auto object = std::make_shared<FakeObject>("then");
  bag.WriteProperty("o", object);
  object->ReadState("later");
  EXPECT_EQ(StateOf(bag, "o"), "then");
}

TEST(document_bag, creates_an_object_anew_at_every_read) {
  DocumentBag bag(CreateFakeObject);
  bag.WriteProperty("o", std::make_shared<FakeObject>("state"));
  EXPECT_NE(bag.ReadProperty("o", {}), bag.ReadProperty("o", {}));
}

TEST(document_bag, names_the_class_of_an_object_that_cannot_be_created) {
  DocumentBag bag(CreateFakeObject);
  bag.Add("o", StoredObject{"Nobody.Knows", ""});
  const auto read = [&] { bag.ReadProperty("o", {}); };
  EXPECT_EQ(NumberOf(read), failure::kComponent);
  EXPECT_NE(SentenceOf(read).find("Nobody.Knows"), Text::npos);
}

TEST(document_bag, passes_on_the_failure_of_an_object_that_refuses_its_state) {
  DocumentBag bag(CreateFakeObject);
  bag.Add("o", StoredObject{"Test.Object", "refused"});
  EXPECT_EQ(SentenceOf([&] { bag.ReadProperty("o", {}); }), "That is no state.");
}

TEST(document_bag, adds_no_name_twice) {
  DocumentBag bag;
  EXPECT_TRUE(bag.Add("name", true));
  EXPECT_FALSE(bag.Add("name", false));
  EXPECT_EQ(bag.ReadProperty("name", {}), Value(true));
  EXPECT_EQ(bag.Count(), 1U);
}

}  // namespace
}  // namespace orvane::console
