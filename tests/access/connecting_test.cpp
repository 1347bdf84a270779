#include "access/connecting.h"

#include <gtest/gtest.h>

#include "tests/fakes/historian.h"

namespace orvane::access {
namespace {

TEST(connecting, the_string_that_lets_the_server_be_chosen) {
  EXPECT_EQ(FormConnectExString("ORVOLEDB", "S1"), "Provider = ORVOLEDB; Data Source = S1;");
}

TEST(connecting, the_string_of_a_fixed_server) {
  EXPECT_EQ(FormConnectString("ORVOLEDB", "S1", ""),
            "Provider = ORVOLEDB; Data Source = S1;Disable Server Selection = True;");
  EXPECT_EQ(FormConnectString("ORVOLEDB", "S1", "Log Level = 1;"),
            "Provider = ORVOLEDB; Data Source = S1;Disable Server Selection = True;Log Level = 1;");
}

TEST(connecting, nothing_is_quoted_or_escaped) {
  EXPECT_EQ(FormConnectExString("a;b", "c=\"d\""), "Provider = a;b; Data Source = c=\"d\";");
}

TEST(connecting, an_empty_server_keeps_its_item) {
  EXPECT_EQ(FormConnectExString("P", ""), "Provider = P; Data Source = ;");
}

TEST(connecting, no_password_is_ever_passed) {
  const auto historian = std::make_shared<fakes::FakeHistorian>();
  historian->servers = {{"S1", {}}};
  fakes::FakeObjects objects(historian);
  const auto cn = OpenWithPrompt(objects, "Data Source = S1;", "me");
  EXPECT_EQ(historian->log.back(), "Open Data Source = S1;|me||-1");
  EXPECT_EQ(DataSource(*cn), "S1");
}

}  // namespace
}  // namespace orvane::access
