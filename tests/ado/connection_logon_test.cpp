// What a connection asks before it opens, and what becomes of the password.
#include <gtest/gtest.h>

#include "ado/connection.h"
#include "platform/ado/logon_failures.h"
#include "platform/conversions.h"
#include "tests/ado/connection_fakes.h"
#include "tests/ado/failure_of.h"
#include "tests/fakes/stored_secrets.h"

namespace orvane::ado {
namespace {

using platform::kOptionUnspecified;
using platform::kPromptAlways;
using platform::Text;
using platform::Value;
using tests::FailureOf;
using tests::kString;
using tests::Told;
namespace failure = platform::failure;

constexpr const char* kFixedServer =
    "Provider = ORVOLEDB; Data Source = S1;Disable Server Selection = True;";

class ConnectionLogonTest : public tests::ConnectionUnderTest {};

TEST_F(ConnectionLogonTest, does_not_ask_unless_prompt_says_always) {
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

TEST_F(ConnectionLogonTest, prompt_1_always_asks_with_server_user_and_known_servers) {
  Property("Prompt", kPromptAlways);
  Open(kString, "ann");
  ASSERT_EQ(prompt->asked.size(), 1U);
  EXPECT_EQ(prompt->asked[0].sServer, "S1");
  EXPECT_EQ(prompt->asked[0].sUser, "ann");
  EXPECT_EQ(prompt->asked[0].sPassword, "");
  EXPECT_TRUE(prompt->asked[0].bServerSelectable);
  EXPECT_EQ(prompt->asked[0].knownServers, (std::vector<Text>{"localhost", "S1"}));
}

TEST_F(ConnectionLogonTest, prompt_set_before_the_string_is_set_still_counts) {
  Property("Prompt", kPromptAlways);
  cn->ConnectionString(kString);
  Open();
  EXPECT_EQ(prompt->asked.size(), 1U);
}

TEST_F(ConnectionLogonTest, data_source_tells_the_server_chosen_in_the_dialog) {
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

TEST_F(ConnectionLogonTest, disabled_server_selection_is_told_to_the_dialog_and_kept) {
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

TEST_F(ConnectionLogonTest, server_selection_is_disabled_by_true_in_any_case_only) {
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

TEST_F(ConnectionLogonTest, cancelling_the_logon_is_a_failed_open) {
  Property("Prompt", kPromptAlways);
  prompt->answer = [](LogonRequest&) { return false; };
  EXPECT_EQ(OpenFails(), (Told{failure::kCancelled, "The logon was cancelled."}));
  EXPECT_TRUE(journal.calls.empty());
  ExpectClosed();
}

TEST_F(ConnectionLogonTest, an_empty_data_source_means_the_first_known_server) {
  Property("Prompt", kPromptAlways);
  Open("Provider = ORVOLEDB; Data Source = ;");
  EXPECT_EQ(prompt->asked.at(0).sServer, "localhost");
  EXPECT_EQ(Opened("Data Source"), "localhost");
  EXPECT_TRUE(Property("Data Source") == Value("localhost"));
}

TEST_F(ConnectionLogonTest, without_known_servers_an_empty_data_source_stays_empty) {
  provider->knownServers.clear();
  Open("Provider = ORVOLEDB; Data Source = ;");
  EXPECT_EQ(Opened("Data Source"), "");
}

TEST_F(ConnectionLogonTest, the_user_argument_goes_before_the_user_in_the_string) {
  Open(Text(kString) + "User ID = ann;");
  EXPECT_EQ(Opened("User ID"), "ann");
  cn->Close();
  Open(Text(kString) + "User ID = ann;", "bob");
  EXPECT_EQ(Opened("User ID"), "bob");
}

TEST_F(ConnectionLogonTest, a_password_given_to_open_reaches_the_provider) {
  Open(kString, "ann", "swordfish");
  EXPECT_EQ(journal.sPassword, "swordfish");
}

TEST_F(ConnectionLogonTest, a_password_is_kept_nowhere) {
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

TEST_F(ConnectionLogonTest,
       the_password_travels_in_a_text_of_its_own_and_leaves_the_callers_alone) {
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

TEST_F(ConnectionLogonTest, has_its_settings_reviewed_after_the_logon_and_before_the_provider) {
  struct Reviewer final : ConnectionReview {
    void Review(const ConnectionSettings& settings) override {
      sServer = settings.Find("Data Source").value_or("");
      throw platform::Failure(failure::kCancelled, "No.");
    }
    Text sServer;
  };
  const auto review = std::make_shared<Reviewer>();
  Connection reviewed(ConnectionServices{providers, prompt, longOperation, review});
  reviewed.Properties().Item("Prompt").Value(kPromptAlways);
  prompt->answer = [](LogonRequest& request) {
    request.sServer = "chosen";
    return true;
  };
  EXPECT_EQ(FailureOf([&] { reviewed.Open(kString, "", "", kOptionUnspecified); }),
            (Told{failure::kCancelled, "No."}));
  EXPECT_EQ(review->sServer, "chosen");
  EXPECT_TRUE(journal.calls.empty());
  EXPECT_FALSE(reviewed.IsOpen());
}

TEST_F(ConnectionLogonTest, refuses_a_password_in_the_string_and_does_not_keep_or_repeat_it) {
  const Told expected{failure::kInvalidArgument,
                      "A connection string must not hold a password: type it in the logon dialog."};
  for (const Text& sItem : fakes::TextsWithSecret()) {
    EXPECT_EQ(OpenFails(kString + sItem), expected) << sItem;
    EXPECT_EQ(FailureOf([&] { cn->ConnectionString(kString + sItem); }), expected) << sItem;
    EXPECT_EQ(cn->ConnectionString(), "");
  }
  ExpectClosed();
}

TEST_F(ConnectionLogonTest, refuses_a_password_in_the_server_that_was_chosen_or_set) {
  const Told expected{failure::kInvalidArgument,
                      "A connection string must not hold a password: type it in the logon dialog."};
  for (const Text& sServer : fakes::TextsWithSecret()) {
    cn->Properties().Item("Prompt").Value(kPromptAlways);
    prompt->answer = [&](LogonRequest& request) {
      request.sServer = sServer;
      return true;
    };
    EXPECT_EQ(OpenFails(), expected) << sServer;
  }
  EXPECT_TRUE(journal.calls.empty());
}

TEST_F(ConnectionLogonTest, takes_a_string_that_only_looks_like_one_with_a_password) {
  for (const Text& sItem : fakes::TextsWithoutSecret()) {
    if (sItem.find('=') == Text::npos) continue;
    EXPECT_EQ(FailureOf([&] { cn->ConnectionString(kString + sItem); }), Told()) << sItem;
  }
}

// A server that refuses to go on without encryption until it is told that it may.
class UnencryptedLogonTest : public ConnectionLogonTest {
 protected:
  UnencryptedLogonTest() {
    Property("Prompt", kPromptAlways);
    prompt->answer = [](LogonRequest& request) {
      request.sServer = "S2";
      request.sPassword = "swordfish";
      return true;
    };
    journal.duringOpen = [this](std::stop_token) {
      if (!journal.bMayGoUnencrypted) throw platform::Failure(failure::kNotEncrypted, "Not here.");
    };
  }
};

TEST_F(UnencryptedLogonTest, asks_once_about_the_server_and_goes_on_after_yes) {
  prompt->bMayGoUnencrypted = true;
  Open();
  EXPECT_TRUE(cn->IsOpen());
  EXPECT_EQ(prompt->unencrypted, std::vector<Text>{"S2"});
  EXPECT_EQ(prompt->asked.size(), 1U) << "what was typed is not typed again";
  EXPECT_EQ(journal.sPassword, "swordfish");
  EXPECT_EQ(journal.calls, (std::vector<Text>{"Open", "Open"}));
}

TEST_F(UnencryptedLogonTest, is_cancelled_by_no) {
  EXPECT_EQ(OpenFails().lNumber, failure::kCancelled);
  EXPECT_EQ(prompt->unencrypted, std::vector<Text>{"S2"});
  EXPECT_EQ(journal.calls, std::vector<Text>{"Open"});
  ExpectClosed();
}

// A program that asks nobody gets the provider's sentence, and a connection string cannot say yes.
TEST_F(UnencryptedLogonTest, fails_where_nobody_is_asked) {
  Property("Prompt", 4);
  const auto failed = OpenFails(Text(kString) + "May Go Unencrypted = True;");
  EXPECT_EQ(failed.lNumber, failure::kNotEncrypted);
  EXPECT_EQ(failed.sSentence, "Not here.");
  EXPECT_TRUE(prompt->unencrypted.empty());
}

}  // namespace
}  // namespace orvane::ado
