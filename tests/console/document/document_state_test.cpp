#include "console/document/document_state.h"

#include <gtest/gtest.h>

#include "tests/console/fake_objects.h"

namespace orvane::console {
namespace {

using platform::Long;
using platform::Text;

const Text kOptions =
    "Log File = ;Log Level = 0;Identifier Prefixes = False;Time as Double = False;"
    "Time Zone = Local;Historians By GUID = False;";
const Text kOtherOptions =
    "Log File = x;Log Level = 1;Identifier Prefixes = True;Time as Double = False;"
    "Time Zone = UTC;Historians By GUID = False;";

/// Whether a document with the first text under a name counts as changed with the second one.
bool Differs(const Text& sBase, const Text& sNow, const std::vector<Text>& optionTexts) {
  DocumentBag base;
  base.WriteProperty("ExtendedOptions", sBase);
  DocumentBag now;
  now.WriteProperty("ExtendedOptions", sNow);
  DocumentState state;
  state.Rebase(base);
  return state.IsModified(now, optionTexts);
}

TEST(document_state, is_unmodified_while_a_save_would_write_the_same) {
  DocumentBag bag(CreateFakeObject);
  bag.WriteProperty("a", Long{1});
  bag.WriteProperty("o", std::make_shared<FakeObject>("state"));
  DocumentState state;
  state.Rebase(bag);
  EXPECT_FALSE(state.IsModified(bag, {}));
}

TEST(document_state, is_modified_by_a_changed_added_or_removed_property) {
  DocumentBag base;
  base.WriteProperty("a", Long{1});
  DocumentState state;
  state.Rebase(base);
  DocumentBag changed;
  changed.WriteProperty("a", Long{2});
  EXPECT_TRUE(state.IsModified(changed, {}));
  DocumentBag retyped;
  retyped.WriteProperty("a", true);
  EXPECT_TRUE(state.IsModified(retyped, {}));
  DocumentBag renamed;
  renamed.WriteProperty("b", Long{1});
  EXPECT_TRUE(state.IsModified(renamed, {}));
  base.WriteProperty("b", Long{1});
  EXPECT_TRUE(state.IsModified(base, {}));
  EXPECT_TRUE(state.IsModified(DocumentBag(), {}));
}

TEST(document_state, is_modified_by_an_object_of_another_state) {
  DocumentBag base;
  base.WriteProperty("o", std::make_shared<FakeObject>("before"));
  DocumentBag now;
  now.WriteProperty("o", std::make_shared<FakeObject>("after"));
  DocumentState state;
  state.Rebase(base);
  EXPECT_TRUE(state.IsModified(now, {}));
}

TEST(document_state, is_modified_by_a_changed_text) {
  EXPECT_TRUE(Differs("before", "after", {}));
  EXPECT_FALSE(Differs("same", "same", {}));
}

TEST(document_state, what_is_written_is_what_a_bag_would_hold) {
  DocumentBag bag(CreateFakeObject);
  SaveSnapshot snapshot;
  for (platform::PropertyBag* pb : {static_cast<platform::PropertyBag*>(&bag),
                                    static_cast<platform::PropertyBag*>(&snapshot)}) {
    pb->WriteProperty("twice", Long{1});
    pb->WriteProperty("twice", Long{2});
    pb->WriteProperty("became text", true);
    pb->WriteProperty("became text", "text");
    pb->WriteProperty("was text", "text");
    pb->WriteProperty("was text", false);
    pb->WriteProperty("gone", Long{1});
    pb->WriteProperty("gone", Long{5}, Long{5});
    pb->WriteProperty("gone text", "text");
    pb->WriteProperty("gone text", Long{5}, Long{5});
    pb->WriteProperty("o", std::make_shared<FakeObject>("state"));
    pb->WriteProperty("zero", Long{0});
  }
  DocumentState state;
  state.Rebase(bag);
  EXPECT_FALSE(state.IsModified(snapshot, {}));
  bag.WriteProperty("zero", false);
  EXPECT_TRUE(state.IsModified(bag, {}));
}

TEST(document_state, a_snapshot_refuses_what_a_bag_refuses) {
  SaveSnapshot snapshot;
  EXPECT_EQ(NumberOf([&] { snapshot.WriteProperty("a", 1.5); }), 13);
  EXPECT_EQ(NumberOf([&] { snapshot.WriteProperty("\xFF", true); }), 5);
  EXPECT_EQ(snapshot.ReadProperty("a", Long{7}), platform::Value(Long{7}));
}

TEST(document_state, a_rebase_makes_the_present_state_unmodified) {
  DocumentBag base;
  DocumentBag now;
  now.WriteProperty("a", Long{1});
  DocumentState state;
  state.Rebase(base);
  EXPECT_TRUE(state.IsModified(now, {}));
  state.Rebase(now);
  EXPECT_FALSE(state.IsModified(now, {}));
}

TEST(document_state, a_mere_connection_is_no_change) {
  EXPECT_FALSE(Differs("", kOptions, {kOptions}));
  EXPECT_FALSE(Differs("X=1;", "X=1;" + kOptions, {kOptions}));
  EXPECT_FALSE(Differs(kOptions, kOptions + kOptions, {kOptions}));
}

TEST(document_state, a_mere_disconnection_is_no_change) {
  EXPECT_FALSE(Differs("X=1;" + kOptions, "X=1;", {kOptions}));
}

TEST(document_state, another_connection_with_other_options_is_no_change) {
  EXPECT_FALSE(Differs(kOptions, kOtherOptions, {kOptions, kOtherOptions}));
}

TEST(document_state, option_texts_of_no_connection_of_this_session_are_a_change) {
  EXPECT_TRUE(Differs("", kOptions, {}));
  EXPECT_TRUE(Differs("", kOptions, {kOtherOptions}));
  EXPECT_TRUE(Differs("", kOptions, {""}));
}

TEST(document_state, option_texts_elsewhere_than_at_the_end_are_a_change) {
  EXPECT_TRUE(Differs("X=1;", kOptions + "X=1;", {kOptions}));
}

TEST(document_state, a_change_beside_a_connection_is_a_change) {
  EXPECT_TRUE(Differs("X=1;", "X=2;" + kOptions, {kOptions}));
}

}  // namespace
}  // namespace orvane::console
