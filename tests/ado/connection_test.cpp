#include "ado/connection.h"

#include <gtest/gtest.h>

#include "platform/conversions.h"
#include "tests/ado/connection_fakes.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::kOptionUnspecified;
using platform::kPromptAlways;
using platform::SchemaNumber;
using platform::Text;
using platform::Value;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

constexpr const char* kString = "Provider = ORVOLEDB; Data Source = S1;";
constexpr const char* kFixedServer =
    "Provider = ORVOLEDB; Data Source = S1;Disable Server Selection = True;";

class ConnectionTest : public ::testing::Test, protected tests::ConnectionFixture {
 protected:
  void Open(const Text& sString = kString, const Text& sUser = "", const Text& sPassword = "") {
    cn->Open(sString, sUser, sPassword, kOptionUnspecified);
  }
  Told OpenFails(const Text& sString = kString) {
    return FailureOf([&] { Open(sString); });
  }
  void ExpectClosed() {
    EXPECT_FALSE(cn->IsOpen());
    EXPECT_EQ(FailureOf([&] { cn->Close(); }).lNumber, failure::kObjectClosed);
  }
};

TEST_F(ConnectionTest, is_closed_when_it_is_made) {
  ExpectClosed();
  EXPECT_EQ(cn->ConnectionString(), "");
}

TEST_F(ConnectionTest, opens_the_named_provider_with_the_string_as_it_is_written) {
  Open("Provider = ORVOLEDB; Data Source = S1;Log Level = 1;Log File = ;Log Level = 2;");
  EXPECT_TRUE(cn->IsOpen());
  const std::vector<std::pair<Text, Text>> expected = {
      {"Provider", "ORVOLEDB"}, {"Data Source", "S1"}, {"Log Level", "1"},
      {"Log File", ""},         {"Log Level", "2"},    {"User ID", ""}};
  EXPECT_EQ(journal.settings, expected);
}

TEST_F(ConnectionTest, an_empty_string_opens_with_the_string_set_before) {
  cn->ConnectionString(kString);
  Open("");
  EXPECT_EQ(Opened("Data Source"), "S1");
  EXPECT_EQ(cn->ConnectionString(), kString);
}

TEST_F(ConnectionTest, a_string_given_to_open_replaces_the_one_set_before) {
  cn->ConnectionString("Provider = ORVOLEDB; Data Source = S9;");
  Open();
  EXPECT_EQ(Opened("Data Source"), "S1");
  EXPECT_EQ(cn->ConnectionString(), kString);
}

TEST_F(ConnectionTest, an_unknown_provider_is_told_by_name) {
  EXPECT_EQ(OpenFails("Provider = OTHER; Data Source = S1;"),
            (Told{failure::kProviderNotFound,
                  "There is no provider \"OTHER\" on this machine: register it, or name another "
                  "one in the connection string."}));
  ExpectClosed();
}

TEST_F(ConnectionTest, a_string_without_a_provider_is_told) {
  const Told expected{failure::kProviderNotFound,
                      "The connection string names no provider: begin it with \"Provider = \" and "
                      "the provider's name."};
  EXPECT_EQ(OpenFails("Data Source = S1;"), expected);
  EXPECT_EQ(OpenFails("Provider = ; Data Source = S1;"), expected);
  EXPECT_EQ(OpenFails(""), expected);
  ExpectClosed();
}

TEST_F(ConnectionTest, a_provider_that_cannot_be_loaded_is_told_in_its_own_words) {
  class Broken final : public ProviderSource {
    std::shared_ptr<Provider> Find(std::string_view) override {
      throw platform::Failure(failure::kComponent, "It does not load.");
    }
  };
  cn = std::make_shared<Connection>(
      ConnectionServices{std::make_shared<Broken>(), prompt, longOperation});
  EXPECT_EQ(OpenFails(), (Told{failure::kComponent, "It does not load."}));
}

TEST_F(ConnectionTest, a_string_that_cannot_be_read_is_told_by_open_only) {
  cn->ConnectionString("Provider = ORVOLEDB; junk;");
  EXPECT_EQ(cn->ConnectionString(), "Provider = ORVOLEDB; junk;");
  EXPECT_EQ(OpenFails("").lNumber, failure::kInvalidArgument);
  ExpectClosed();
}

TEST_F(ConnectionTest, does_not_ask_unless_prompt_says_always) {
  for (const int prompting : {2, 3, 4}) {
    cn = Make();
    Property("Prompt", prompting);
    Open();
    EXPECT_TRUE(cn->IsOpen());
  }
  cn = Make();
  Open();
  EXPECT_TRUE(prompt->asked.empty());
}

