#include "console/data_access/log_file_consent.h"

#include <gmock/gmock.h>

#include <optional>

namespace orvane::console {
namespace {

using platform::Text;
using testing::ElementsAre;
using testing::IsEmpty;

class log_file_consent : public testing::Test {
 protected:
  void Review(const Text& sString) { m_consent.Review(ado::ConnectionSettings::Parse(sString)); }

  std::vector<Text> m_asked;
  bool m_bAnswer = false;
  LogFileConsent m_consent{[this](const Text& sFile) {
    m_asked.push_back(sFile);
    return m_bAnswer;
  }};
};

TEST_F(log_file_consent, asks_once_about_a_file_that_came_with_the_document) {
  m_consent.DocumentOpened({"S1", "Log File = /users/anna/.profile;Log Level = 2;"});
  EXPECT_TRUE(m_consent.IsRefused("/users/anna/.profile"));
  Review("Data Source = S1;Log File = /users/anna/.profile;Log Level = 2;");
  Review("Data Source = S2;log file=/users/anna/.profile;Log Level = 3;");
  EXPECT_THAT(m_asked, ElementsAre("/users/anna/.profile"));
  EXPECT_TRUE(m_consent.IsRefused("/users/anna/.profile"));
}

TEST_F(log_file_consent, keeps_a_yes_while_the_document_is_open) {
  m_bAnswer = true;
  m_consent.DocumentOpened({"Log File = /a;Log Level = 1", "Log File = /b"});
  Review("Log File = /a;Log Level = 1;");
  EXPECT_FALSE(m_consent.IsRefused("/a"));
  EXPECT_TRUE(m_consent.IsRefused("/b"));
  Review("Log File = /b;Log Level = 1;");
  m_consent.DocumentOpened({"Log File = /a;Log Level = 1"});
  EXPECT_TRUE(m_consent.IsRefused("/a"));
  Review("Log File = /a;Log Level = 1;");
  EXPECT_THAT(m_asked, ElementsAre("/a", "/b", "/a"));
}

TEST_F(log_file_consent, asks_about_nothing_that_the_user_entered_himself) {
  m_consent.DocumentOpened({"S1", "Log File = ;Log Level = 0;"});
  Review("Log File = /mine;Log Level = 2;");
  EXPECT_THAT(m_asked, IsEmpty());
  EXPECT_FALSE(m_consent.IsRefused("/mine"));
}

TEST_F(log_file_consent, finds_a_file_that_hides_in_another_text_of_the_document) {
  m_consent.DocumentOpened({"S1; Log File = /evil; Log Level = 2"});
  Review("Provider = P; Data Source = S1; Log File = /evil; Log Level = 2;");
  EXPECT_THAT(m_asked, ElementsAre("/evil"));
}

TEST_F(log_file_consent, asks_about_nothing_that_is_not_written) {
  m_consent.DocumentOpened({"Log File = /a;Log Level = 0;"});
  for (const char* const sString :
       {"Log File = /a;", "Log File = /a;Log Level = 0;", "Log File = /a;Log Level = many;",
        "Log File = ;Log Level = 2;"}) {
    Review(sString);
  }
  EXPECT_THAT(m_asked, IsEmpty());
  // A level that is raised on the open connection begins no log either.
  EXPECT_TRUE(m_consent.IsRefused("/a"));
  EXPECT_FALSE(m_consent.IsRefused(""));
}

TEST_F(log_file_consent, says_no_where_nobody_can_be_asked) {
  LogFileConsent alone;
  alone.DocumentOpened({"Log File = /a;Log Level = 1;"});
  alone.Review(ado::ConnectionSettings::Parse("Log File = /a;Log Level = 1;"));
  EXPECT_TRUE(alone.IsRefused("/a"));
}

}  // namespace
}  // namespace orvane::console
