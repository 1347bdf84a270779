#include "console/data_access/data_access.h"

#include <gmock/gmock.h>

#include <QTemporaryDir>

#include "component/registration.h"
#include "console/document/document_bag.h"
#include "console/waiting/waiting.h"
#include "tests/console/fake_objects.h"
#include "tests/fakes/user_interface.h"
#include "tests/fakes/variable.h"

namespace orvane::console {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
namespace failure = platform::failure;

class Prompt : public ado::LogonPrompt {
 public:
  platform::Boolean Ask(ado::LogonRequest& request) override {
    ++nAsked;
    knownServers = request.knownServers;
    request.sPassword = "geheim";
    return bAnswer;
  }
  int nAsked = 0;
  std::vector<Text> knownServers;
  bool bAnswer = true;
};

class data_access : public testing::Test {
 protected:
  data_access() {
    component::RegisterLibrary(ORVANE_DATA_ACCESS_FIXTURE, m_folder.path().toStdString());
    platform::Services services;
    services.longOperation = std::make_shared<Waiting>();
    services.ui = m_ui;
    m_dataAccess =
        std::make_unique<DataAccess>(m_runtime, services, m_prompt, [this](const Text& sFile) {
          m_asked.push_back(sFile);
          return m_bMayLog;
        });
  }

  platform::ConnectionPtr Open(const Text& sOptions = {}) {
    const auto cn = m_dataAccess->CreateConnection();
    cn->Properties().Item("Prompt").Value(platform::kPromptAlways);
    cn->Open("Provider = fixture.provider; Data Source = S1;" + sOptions, "anna", "",
             platform::kOptionUnspecified);
    return cn;
  }

  /// The file that the session of the connection writes its log to.
  Value LogFileOf(const platform::ConnectionPtr& cn) {
    const auto command = m_dataAccess->CreateCommand();
    command->ActiveConnection(cn);
    command->CommandText("log file");
    return command->Execute()->ValueAt(0, 0);
  }

