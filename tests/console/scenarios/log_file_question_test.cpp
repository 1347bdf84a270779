// The log file that a document brings, from its options down to the provider. Only a real historian
// writes one, so this stands beside the cases that every console is put to.
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

class log_file_question : public command_scenario {
 protected:
  void Open() {
    driver->OpenDocument([&](PropertyBag& pb, platform::ObjectFactory& objects) {
      WriteDocument(pb, objects);
      pb.WriteProperty("ServersNode_ServerNodes_ServerNode1_ExtendedOptions",
                       "Log File = " + m_sFile + ";Log Level = 2;");
    });
  }
  /// Connects the server; true when it was asked whether the log may be written.
  bool IsAsked(BoxAnswer answer) {
    driver->AnswerBox(answer);
    for (const char* sKey : {kStaticNode, kServer, kCatalogs}) driver->Expand(sKey);
    EXPECT_TRUE(driver->HasItem(kPlant));
    const auto boxes = driver->TakeBoxes();
    return boxes.size() == 1 && boxes[0].sText.find(m_sFile) != Text::npos;
  }

  QTemporaryDir m_folder;
  Text m_sFile = m_folder.filePath("asked.log").toStdString();
};

TEST_F(log_file_question, answered_no_connects_without_the_log_and_keeps_the_document_as_it_is) {
  Open();
  EXPECT_TRUE(IsAsked(BoxAnswer::No));
  EXPECT_FALSE(std::filesystem::exists(m_sFile));
  driver->SaveAndReopen();
  const Text sOptions = platform::ToText(Saved("ServerNodes_ServerNode1_ExtendedOptions"));
  EXPECT_NE(sOptions.rfind(";Log File = " + m_sFile + ";"), Text::npos) << sOptions;
  EXPECT_TRUE(IsAsked(BoxAnswer::Yes));
  EXPECT_TRUE(std::filesystem::exists(m_sFile));
}

TEST_F(log_file_question, answered_yes_for_a_file_that_is_no_log_connects_all_the_same) {
  std::ofstream(m_sFile) << "alias ls=rm\n";
  Open();
  driver->AnswerBox(BoxAnswer::Yes);
  for (const char* sKey : {kStaticNode, kServer, kCatalogs}) driver->Expand(sKey);
  EXPECT_TRUE(driver->HasItem(kPlant));
  const auto boxes = driver->TakeBoxes();
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_EQ(
      boxes[1].sText,
      "The log file " + m_sFile +
          " holds something else than a log of statements, which is left as it is; name a new "
          "file in the server's extended options. The server is connected without a log: put "
          "that right, then disconnect the server and connect it again.");
  std::ostringstream bytes;
  bytes << std::ifstream(m_sFile).rdbuf();
  EXPECT_EQ(bytes.str(), "alias ls=rm\n");
  // What is advised: the file is moved away, and the server connected again.
  std::filesystem::remove(m_sFile);
  driver->Choose(kServer, "Disconnect");
  driver->Choose(kServer, "Connect...");
  EXPECT_TRUE(driver->TakeBoxes().empty());
  EXPECT_TRUE(std::filesystem::exists(m_sFile));
}

}  // namespace
}  // namespace orvane::scenarios::commands
