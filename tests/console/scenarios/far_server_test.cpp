// A PostgreSQL server on another machine that does not encrypt: what is asked before its password
// goes out, and that the password stands nowhere after the console's work with it.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/console/scenarios/host_driver.h"
#include "tests/provider/engines/postgres_cluster.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

using tests::PostgresCluster;
namespace fs = std::filesystem;

constexpr const char* kCanary = "Zeisig-7391-qXv;\"\\x";
// Enough of it to be known, without what is written in another way in files.
constexpr const char* kBeginningOfCanary = "Zeisig-7391";

class far_server : public command_scenario {
 protected:
  void SetUp() override {
    m_sDatabase = PostgresCluster::Get().NewDatabase();
    PostgresCluster::Get().Do("postgres",
                              "DO 'BEGIN CREATE ROLE orvanesnapin LOGIN SUPERUSER; EXCEPTION WHEN "
                              "duplicate_object THEN NULL; END'");
    PostgresCluster::Get().Do("postgres",
                              Text("ALTER ROLE orvanesnapin PASSWORD '") + kCanary + "'");
    m_sServer = Text("postgresql://") + PostgresCluster::kFarHost + ":" +
                std::to_string(PostgresCluster::Get().Port()) + "/" + m_sDatabase;
    Host().TypePassword(kCanary);
  }
  ~far_server() override {
    driver.reset();
    if (!m_sDatabase.empty()) PostgresCluster::Get().DropDatabase(m_sDatabase);
  }

  console::HostDriver& Host() { return static_cast<console::HostDriver&>(*driver); }
  Text Log() { return (Host().Folder() / "statements.log").string(); }
  void OpenWritten() {
    driver->OpenDocument([&](PropertyBag& pb, platform::ObjectFactory&) {
      Write(pb, {.sServer = m_sServer,
                 .sExtendedOptions = "Log File = " + Log() + ";Log Level = 3;",
                 .queries = {{"Wrong", "SELECT nothing FROM Mill..Data"}}});
    });
    driver->Expand(kStaticNode);
  }
  Text LogQuestion() {
    return "The document wants a log of what is done with this server to be written to the "
           "file\n\n" +
           Log() + "\n\nWrite it?";
  }
  Text Question() const {
    return "The server\n\n" + m_sServer +
           "\n\nis on another machine and does not encrypt what is sent. Send the password all the "
           "same?";
  }
  Texts Boxes() {
    Texts texts;
    for (const auto& box : driver->TakeBoxes()) texts.push_back(box.sText);
    return texts;
  }
  // Where it is found below the user's folders and those of the console; in names of files, too.
  Texts FilesWith(const Text& sText) {
    Texts found;
    for (const fs::path& folder : {Host().Folder(), fs::path(std::getenv("HOME"))}) {
      for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        std::ostringstream content;
        if (entry.is_regular_file()) {
          content << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        }
        if ((entry.path().string() + content.str()).find(sText) != Text::npos) {
          found.push_back(entry.path().string());
        }
      }
    }
    return found;
  }
  static Text OfProcess(const Text& sFile) {
    std::ostringstream content;
    content << std::ifstream("/proc/self/" + sFile, std::ios::binary).rdbuf();
    return content.str();
  }

  std::string m_sDatabase;
  Text m_sServer;
};

TEST_F(far_server, is_asked_about_until_yes_and_its_password_stands_nowhere) {
  OpenWritten();
  driver->AnswerBox(BoxAnswer::Yes);
  driver->AnswerBox(BoxAnswer::No);
  driver->Choose(m_sServer, "Connect...");
  EXPECT_EQ(Boxes(), (Texts{LogQuestion(), Question(), "The logon was cancelled."}));
  EXPECT_EQ(driver->Menu(m_sServer)[0], (MenuEntry{"Connect...", true}));

  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(m_sServer, "Connect...");
  EXPECT_EQ(Boxes(), Texts{Question()});
  EXPECT_EQ(driver->LogonsSeen(), 2);
  const Text sCatalogs = m_sServer + ".Catalogs";
  const auto expand = [&] {
    for (const Text& sKey : {m_sServer, sCatalogs}) driver->Expand(sKey);
  };
  expand();
  Fill({{"m_txtName", "Mill"}});
  driver->Choose(sCatalogs, "Add Catalog...");
  ExpectNoBoxes();
  EXPECT_TRUE(driver->HasItem(sCatalogs + ".Mill"));
  driver->Expand(m_sServer + ".Queries");
  driver->Select(m_sServer + ".Queries.Wrong");
  EXPECT_NE(ErrorBox().find("nothing"), Text::npos);

  driver->SaveAndReopen();
  driver->Expand(kStaticNode);
  driver->AnswerBox(BoxAnswer::Yes);
  expand();
  EXPECT_EQ(Boxes(), Texts{LogQuestion()}) << "what was said holds while the program runs";
  EXPECT_EQ(driver->LogonsSeen(), 3);
  EXPECT_TRUE(driver->HasItem(sCatalogs + ".Mill"));

  // A password that is refused is told of, and nothing of it.
  Host().TypePassword(Text(kCanary) + "y");
  driver->Choose(m_sServer, "Disconnect");
  driver->Choose(m_sServer, "Connect...");
  const Text sRefused = ErrorBox();
  EXPECT_NE(sRefused.find("does not let you in"), Text::npos) << sRefused;
  EXPECT_EQ(sRefused.find(kBeginningOfCanary), Text::npos);

  EXPECT_EQ(FilesWith("SELECT nothing FROM").size(), 2U)
      << "the log and the document: there is something to look through";
  EXPECT_EQ(FilesWith(kBeginningOfCanary), Texts());
  EXPECT_EQ(OfProcess("cmdline").find(kBeginningOfCanary), Text::npos);
  EXPECT_NE(OfProcess("cmdline"), "");
  for (char** variable = environ; *variable != nullptr; ++variable) {
    EXPECT_EQ(Text(*variable).find(kBeginningOfCanary), Text::npos);
  }
  EXPECT_EQ(OfProcess("environ").find(kBeginningOfCanary), Text::npos);
}

}  // namespace
}  // namespace orvane::scenarios::commands