  QTemporaryDir m_state;
  fakes::Variable m_stateHome{"XDG_STATE_HOME", m_state.path().toStdString().c_str()};
  std::shared_ptr<fakes::FakeUserInterface> m_ui = std::make_shared<fakes::FakeUserInterface>();
  std::vector<Text> m_asked;
  bool m_bMayLog = false;
  QTemporaryDir m_folder;
  component::Runtime m_runtime{component::Registry({m_folder.path().toStdString()})};
  std::shared_ptr<Prompt> m_prompt = std::make_shared<Prompt>();
  std::unique_ptr<DataAccess> m_dataAccess;
};

TEST_F(data_access, opens_a_connection_of_a_registered_provider_through_the_prompt) {
  const auto cn = Open();
  EXPECT_TRUE(cn->IsOpen());
  EXPECT_EQ(m_prompt->nAsked, 1);
  EXPECT_EQ(cn->Properties().Item("Data Source").Value(), Value("S1"));
}

TEST_F(data_access, offers_the_servers_of_earlier_connections_behind_those_of_the_provider) {
  const auto ofProvider = [this] {
    Open();
    return m_prompt->knownServers;
  }();
  Open();
  auto known = ofProvider;
  known.emplace_back("S1");
  EXPECT_EQ(m_prompt->knownServers, known);
  Open();
  EXPECT_EQ(m_prompt->knownServers, known) << "once";
  m_prompt->bAnswer = false;
  EXPECT_THROW(Open("Data Source = S2;"), platform::Failure);
  EXPECT_THROW(Open(), platform::Failure);
  EXPECT_EQ(m_prompt->knownServers, known) << "one that was never connected is not";
}

TEST_F(data_access, runs_a_command_on_its_connection) {
  const auto command = m_dataAccess->CreateCommand();
  command->ActiveConnection(Open());
  command->CommandText("SELECT 1");
  EXPECT_EQ(command->Execute()->ValueAt(0, 0), Value("SELECT 1"));
}

TEST_F(data_access, a_provider_that_is_not_registered_gives_a_sentence) {
  const auto cn = m_dataAccess->CreateConnection();
  EXPECT_EQ(NumberOf([&] { cn->Open("Provider = Nobody; Data Source = S1;", "", "", -1); }),
            failure::kProviderNotFound);
}

TEST_F(data_access, a_class_that_is_no_provider_gives_a_sentence) {
  const auto cn = m_dataAccess->CreateConnection();
  EXPECT_EQ(
      NumberOf([&] { cn->Open("Provider = Fixture.Neither; Data Source = S1;", "", "", -1); }),
      failure::kComponent);
}

TEST_F(data_access, knows_the_option_texts_of_the_connections_opened) {
  EXPECT_THAT(m_dataAccess->OptionTexts(), IsEmpty());
  const Text sLocal =
      "Log File = ;Log Level = 2;Identifier Prefixes = False;Time as Double = False;"
      "Time Zone = Local;Historians By GUID = False;";
  const Text sUtc =
      "Log File = ;Log Level = 2;Identifier Prefixes = False;Time as Double = False;"
      "Time Zone = UTC;Historians By GUID = False;";
  Open()->Close();
  Open();
  EXPECT_THAT(m_dataAccess->OptionTexts(), ElementsAre(sLocal));
  Open("Time Zone = UTC;");
  EXPECT_THAT(m_dataAccess->OptionTexts(), ElementsAre(sLocal, sUtc));
}

constexpr const char* kLogged = "Log File = /x;Log Level = 2;";

TEST_F(data_access, keeps_a_documents_log_file_from_the_provider_when_the_user_says_no) {
  m_dataAccess->DocumentOpened({kLogged});
  const auto cn = Open(kLogged);
  EXPECT_THAT(m_asked, ElementsAre("/x"));
  EXPECT_EQ(LogFileOf(cn), Value(""));
  // What is told, and so saved, is what the document says.
  EXPECT_EQ(cn->Properties().Item("log file").Value(), Value("/x"));
  EXPECT_EQ(m_dataAccess->OptionTexts().at(0).substr(0, 15), "Log File = /x;L");
  EXPECT_EQ(LogFileOf(Open(kLogged)), Value(""));
  EXPECT_EQ(m_asked.size(), 1U);
  cn->Properties().Item("Log File").Value("/mine");
  EXPECT_EQ(LogFileOf(cn), Value("/mine"));
  EXPECT_EQ(cn->Properties().Item("Log File").Value(), Value("/mine"));
}

TEST_F(data_access, hands_a_documents_log_file_on_when_the_user_says_yes) {
  m_bMayLog = true;
  m_dataAccess->DocumentOpened({kLogged});
  EXPECT_EQ(LogFileOf(Open(kLogged)), Value("/x"));
  EXPECT_EQ(LogFileOf(Open(kLogged)), Value("/x"));
  EXPECT_EQ(m_asked.size(), 1U);
}

TEST_F(data_access, connects_without_a_log_that_cannot_be_written_and_says_so_each_time) {
  constexpr const char* kRefused = "Log File = /no log;Log Level = 2;";
  m_bMayLog = true;
  m_dataAccess->DocumentOpened({kRefused});
  for (std::size_t nTimes = 1; nTimes <= 2; ++nTimes) {
    const auto cn = Open(kRefused);
    EXPECT_TRUE(cn->IsOpen());
    EXPECT_EQ(LogFileOf(cn), Value(""));
    // What is saved is what the document says.
    EXPECT_EQ(cn->Properties().Item("Log File").Value(), Value("/no log"));
    ASSERT_EQ(m_ui->boxes.size(), nTimes);
    EXPECT_EQ(m_ui->boxes.back().sText,
              "It is no log; name another file. The server is connected without a log: put that "
              "right, then disconnect the server and connect it again.");
  }
  EXPECT_EQ(m_asked.size(), 1U);
  // A log that can be written says nothing.
  Open("Log File = /x;Log Level = 2;");
  EXPECT_EQ(m_ui->boxes.size(), 2U);
}

TEST_F(data_access, blames_no_log_file_for_what_fails_without_it_too) {
  m_bMayLog = true;
  m_dataAccess->DocumentOpened({kLogged});
  try {
    Open(Text(kLogged) + "Time Zone = Nowhere;");
    FAIL();
  } catch (const platform::Failure& failed) {
    EXPECT_EQ(failed.Description(), "There is no such time zone.");
  }
  EXPECT_THAT(m_ui->boxes, IsEmpty());
}

TEST_F(data_access, asks_about_no_log_file_that_came_with_no_document) {
  m_dataAccess->DocumentOpened({});
  EXPECT_EQ(LogFileOf(Open(kLogged)), Value("/x"));
  EXPECT_THAT(m_asked, IsEmpty());
}

TEST_F(data_access, asks_about_no_log_file_when_the_logon_is_cancelled) {
  m_prompt->bAnswer = false;
  m_dataAccess->DocumentOpened({kLogged});
  EXPECT_EQ(NumberOf([&] { Open(kLogged); }), failure::kCancelled);
  EXPECT_THAT(m_asked, IsEmpty());
}

TEST_F(data_access, a_cancelled_logon_leaves_no_option_text) {
  m_prompt->bAnswer = false;
  EXPECT_EQ(NumberOf([&] { Open(); }), failure::kCancelled);
  EXPECT_THAT(m_dataAccess->OptionTexts(), IsEmpty());
}

TEST_F(data_access, creates_a_new_table_query_at_every_call) {
  const auto query = m_dataAccess->CreateTableQuery();
  query->Table("Data");
  EXPECT_EQ(m_dataAccess->CreateTableQuery()->Table(), "");
}

TEST_F(data_access, looks_a_class_up_anew_once_it_may_forget) {
  m_dataAccess->CreateTableQuery();
  component::UnregisterLibrary(ORVANE_DATA_ACCESS_FIXTURE, m_folder.path().toStdString());
  m_dataAccess->CreateTableQuery();
  m_dataAccess->ForgetClasses();
  EXPECT_EQ(NumberOf([&] { m_dataAccess->CreateTableQuery(); }), failure::kComponent);
}

TEST_F(data_access, restores_the_objects_of_a_document) {
  DocumentBag bag([this](const Text& sProgId) { return m_dataAccess->CreateObject(sProgId); });
  const auto query = m_dataAccess->CreateTableQuery();
  query->Table("Data");
  bag.WriteProperty("Query", query);
  const Value vtRead = bag.ReadProperty("Query", {});
  const auto read =
      std::dynamic_pointer_cast<platform::TableQuery>(*vtRead.As<platform::ObjectPtr>());
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->Table(), "Data");
  bag.Add("Other", StoredObject{"Fixture.Neither", ""});
  EXPECT_EQ(NumberOf([&] { bag.ReadProperty("Other", {}); }), failure::kComponent);
  bag.Add("Gone", StoredObject{"Nobody", ""});
  EXPECT_EQ(NumberOf([&] { bag.ReadProperty("Gone", {}); }), failure::kComponent);
}

}  // namespace
}  // namespace orvane::console
