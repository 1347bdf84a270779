#include "ado/connection_properties.h"

#include <gtest/gtest.h>

#include "tests/ado/connection_fakes.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::Text;
using platform::Value;
using tests::FailureOf;
using tests::kString;
using tests::Told;
namespace failure = platform::failure;

class ConnectionPropertiesTest : public tests::ConnectionUnderTest {
 protected:
  std::vector<Text> Names() {
    std::vector<Text> names;
    for (platform::Long i = 0; i < cn->Properties().Count(); ++i) {
      names.push_back(cn->Properties().Item(i).Name());
    }
    return names;
  }
};

const std::vector<Text> kGeneral = {"Prompt", "Data Source", "User ID", "Provider Name"};
const std::vector<Text> kAll = {"Prompt",        "Data Source", "User ID",
                                "Provider Name", "Log Level",   "Time Zone"};

TEST_F(ConnectionPropertiesTest, a_fresh_connection_has_the_general_ones) {
  EXPECT_EQ(Names(), kGeneral);
  EXPECT_TRUE(Property("Prompt") == Value(4));
  EXPECT_TRUE(Property("Data Source") == Value(""));
}

TEST_F(ConnectionPropertiesTest, the_providers_own_join_in_their_order_once_it_is_named) {
  cn->ConnectionString(kString);
  EXPECT_EQ(Names(), kAll);
  EXPECT_TRUE(Property("Data Source") == Value("S1"));
  EXPECT_TRUE(Property("Log Level") == Value(3));
}

TEST_F(ConnectionPropertiesTest, another_provider_takes_the_former_ones_properties_away) {
  cn->ConnectionString(kString);
  platform::Property& property = cn->Properties().Item("Log Level");
  cn->ConnectionString("Provider = OTHER;");
  EXPECT_EQ(Names(), kGeneral);
  // The reference lives as long as the connection all the same.
  EXPECT_EQ(property.Name(), "Log Level");
}

TEST_F(ConnectionPropertiesTest, a_reference_stays_the_property_when_the_connection_opens) {
  cn->ConnectionString(kString);
  platform::Property& property = cn->Properties().Item("Log Level");
  Open();
  EXPECT_EQ(&cn->Properties().Item("Log Level"), &property);
  EXPECT_TRUE(property.Value() == Value(0));
}

TEST_F(ConnectionPropertiesTest, are_found_without_regard_to_case) {
  Open();
  EXPECT_EQ(cn->Properties().Item("DATA source").Name(), "Data Source");
  EXPECT_EQ(cn->Properties().Item("time ZONE").Name(), "Time Zone");
}

TEST_F(ConnectionPropertiesTest, tell_which_one_is_missing) {
  Open();
  EXPECT_EQ(FailureOf([&] { cn->Properties().Item("Historians By GUID"); }),
            (Told{failure::kItemNotFound,
                  "The connection has no property \"Historians By GUID\"; check its name and the "
                  "provider."}));
  EXPECT_EQ(FailureOf([&] { cn->Properties().Item(6); }),
            (Told{failure::kItemNotFound,
                  "The connection has no property number 6: it has 6 of them, counted from 0."}));
  EXPECT_EQ(FailureOf([&] { cn->Properties().Item(-1); }).lNumber, failure::kItemNotFound);
}

TEST_F(ConnectionPropertiesTest, have_the_sessions_values_while_open) {
  Open();
  EXPECT_TRUE(Property("Log Level") == Value(0));
  EXPECT_TRUE(Property("Time Zone") == Value("Local"));
  EXPECT_TRUE(Property("Provider Name") == Value("ORVOLEDB"));
  Property("Log Level", 2);
  EXPECT_TRUE(journal.values.at("Log Level") == Value(2));
}

TEST_F(ConnectionPropertiesTest, set_before_open_go_to_the_provider) {
  cn->ConnectionString(kString);
  Property("Log Level", 9);
  Property("Data Source", "S1");
  Open("");
  EXPECT_EQ(Opened("Log Level"), "9");
}

TEST_F(ConnectionPropertiesTest, named_in_the_string_have_its_values) {
  cn->ConnectionString(Text(kString) + "Log Level = 1;Log Level = 2;");
  EXPECT_TRUE(Property("Log Level") == Value("2"));
  cn->ConnectionString(kString);
  EXPECT_TRUE(Property("Log Level") == Value(3));
}

TEST_F(ConnectionPropertiesTest, the_string_goes_before_what_was_set_by_hand) {
  cn->ConnectionString(kString);
  Property("Log Level", 9);
  Property("Data Source", "S9");
  Open(Text(kString) + "Log Level = 1;");
  EXPECT_EQ(Opened("Log Level"), "1");
  EXPECT_EQ(Opened("Data Source"), "S1");
}

TEST_F(ConnectionPropertiesTest, data_source_set_by_hand_serves_a_string_without_one) {
  Property("Data Source", "S3");
  Property("User ID", "ann");
  Open("Provider = ORVOLEDB;");
  EXPECT_EQ(Opened("Data Source"), "S3");
  EXPECT_EQ(Opened("User ID"), "ann");
}

TEST_F(ConnectionPropertiesTest, prompt_takes_the_numbers_1_to_4) {
  Property("Prompt", "1");
  EXPECT_TRUE(Property("Prompt") == Value(1));
  for (const Value& vtValue : {Value(0), Value(5)}) {
    EXPECT_EQ(FailureOf([&] { Property("Prompt", vtValue); }).lNumber, failure::kTypeMismatch);
  }
  EXPECT_EQ(FailureOf([&] { Property("Prompt", 5); }).sSentence,
            "The property \"Prompt\" takes a number from 1 to 4, not 5.");
  EXPECT_EQ(FailureOf([&] { Property("Prompt", "always"); }).lNumber, failure::kTypeMismatch);
  EXPECT_EQ(FailureOf([&] { Property("Prompt", {}); }).lNumber, failure::kTypeMismatch);
  EXPECT_TRUE(Property("Prompt") == Value(1));
}

TEST_F(ConnectionPropertiesTest, server_and_user_cannot_be_set_while_open) {
  Open();
  EXPECT_EQ(FailureOf([&] { Property("Data Source", "S2"); }),
            (Told{failure::kObjectOpen,
                  "The property \"Data Source\" cannot be set while the connection is open: close "
                  "it first."}));
  EXPECT_EQ(FailureOf([&] { Property("User ID", "x"); }).lNumber, failure::kObjectOpen);
  EXPECT_TRUE(Property("Data Source") == Value("S1"));
}

TEST_F(ConnectionPropertiesTest, the_providers_name_cannot_be_set) {
  EXPECT_EQ(FailureOf([&] { Property("Provider Name", "x"); }),
            (Told{failure::kNotSupported,
                  "The property \"Provider Name\" can be read, but not set; leave it as it is."}));
  cn->ConnectionString(Text(kString) + "Provider Name = x;");
  EXPECT_TRUE(Property("Provider Name") == Value(""));
}

TEST_F(ConnectionPropertiesTest, a_general_property_that_a_provider_lists_too_is_there_once) {
  provider->properties.insert(provider->properties.begin(), {"data source", "x"});
  cn->ConnectionString(kString);
  EXPECT_EQ(Names(), kAll);
  EXPECT_TRUE(Property("Data Source") == Value("S1"));
}

TEST_F(ConnectionPropertiesTest, can_be_read_after_the_connection_was_closed) {
  Open();
  cn->Close();
  EXPECT_TRUE(Property("Data Source") == Value("S1"));
  EXPECT_TRUE(Property("Log Level") == Value(3));
}

}  // namespace
}  // namespace orvane::ado