TEST_F(ConnectionTest, prompt_1_always_asks_with_server_user_and_known_servers) {
  Property("Prompt", kPromptAlways);
  Open(kString, "ann");
  ASSERT_EQ(prompt->asked.size(), 1U);
  EXPECT_EQ(prompt->asked[0].sServer, "S1");
  EXPECT_EQ(prompt->asked[0].sUser, "ann");
  EXPECT_EQ(prompt->asked[0].sPassword, "");
  EXPECT_TRUE(prompt->asked[0].bServerSelectable);
  EXPECT_EQ(prompt->asked[0].knownServers, (std::vector<Text>{"localhost", "S1"}));
}

TEST_F(ConnectionTest, prompt_set_before_the_string_is_set_still_counts) {
  Property("Prompt", kPromptAlways);
  cn->ConnectionString(kString);
  Open();
  EXPECT_EQ(prompt->asked.size(), 1U);
}

TEST_F(ConnectionTest, data_source_tells_the_server_chosen_in_the_dialog) {
  Property("Prompt", kPromptAlways);
  prompt->answer = [](LogonRequest& request) {
    request.sServer = "S2";
    request.sUser = "bob";
    request.sPassword = "swordfish";
    return true;
  };
  Open(kString, "ann");
  EXPECT_TRUE(Property("Data Source") == Value("S2"));
  EXPECT_TRUE(Property("User ID") == Value("bob"));
  EXPECT_EQ(Opened("Data Source"), "S2");
  EXPECT_EQ(Opened("User ID"), "bob");
  EXPECT_EQ(journal.sPassword, "swordfish");
  EXPECT_EQ(cn->ConnectionString(), kString);
}

TEST_F(ConnectionTest, disabled_server_selection_is_told_to_the_dialog_and_kept) {
  Property("Prompt", kPromptAlways);
  prompt->answer = [](LogonRequest& request) {
    request.sServer = "S2";
    return true;
  };
  Open(kFixedServer);
  EXPECT_FALSE(prompt->asked.at(0).bServerSelectable);
  EXPECT_EQ(Opened("Data Source"), "S1");
  EXPECT_TRUE(Property("Data Source") == Value("S1"));
}

TEST_F(ConnectionTest, server_selection_is_disabled_by_true_in_any_case_only) {
  Property("Prompt", kPromptAlways);
  const std::vector<std::pair<Text, bool>> cases = {{"True", false}, {"TRUE", false}, {"-1", false},
                                                    {"False", true}, {"0", true},     {"", true}};
  for (const auto& [sValue, bSelectable] : cases) {
    Open(kString + ("Disable Server Selection = " + sValue));
    EXPECT_EQ(prompt->asked.back().bServerSelectable, bSelectable) << sValue;
    cn->Close();
  }
  Open(Text(kFixedServer) + "Disable Server Selection = False;");
  EXPECT_TRUE(prompt->asked.back().bServerSelectable);
  cn->Close();
  EXPECT_EQ(OpenFails(Text(kString) + "Disable Server Selection = perhaps;"),
            (Told{failure::kInvalidArgument,
                  "\"Disable Server Selection\" takes True or False, not \"perhaps\"."}));
}

TEST_F(ConnectionTest, cancelling_the_logon_is_a_failed_open) {
  Property("Prompt", kPromptAlways);
  prompt->answer = [](LogonRequest&) { return false; };
  EXPECT_EQ(OpenFails(), (Told{failure::kCancelled, "The logon was cancelled."}));
  EXPECT_TRUE(journal.calls.empty());
  ExpectClosed();
}

TEST_F(ConnectionTest, an_empty_data_source_means_the_first_known_server) {
  Property("Prompt", kPromptAlways);
  Open("Provider = ORVOLEDB; Data Source = ;");
  EXPECT_EQ(prompt->asked.at(0).sServer, "localhost");
  EXPECT_EQ(Opened("Data Source"), "localhost");
  EXPECT_TRUE(Property("Data Source") == Value("localhost"));
}

TEST_F(ConnectionTest, without_known_servers_an_empty_data_source_stays_empty) {
  provider->knownServers.clear();
  Open("Provider = ORVOLEDB; Data Source = ;");
  EXPECT_EQ(Opened("Data Source"), "");
}

