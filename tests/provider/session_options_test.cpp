#include "provider/session_options.h"

#include <gtest/gtest.h>

#include "tests/fakes/stored_secrets.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider {
namespace {

using platform::Text;
using platform::Value;

Text AllAsText(const SessionOptions& options) {
  Text sAll;
  for (const auto& description : SessionOptions::Descriptions()) {
    sAll += description.sName + " = " + platform::ToText(options.Get(description.sName)) + ";";
  }
  return sAll;
}

TEST(session_options, are_six_in_the_published_order_with_their_initial_values) {
  EXPECT_EQ(AllAsText({}),
            "Log File = ;Log Level = 0;Identifier Prefixes = False;Time as Double = False;Time "
            "Zone = Local;Historians By GUID = False;");
  const auto descriptions = SessionOptions::Descriptions();
  ASSERT_EQ(descriptions.size(), 6U);
  EXPECT_EQ(descriptions[0].vtInitial, Value(""));
  EXPECT_EQ(descriptions[1].vtInitial, Value(0));
  EXPECT_EQ(descriptions[2].vtInitial, Value(false));
  EXPECT_EQ(descriptions[4].vtInitial, Value("Local"));
}

TEST(session_options, read_back_what_they_are_written_as) {
  const Text sAll =
      "Log File = /tmp/a log.txt;Log Level = 2;Identifier Prefixes = True;Time as Double = True;"
      "Time Zone = Europe/Berlin;Historians By GUID = True;";
  SessionOptions options;
  options.SetAll(ado::ConnectionSettings::Parse("Provider = ORVOLEDB; Data Source = x;" + sAll));
  EXPECT_EQ(AllAsText(options), sAll);
}

TEST(session_options, take_the_last_of_many_values) {
  SessionOptions options;
  options.SetAll(ado::ConnectionSettings::Parse(
      "Log Level = 1;Time Zone = UTC;log level = 3;Time Zone = ;Time as Double = True;Time as "
      "Double = False;"));
  EXPECT_EQ(options.LogLevel(), 3);
  EXPECT_EQ(options.TimeZone().Name(), "Local");
  EXPECT_FALSE(options.TimeAsDouble());
}

TEST(session_options, look_at_the_last_of_many_values_only) {
  SessionOptions options;
  options.SetAll(ado::ConnectionSettings::Parse(
      "Log Level = many;Time Zone = Nowhere;Log File = here;LOG LEVEL = 1;Time Zone = UTC;Log File "
      "= /x;"));
  EXPECT_EQ(options.LogLevel(), 1);
  EXPECT_EQ(options.TimeZone().Name(), "UTC");
  EXPECT_EQ(options.LogFile(), "/x");
}

TEST(session_options, take_null_and_the_empty_text_for_the_initial_value) {
  for (const Value& vtEmpty : {Value(), Value("")}) {
    SessionOptions options;
    options.SetAll(ado::ConnectionSettings::Parse(
        "Log File = /x;Log Level = 2;Identifier Prefixes = True;Time as Double = True;Time Zone = "
        "UTC;Historians By GUID = True;"));
    for (const auto& description : SessionOptions::Descriptions()) {
      options.Set(description.sName, vtEmpty);
    }
    EXPECT_EQ(AllAsText(options), AllAsText({}));
  }
}

TEST(session_options, hold_no_password) {
  for (const Text& sText : fakes::TextsWithSecret()) {
    SessionOptions options;
    EXPECT_EQ(FailureOf([&] { options.Set("Time Zone", sText); }),
              "5: \"Time Zone\" must not hold a password: take it out of the server's extended "
              "options and type it in the logon dialog.");
  }
}

TEST(session_options, refuse_what_they_cannot_be_and_stay_as_they_were) {
  SessionOptions options;
  options.Set("Log Level", 2);
  const auto failure = [&](const Text& sName, const Value& vtValue) {
    return FailureOf([&] { options.Set(sName, vtValue); });
  };
  for (const Value& vtLevel : {Value(-1), Value(4), Value("two")}) {
    EXPECT_EQ(failure("Log Level", vtLevel),
              "5: \"Log Level\" is a number from 0 to 3; write one into the server's extended "
              "options.");
  }
  EXPECT_EQ(failure("Time as Double", "perhaps"),
            "5: \"Time as Double\" is either True or False; write one of them into the server's "
            "extended options.");
  EXPECT_EQ(failure("Log File", "log.txt"),
            "5: The path \"log.txt\" of the log file is not complete; write one that begins with "
            "\"/\" into the server's extended options.");
  EXPECT_EQ(failure("Log File", "/tmp/a;b.txt"),
            "5: The path \"/tmp/a;b.txt\" of the log file holds a semicolon, which a connection "
            "string cannot keep; write one without into the server's extended options.");
  EXPECT_EQ(failure("Log File", 7),
            "5: \"Log File\" is a text; write one into the server's extended options.");
  EXPECT_EQ(failure("Time Zone", "Nowhere"),
            "5: There is no time zone \"Nowhere\"; write Local, UTC or a name such as "
            "Europe/Madrid into the server's extended options.");
  EXPECT_EQ(failure("Color", 1), "3265: The provider has no property \"Color\"; check its name.");
  EXPECT_EQ(options.LogLevel(), 2);
}

TEST(session_options, bound_the_memory_of_a_statement) {
  SessionOptions options;
  EXPECT_EQ(options.Get("Statement Memory"), Value(512));
  options.SetAll(ado::ConnectionSettings::Parse("statement memory = 16;"));
  EXPECT_EQ(options.Get("Statement Memory"), Value(16));
  EXPECT_EQ(options.StatementMemory(), std::size_t{16} << 20);
  for (const Value& vtValue : {Value(15), Value(4097), Value("much"), Value(-1)}) {
    EXPECT_EQ(FailureOf([&] { options.Set("Statement Memory", vtValue); }),
              "5: \"Statement Memory\" is a number from 16 to 4096; write one into the server's "
              "extended options.");
  }
  EXPECT_EQ(options.Get("Statement Memory"), Value(16));
  options.Set("Statement Memory", "");
  EXPECT_EQ(options.Get("Statement Memory"), Value(512));
}

}  // namespace
}  // namespace orvane::provider
