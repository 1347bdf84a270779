#include "ado/connection_settings.h"

#include <gtest/gtest.h>

#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::Text;
using tests::FailureOf;
using tests::Told;
using Items = std::vector<std::pair<platform::Text, platform::Text>>;

Items Read(std::string_view sConnectionString) {
  return ConnectionSettings::Parse(sConnectionString).Items();
}

TEST(ConnectionSettings, reads_strings_as_they_are_written) {
  const std::vector<std::pair<std::string_view, Items>> cases = {
      {"", {}},
      {" ;; ; ", {}},
      {"Provider = ORVOLEDB; Data Source = S1;", {{"Provider", "ORVOLEDB"}, {"Data Source", "S1"}}},
      {"Provider = ORVOLEDB; Data Source = ;", {{"Provider", "ORVOLEDB"}, {"Data Source", ""}}},
      {"Provider = ORVOLEDB; Data Source = S1;Disable Server Selection = True;Log File = ;"
       "Log Level = 0;",
       {{"Provider", "ORVOLEDB"},
        {"Data Source", "S1"},
        {"Disable Server Selection", "True"},
        {"Log File", ""},
        {"Log Level", "0"}}},
      {"a=1;b=2", {{"a", "1"}, {"b", "2"}}},
      {"\ta \t=\r\n 1 1 \n;", {{"a", "1 1"}}},
      {"a=b=c;", {{"a", "b=c"}}},
      {"a = = ;", {{"a", "="}}},
      {"a = \"x\";b='y'", {{"a", "\"x\""}, {"b", "'y'"}}},
      {"Data Source = postgresql://host/db;", {{"Data Source", "postgresql://host/db"}}},
      {"Zeit = größer;名前 = 温度", {{"Zeit", "größer"}, {"名前", "温度"}}},
      {"a=1;A=2;a=3", {{"a", "1"}, {"A", "2"}, {"a", "3"}}},
  };
  for (const auto& [sString, items] : cases) EXPECT_EQ(Read(sString), items) << sString;
}

TEST(ConnectionSettings, later_items_override_earlier_ones_of_that_name) {
  const auto settings = ConnectionSettings::Parse("Log Level = 1;Data Source = S;LOG LEVEL = 2;");
  EXPECT_EQ(settings.Find("Log Level"), "2");
  EXPECT_EQ(settings.Find("log level"), "2");
}

TEST(ConnectionSettings, a_later_empty_item_overrides_too) {
  EXPECT_EQ(ConnectionSettings::Parse("Log File = x;Log File = ;").Find("Log File"), "");
}

TEST(ConnectionSettings, twelve_accumulated_options_mean_the_newest_six) {
  const auto settings = ConnectionSettings::Parse(
      "Log File = a;Log Level = 1;Identifier Prefixes = False;Time as Double = False;"
      "Time Zone = UTC;Historians By GUID = False;"
      "Log File = b;Log Level = 2;Identifier Prefixes = True;Time as Double = True;"
      "Time Zone = Local;Historians By GUID = True;");
  EXPECT_EQ(settings.Items().size(), 12U);
  EXPECT_EQ(settings.Find("Log File"), "b");
  EXPECT_EQ(settings.Find("Historians By GUID"), "True");
}

TEST(ConnectionSettings, an_absent_name_has_no_value) {
  EXPECT_EQ(ConnectionSettings::Parse("a=1").Find("b"), std::nullopt);
}

TEST(ConnectionSettings, set_replaces_the_value_that_counts_or_appends) {
  auto settings = ConnectionSettings::Parse("a=1;A=2");
  settings.Set("a", "3");
  settings.Set("b", "4");
  EXPECT_EQ(settings.Items(), (Items{{"a", "1"}, {"A", "3"}, {"b", "4"}}));
  EXPECT_EQ(settings.Find("a"), "3");
}

TEST(ConnectionSettings, refuses_an_item_without_an_equals_sign) {
  EXPECT_EQ(FailureOf([] { ConnectionSettings::Parse("a=1; junk ;b=2"); }),
            (Told{platform::failure::kInvalidArgument,
                  "The connection string has an item without \"=\": \"junk\"; write it as "
                  "\"Name = value;\"."}));
}

TEST(ConnectionSettings, repeats_no_item_that_looks_like_a_password) {
  for (const char* const sString :
       {"a=1;password secret;", "PWD secret", "a=1; Pass Word: secret ;b=2", "'pwd' secret",
        "anna:secret@h", "a=1; pass%77ord secret"}) {
    EXPECT_EQ(FailureOf([&] { ConnectionSettings::Parse(sString); }),
              (Told{platform::failure::kInvalidArgument,
                    "The connection string has an item without \"=\" that looks like a password: "
                    "leave it out and type the password in the logon dialog."}))
        << sString;
  }
}

TEST(ConnectionSettings, repeats_a_refused_item_on_one_line_and_not_all_of_a_long_one) {
  const auto told = FailureOf([] { ConnectionSettings::Parse("a\nb" + Text(1000, 'x')); });
  EXPECT_EQ(told.sSentence, "The connection string has an item without \"=\": \"a\\nb" +
                                Text(97, 'x') + "...\"; write it as \"Name = value;\".");
}

TEST(ConnectionSettings, refuses_an_item_without_a_name) {
  EXPECT_EQ(FailureOf([] { ConnectionSettings::Parse("a=1; = 2;"); }),
            (Told{platform::failure::kInvalidArgument,
                  "The connection string has an item without a name before \"=\"; write it as "
                  "\"Name = value;\"."}));
}

}  // namespace
}  // namespace orvane::ado