TEST_F(ConnectionTest, the_user_argument_goes_before_the_user_in_the_string) {
  Open(Text(kString) + "User ID = ann;");
  EXPECT_EQ(Opened("User ID"), "ann");
  cn->Close();
  Open(Text(kString) + "User ID = ann;", "bob");
  EXPECT_EQ(Opened("User ID"), "bob");
}

TEST_F(ConnectionTest, a_password_given_to_open_reaches_the_provider) {
  Open(kString, "ann", "swordfish");
  EXPECT_EQ(journal.sPassword, "swordfish");
}

TEST_F(ConnectionTest, a_password_is_kept_nowhere) {
  Property("Prompt", kPromptAlways);
  prompt->answer = [](LogonRequest& request) {
    request.sPassword = "swordfish";
    return true;
  };
  Open(kString, "ann", "swordfish");
  std::vector<Text> texts = {cn->ConnectionString()};
  texts.insert(texts.end(), longOperation->what.begin(), longOperation->what.end());
  for (platform::Long i = 0; i < cn->Properties().Count(); ++i) {
    texts.push_back(cn->Properties().Item(i).Name());
    texts.push_back(platform::ToText(cn->Properties().Item(i).Value()));
  }
  for (const auto& [sName, sValue] : journal.settings) texts.insert(texts.end(), {sName, sValue});
  EXPECT_GT(texts.size(), 12U);
  for (const Text& sText : texts) EXPECT_EQ(sText.find("swordfish"), Text::npos) << sText;
  EXPECT_EQ(FailureOf([&] { cn->Properties().Item("Password"); }).lNumber, failure::kItemNotFound);
}

TEST_F(ConnectionTest, the_password_travels_in_a_text_of_its_own_and_leaves_the_callers_alone) {
  const Text* password = nullptr;
  class Keeping final : public Provider {
   public:
    explicit Keeping(const Text*& passwordSeen) : m_password(passwordSeen) {}
    std::vector<PropertyDescription> Properties() const override { return {}; }
    std::vector<Text> KnownServers() const override { return {}; }
    std::unique_ptr<Session> Open(const ConnectionSettings&, const Text& sPassword,
                                  std::stop_token) override {
      m_password = &sPassword;
      throw platform::Failure(failure::kNoRights, "No.");
    }
    const Text*& m_password;
  };
  providers->providers["orvoledb"] = std::make_shared<Keeping>(password);
  const Text sPassword = "swordfish";
  EXPECT_EQ(FailureOf([&] { Open(kString, "ann", sPassword); }), (Told{failure::kNoRights, "No."}));
  EXPECT_NE(password, &sPassword);
  EXPECT_EQ(sPassword, "swordfish");
}

TEST_F(ConnectionTest, refuses_a_password_in_the_string_and_does_not_keep_or_repeat_it) {
  const Told expected{failure::kInvalidArgument,
                      "A connection string must not hold a password: type it in the logon dialog."};
  for (const Text sItem : {"Password = swordfish;", "PWD=swordfish", "pass word\t= swordfish;",
                           "junk; Password = sword;fish"}) {
    EXPECT_EQ(OpenFails(kString + sItem), expected) << sItem;
    EXPECT_EQ(FailureOf([&] { cn->ConnectionString(kString + sItem); }), expected) << sItem;
    EXPECT_EQ(cn->ConnectionString(), "");
  }
  ExpectClosed();
}

TEST_F(ConnectionTest, opening_twice_is_refused_and_leaves_the_first_session) {
  Open();
  EXPECT_EQ(OpenFails(),
            (Told{failure::kObjectOpen, "The connection is already open: close it first."}));
  EXPECT_EQ(FailureOf([&] { cn->ConnectionString("Provider = X;"); }).lNumber,
            failure::kObjectOpen);
  EXPECT_TRUE(cn->IsOpen());
  EXPECT_EQ(journal.calls, std::vector<Text>{"Open"});
}

TEST_F(ConnectionTest, what_needs_an_open_connection_is_refused_while_closed) {
  const Told expected{failure::kObjectClosed, "The connection is closed: open it first."};
  EXPECT_EQ(FailureOf([&] { cn->OpenSchema(SchemaNumber::Catalogs); }), expected);
  EXPECT_EQ(FailureOf([&] { cn->Execute({"SELECT 1"}); }), expected);
  EXPECT_EQ(FailureOf([&] { cn->Close(); }), expected);
}

TEST_F(ConnectionTest, closing_twice_is_refused) {
  Open();
  cn->Close();
  EXPECT_EQ(FailureOf([&] { cn->Close(); }).lNumber, failure::kObjectClosed);
  EXPECT_EQ(journal.calls, (std::vector<Text>{"Open", "Close", "~Session"}));
}

