#include "platform/stored_secret.h"

#include <gtest/gtest.h>

#include "platform/types.h"
#include "tests/fakes/stored_secrets.h"

namespace orvane::platform {
namespace {

TEST(stored_secret, is_found_however_it_is_written) {
  for (const auto& sText : fakes::TextsWithSecret()) EXPECT_TRUE(HoldsSecret(sText)) << sText;
}

TEST(stored_secret, is_not_seen_where_none_is) {
  for (const auto& sText : fakes::TextsWithoutSecret()) EXPECT_FALSE(HoldsSecret(sText)) << sText;
}

TEST(stored_secret, counts_also_without_a_value) {
  EXPECT_TRUE(HoldsSecret("Password=;"));
  EXPECT_TRUE(HoldsSecret("Password ="));
}

TEST(stored_secret, is_mentioned_without_an_equals_sign_as_well) {
  for (const char* const sText : {"password sw0rdfish", "PWD sw0rdfish", "Pass Word: sw0rdfish",
                                  "'pwd' sw0rdfish", "pass%77ord sw0rdfish", "a:sw0rdfish@h"}) {
    EXPECT_TRUE(MentionsSecret(sText)) << sText;
  }
  EXPECT_FALSE(MentionsSecret("junk"));
  EXPECT_FALSE(MentionsSecret(""));
}

TEST(stored_secret, is_looked_for_in_a_text_of_any_kind) {
  Text sPercents;
  for (int i = 0; i < 100000; ++i) sPercents += "%25";
  EXPECT_FALSE(HoldsSecret(sPercents));
  EXPECT_FALSE(HoldsSecret(Text(100000, '=')));
  EXPECT_FALSE(HoldsSecret(Text("\0\xFF\xC3%=", 5)));
  EXPECT_FALSE(HoldsSecret("%"));
}

}  // namespace
}  // namespace orvane::platform
