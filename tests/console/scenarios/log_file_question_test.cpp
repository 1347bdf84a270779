// The log file that a document brings, from its options down to the provider. Only a real historian
// writes one, so this stands beside the cases that every console is put to.
#include <QTemporaryDir>
#include <filesystem>

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

}  // namespace
}  // namespace orvane::scenarios::commands