TEST_F(ConnectionTest, can_be_opened_again_after_it_was_closed) {
  Open();
  cn->Close();
  Open("Provider = ORVOLEDB; Data Source = S2;");
  EXPECT_TRUE(cn->IsOpen());
  EXPECT_EQ(Opened("Data Source"), "S2");
}

TEST_F(ConnectionTest, a_failed_open_leaves_it_closed_with_the_providers_failure) {
  journal.duringOpen = [](std::stop_token) {
    throw platform::Failure(failure::kServerNotFound, "There is no server \"S1\".", "engine", 14);
  };
  EXPECT_EQ(OpenFails(), (Told{failure::kServerNotFound, "There is no server \"S1\"."}));
  ExpectClosed();
  journal.duringOpen = [](std::stop_token) {};
  Open();
  EXPECT_TRUE(cn->IsOpen());
}

TEST_F(ConnectionTest, a_failed_close_leaves_it_open) {
  Open();
  journal.duringClose = [] { throw platform::Failure(failure::kStorage, "Disk full."); };
  EXPECT_EQ(FailureOf([&] { cn->Close(); }), (Told{failure::kStorage, "Disk full."}));
  EXPECT_TRUE(cn->IsOpen());
  journal.duringClose = [] {};
  cn->Close();
  EXPECT_FALSE(cn->IsOpen());
}

TEST_F(ConnectionTest, destroying_an_open_connection_closes_it) {
  Open();
  cn.reset();
  EXPECT_EQ(journal.calls, (std::vector<Text>{"Open", "Close", "~Session"}));
}

TEST_F(ConnectionTest, destroying_survives_a_failed_close) {
  Open();
  journal.duringClose = [] { throw platform::Failure(failure::kStorage, "Disk full."); };
  cn.reset();
  EXPECT_EQ(journal.calls.back(), "~Session");
}

TEST_F(ConnectionTest, destroying_a_closed_connection_closes_nothing) {
  cn.reset();
  EXPECT_TRUE(journal.calls.empty());
}

TEST_F(ConnectionTest, slow_calls_run_through_the_hosts_long_operation) {
  std::vector<std::thread::id> threads;
  const auto note = [&](std::stop_token) { threads.push_back(std::this_thread::get_id()); };
  journal.duringOpen = note;
  journal.duringExecute = note;
  Open();
  cn->OpenSchema(SchemaNumber::Tables);
  cn->Execute({"SELECT 1"});
  EXPECT_EQ(longOperation->what,
            (std::vector<Text>{"Connecting to S1", "Reading what the server holds",
                               "Running the statement"}));
  ASSERT_EQ(threads.size(), 3U);
  for (const auto thread : threads) EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(ConnectionTest, open_can_be_cancelled_while_it_waits) {
  journal.duringOpen = tests::WaitForCancel;
  longOperation->bCancel = true;
  EXPECT_EQ(OpenFails().lNumber, failure::kCancelled);
  ExpectClosed();
}

TEST_F(ConnectionTest, statements_and_schemas_can_be_cancelled_and_leave_it_open) {
  Open();
  journal.duringExecute = tests::WaitForCancel;
  longOperation->bCancel = true;
  EXPECT_EQ(FailureOf([&] { cn->Execute({"SELECT 1"}); }).lNumber, failure::kCancelled);
  EXPECT_EQ(FailureOf([&] { cn->OpenSchema(SchemaNumber::Tables); }).lNumber, failure::kCancelled);
  EXPECT_TRUE(cn->IsOpen());
}

TEST_F(ConnectionTest, passes_schema_number_and_restrictions_on) {
  Open();
  const std::vector<Value> vtRestrictions = {"Machine", {}, "Data"};
  const auto rs = cn->OpenSchema(SchemaNumber::PrimaryKeys, vtRestrictions);
  EXPECT_TRUE(rs->Fields().Item("NUMBER").Value() == Value(28));
  EXPECT_TRUE(journal.vtRestrictions == vtRestrictions);
}

TEST_F(ConnectionTest, a_recordset_stays_usable_after_the_connection_is_gone) {
  Open();
  const auto rs = cn->Execute({"SELECT 1"}).recordset;
  cn->Close();
  cn.reset();
  EXPECT_TRUE(rs->Fields().Item("A").Value() == Value(1));
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof());
}

}  // namespace
}  // namespace orvane::ado
