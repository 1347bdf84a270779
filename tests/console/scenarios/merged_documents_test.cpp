// Two colleagues who change one document in windows of different sizes, and a version control
// system that merges what they saved.
#include <QProcess>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/console/scenarios/host_driver.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

class merged_documents : public command_scenario {
 protected:
  using Change = std::function<void()>;

  /// Saves a document with the server, its tables and its queries, all of them expanded.
  void SaveBase() {
    OpenTables();
    driver->Choose(kServer, "Disconnect");
    ASSERT_TRUE(Window().SaveTo(Path("base")));
  }
  /// What a colleague makes of it in a window of that size; he sees the rows of a table, too.
  void SaveChanged(const char* sName, QSize size, const Change& change) {
    ASSERT_TRUE(Window().OpenDocument(Path("base")));
    Window().resize(size);
    for (const char* sKey : {kStaticNode, kServer, kCatalogs, kPlant, kQueries}) {
      driver->Expand(sKey);
    }
    change();
    // What is saved of an open connection is a change of the server.
    if (m_bDisconnect) driver->Choose(kServer, "Disconnect");
    ASSERT_TRUE(Window().SaveTo(Path(sName)));
    ASSERT_NE(BytesOf(sName), BytesOf("base"));
  }
  /// Opens the merged document, which must need no question.
  void Merge(const Change& ours, const Change& theirs) {
    SaveBase();
    SaveChanged("ours", {760, 500}, ours);
    SaveChanged("theirs", {640, 620}, theirs);
    ASSERT_EQ(QProcess::execute("git", {"merge-file", m_folder.filePath("ours"),
                                        m_folder.filePath("base"), m_folder.filePath("theirs")}),
              0)
        << BytesOf("ours");
    ASSERT_TRUE(Window().OpenDocument(Path("ours")));
    EXPECT_FALSE(Window().Document().IsUnsaved());
    ExpectNoBoxes();
  }
  /// Changes which rows of a table are shown.
  void FilterTable(const char* sTable, const Text& sFilter) {
    driver->AnswerForm([=](ShownForm& form) {
      form.Click("m_chkDefaultFilterCond");
      form.Type("m_txtFilterCond", sFilter);
      form.Click("m_btnOk");
    });
    driver->Choose(sTable, "Query...");
  }

  void EditQuery(const char* sQuery, const Text& sSql) {
    Fill({{"m_txtSqlStatement", sSql}});
    driver->Choose(sQuery, "Edit...");
  }

  console::MainWindow& Window() { return dynamic_cast<console::HostDriver&>(*driver).Window(); }
  Text Path(const char* sName) const { return m_folder.filePath(sName).toStdString(); }
  Text BytesOf(const char* sName) const {
    std::ostringstream bytes;
    bytes << std::ifstream(Path(sName), std::ios::binary).rdbuf();
    return bytes.str();
  }

  QTemporaryDir m_folder;
  bool m_bDisconnect = true;
};

TEST_F(merged_documents, queries_of_one_server_that_were_changed_by_two) {
  Merge([&] { EditQuery(kAllPumps, "SELECT 1"); }, [&] { EditQuery(kAllFans, "SELECT 2"); });
  const Text sQueries = "ServerNodes_ServerNode1_QueryNodes_QueryNode";
  EXPECT_EQ(Saved(sQueries + "1_Query"), Value("SELECT 1"));
  EXPECT_EQ(Saved(sQueries + "2_Query"), Value("SELECT 2"));
}

TEST_F(merged_documents, a_new_query_and_one_that_was_changed) {
  Merge([&] { NewQuery("New", "SELECT 3"); }, [&] { EditQuery(kAllFans, "SELECT 2"); });
  const Text sQueries = "ServerNodes_ServerNode1_QueryNodes_QueryNode";
  EXPECT_EQ(Saved(sQueries + "2_Query"), Value("SELECT 2"));
  EXPECT_EQ(Saved(sQueries + "3_Query"), Value("SELECT 3"));
}

TEST_F(merged_documents, queries_of_two_tables_of_one_catalog) {
  Merge([&] { FilterTable(kPumps, "Speed > 1"); }, [&] { FilterTable(kFans, "Name = 'F1'"); });
  const auto pumps = SavedTable("Pumps");
  ASSERT_NE(pumps, nullptr);
  EXPECT_EQ(pumps->FilterCondition(), "Speed > 1");
  const auto fans = SavedTable("Fans");
  ASSERT_NE(fans, nullptr);
  EXPECT_EQ(fans->FilterCondition(), "Name = 'F1'");
}

TEST_F(merged_documents, options_and_the_server_that_was_saved_while_it_was_connected) {
  Merge(
      [&] {
        Fill({{"m_txtMaxRows", "7"}}, "m_btnOK");
        driver->Choose(kStaticNode, "Options...");
      },
      [&] { m_bDisconnect = false; });
  EXPECT_EQ(Saved("MaxRows"), Value(platform::Long{7}));
  EXPECT_NE(platform::ToText(Saved("ServerNodes_ServerNode1_ExtendedOptions")), "");
}

}  // namespace
}  // namespace orvane::scenarios::commands
