#include "access/saved_options.h"

#include <gtest/gtest.h>

#include "tests/fakes/historian.h"

namespace orvane::access {
namespace {

using platform::Text;

class saved_options : public testing::Test {
 protected:
  fakes::FakeHistorianPtr historian = std::make_shared<fakes::FakeHistorian>();
  platform::ConnectionPtr cn = std::make_shared<fakes::FakeConnection>(historian);
  const Text sSix =
      "Log File = orv.log;Log Level = 2;Identifier Prefixes = False;Time as Double = True;"
      "Time Zone = ;Historians By GUID = False;";
};

TEST_F(saved_options, without_a_connection_are_the_stored_ones) {
  EXPECT_EQ(FormExtendedOptions("", nullptr), "");
  EXPECT_EQ(FormExtendedOptions("X=1", nullptr), "X=1");
}

TEST_F(saved_options, of_a_connection_are_six_items_in_their_order) {
  EXPECT_EQ(FormExtendedOptions("", cn), sSix);
}

TEST_F(saved_options, go_directly_behind_the_stored_ones) {
  EXPECT_EQ(FormExtendedOptions("X=1;", cn), "X=1;" + sSix);
}

TEST_F(saved_options, accumulate) {
  EXPECT_EQ(FormExtendedOptions(sSix, cn), sSix + sSix);
}

TEST_F(saved_options, that_are_null_have_nothing_behind_the_sign) {
  for (auto& [sName, vtValue] : historian->options) vtValue = platform::Value();
  EXPECT_EQ(FormExtendedOptions("", cn),
            "Log File = ;Log Level = ;Identifier Prefixes = ;Time as Double = ;Time Zone = ;"
            "Historians By GUID = ;");
}

TEST_F(saved_options, that_the_provider_lacks_fail_as_the_provider_does) {
  historian->options.pop_back();
  try {
    FormExtendedOptions("", cn);
    FAIL() << "the property was found";
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), 3265);
  }
}

}  // namespace
}  // namespace orvane::access
