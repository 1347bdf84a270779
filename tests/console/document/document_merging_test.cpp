#include <algorithm>
#include <cstdlib>

#include "console/document/document_format.h"
#include "tests/console/document/document_fixture.h"

namespace orvane::console {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;

/// Documents that went through a version control system, an editor or a mail.
class document_changed_outside : public DocumentTest {
 protected:
  using Change = std::function<void(DocumentBag& bag)>;

  static Text Server(int i) {
    return "ServersNode_ServerNodes_ServerNode" + std::to_string(i) + "_";
  }
  static void AddServer(DocumentBag& bag, int i) {
    bag.WriteProperty(Server(i) + "Provider", "ORVOLEDB");
    bag.WriteProperty(Server(i) + "Server", "S" + std::to_string(i));
    bag.WriteProperty(Server(i) + "User", "");
    bag.WriteProperty(Server(i) + "CatalogNodes_CatalogNodeCount", Long{0});
    bag.WriteProperty(Server(i) + "QueryNodes_QueryNodeCount", Long{0});
  }
  /// A document of three servers with the change made, in a file of that name.
  void MakeServers(const Text& sName, const Change& change = {}) const {
    auto content = std::make_unique<DocumentContent>();
    DocumentBag& bag = content->SnapIn("SnapIn");
    bag.WriteProperty("ServersNode", true);
    bag.WriteProperty("ServersNode_MaxRows", Long{100});
    bag.WriteProperty("ServersNode_ServerNodes_ServerNodeCount", Long{3});
    for (int i = 1; i <= 3; ++i) AddServer(bag, i);
    content->View().WriteProperty("Splitter.State", "AAAA");
    if (change) change(bag);
    Document().SaveAs(Path(sName), std::move(content));
  }
  /// Merges both changes of the same document, into "ours"; true when nothing stood against it.
  bool Merges(const Change& ours, const Change& theirs) const {
    MakeServers("base");
    MakeServers("ours", ours);
    MakeServers("theirs", theirs);
    return Merge();
  }
  bool Merge() const {
    const Text sCommand = "cd '" + m_folder.path().toStdString() +
                          "' && git merge-file ours base theirs >git.txt 2>&1";
    return std::system(sCommand.c_str()) == 0;
  }
  static Value Read(const Document& document, const Text& sName) {
    return document.Content().FindSnapIn("SnapIn")->ReadProperty(sName, {});
  }
};

TEST_F(document_changed_outside, changes_of_different_servers_merge_and_fit_their_seals) {
  const auto change = [](int iServer, const char* sProperty) {
    return [=](DocumentBag& bag) { bag.WriteProperty(Server(iServer) + sProperty, "changed"); };
  };
  const char* const properties[] = {"Provider", "User", "QueryNodes_QueryNodeCount"};
  for (const char* const sOurs : properties) {
    for (const char* const sTheirs : properties) {
      ASSERT_TRUE(Merges(change(1, sOurs), change(2, sTheirs))) << BytesOf(Path("git.txt"));
      const auto merged = Document::Open(Path("ours"));
      EXPECT_FALSE(merged->IsUnsaved());
      EXPECT_EQ(Read(*merged, Server(1) + sOurs), Value("changed"));
      EXPECT_EQ(Read(*merged, Server(2) + sTheirs), Value("changed"));
    }
  }
}

TEST_F(document_changed_outside, a_new_server_merges_with_a_change_of_the_one_before) {
  const auto add = [](DocumentBag& bag) {
    bag.WriteProperty("ServersNode_ServerNodes_ServerNodeCount", Long{4});
    AddServer(bag, 4);
  };
  const auto change = [](DocumentBag& bag) {
    bag.WriteProperty(Server(3) + "QueryNodes_QueryNodeCount", Long{1});
    bag.WriteProperty(Server(3) + "QueryNodes_QueryNode1_QueryName", "new");
  };
  ASSERT_TRUE(Merges(add, change));
  const auto merged = Document::Open(Path("ours"));
  EXPECT_FALSE(merged->IsUnsaved());
  EXPECT_EQ(Read(*merged, Server(4) + "Server"), Value("S4"));
  EXPECT_EQ(Read(*merged, Server(3) + "QueryNodes_QueryNode1_QueryName"), Value("new"));
}

TEST_F(document_changed_outside, options_merge_with_a_change_of_the_first_server) {
  ASSERT_TRUE(Merges([](DocumentBag& bag) { bag.WriteProperty("ServersNode_MaxRows", Long{5}); },
                     [](DocumentBag& bag) { bag.WriteProperty(Server(1) + "Provider", "x"); }));
  EXPECT_FALSE(Document::Open(Path("ours"))->IsUnsaved());
}

/// A document of two servers with two catalogs of two tables and two queries each.
class merged_parts : public document_changed_outside {
 protected:
  /// A change of one property, told by its name.
  struct Changed {
    Text sName;
    Value vtValue;
  };

  static void AddItems(DocumentBag& bag) {
    for (int iServer = 1; iServer <= 2; ++iServer) {
      const Text sCatalogs = Server(iServer) + "CatalogNodes_";
      const Text sQueries = Server(iServer) + "QueryNodes_";
      bag.WriteProperty(sCatalogs + "CatalogNodeCount", Long{2});
      for (const Text sCatalog : {"CatalogNode1_", "CatalogNode2_"}) {
        bag.WriteProperty(sCatalogs + sCatalog + "Catalog", sCatalog);
        bag.WriteProperty(sCatalogs + sCatalog + "TableNodes_TableNodeCount", Long{2});
        for (const Text sTable : {"TableNodes_TableNode1_", "TableNodes_TableNode2_"}) {
          bag.WriteProperty(sCatalogs + sCatalog + sTable + "Query",
                            std::make_shared<FakeObject>("{}"));
          bag.WriteProperty(sCatalogs + sCatalog + sTable + "DefaultFilterCondition", true);
        }
      }
      bag.WriteProperty(sQueries + "QueryNodeCount", Long{2});
      for (const int i : {1, 2}) AddQuery(bag, iServer, i);
    }
  }
  static void AddQuery(DocumentBag& bag, int iServer, int i) {
    const Text sQuery = Server(iServer) + "QueryNodes_QueryNode" + std::to_string(i) + "_";
    bag.WriteProperty(sQuery + "QueryName", "Query " + std::to_string(i));
    bag.WriteProperty(sQuery + "Query", "SELECT 1");
  }
  bool MergeItems(const Change& ours, const Change& theirs) const {
    const auto with = [](const Change& change) {
      return [change](DocumentBag& bag) {
        AddItems(bag);
        if (change) change(bag);
      };
    };
    MakeServers("base", with({}));
    MakeServers("ours", with(ours));
    MakeServers("theirs", with(theirs));
    return Merge();
  }
  static Change Of(const Changed& changed) {
    return [changed](DocumentBag& bag) { bag.WriteProperty(changed.sName, changed.vtValue); };
  }
};

TEST_F(merged_parts, changes_of_different_items_merge_and_fit_their_seals) {
  const Text sCatalog = Server(1) + "CatalogNodes_CatalogNode1_";
  std::vector<Changed> changes = {
      {"ServersNode_MaxRows", Long{5}},
      {Server(1) + "User", "changed"},
      {sCatalog + "Catalog", "changed"},
      {sCatalog + "TableNodes_TableNode1_Query", std::make_shared<FakeObject>("changed")},
      {sCatalog + "TableNodes_TableNode2_Query", std::make_shared<FakeObject>("changed")},
      {Server(1) + "CatalogNodes_CatalogNode2_Catalog", "changed"},
      {Server(1) + "QueryNodes_QueryNode1_Query", "changed"},
      {Server(1) + "QueryNodes_QueryNode2_QueryName", "changed"},
      {Server(2) + "Provider", "changed"},
      {Server(2) + "QueryNodes_QueryNode1_Query", "changed"}};
  for (const Changed& ours : changes) {
    for (const Changed& theirs : changes) {
      if (ours.sName == theirs.sName) continue;
      ASSERT_TRUE(MergeItems(Of(ours), Of(theirs))) << ours.sName << " against " << theirs.sName;
      const auto merged = Document::Open(Path("ours"), CreateFakeObject);
      EXPECT_FALSE(merged->IsUnsaved()) << ours.sName << " against " << theirs.sName;
      // What a save would write of it is what is there.
      EXPECT_EQ(WriteDocument(merged->Content()), BytesOf(Path("ours")));
      MakeServers("expected", [&](DocumentBag& bag) {
        AddItems(bag);
        Of(ours)(bag);
        Of(theirs)(bag);
      });
      EXPECT_EQ(BytesOf(Path("ours")), BytesOf(Path("expected")));
    }
  }
}

TEST_F(merged_parts, a_new_query_merges_with_whatever_else_is_changed) {
  const auto add = [](DocumentBag& bag) {
    bag.WriteProperty(Server(1) + "QueryNodes_QueryNodeCount", Long{3});
    AddQuery(bag, 1, 3);
  };
  for (const Text& sName :
       {Text("ServersNode_MaxRows"), Server(1) + "User", Server(2) + "User",
        Server(1) + "CatalogNodes_CatalogNode2_TableNodes_TableNode2_DefaultFilterCondition",
        Server(1) + "QueryNodes_QueryNode1_Query", Server(1) + "QueryNodes_QueryNode2_Query"}) {
    ASSERT_TRUE(MergeItems(add, Of({sName, Long{7}}))) << sName;
    const auto merged = Document::Open(Path("ours"), CreateFakeObject);
    EXPECT_FALSE(merged->IsUnsaved()) << sName;
    EXPECT_EQ(Read(*merged, sName), Value(Long{7}));
    EXPECT_EQ(Read(*merged, Server(1) + "QueryNodes_QueryNode3_Query"), Value("SELECT 1"));
  }
  const auto addTable = [](DocumentBag& bag) {
    const Text sTables = Server(1) + "CatalogNodes_CatalogNode2_TableNodes_";
    bag.WriteProperty(sTables + "TableNodeCount", Long{3});
    bag.WriteProperty(sTables + "TableNode3_DefaultFilterCondition", true);
  };
  EXPECT_TRUE(MergeItems(add, addTable));
  EXPECT_FALSE(Document::Open(Path("ours"), CreateFakeObject)->IsUnsaved());
}

TEST_F(merged_parts, items_added_to_lists_of_different_depth_merge) {
  const auto add = [](const Text& sCount, Long lCount, const Text& sProperty) -> Change {
    return [=](DocumentBag& bag) {
      bag.WriteProperty(sCount, lCount);
      bag.WriteProperty(sProperty, "new");
    };
  };
  const Text sCatalogs = Server(3) + "CatalogNodes_";
  const Text sTables = Server(2) + "CatalogNodes_CatalogNode2_TableNodes_";
  const std::vector<Change> changes = {
      add("ServersNode_ServerNodes_ServerNodeCount", 4, Server(4) + "Server"),
      add(Server(3) + "QueryNodes_QueryNodeCount", 1, Server(3) + "QueryNodes_QueryNode1_Query"),
      add(sCatalogs + "CatalogNodeCount", 1, sCatalogs + "CatalogNode1_Catalog"),
      add(Server(2) + "CatalogNodes_CatalogNodeCount", 3,
          Server(2) + "CatalogNodes_CatalogNode3_Catalog"),
      add(sTables + "TableNodeCount", 3, sTables + "TableNode3_Query"),
      add(Server(2) + "QueryNodes_QueryNodeCount", 3, Server(2) + "QueryNodes_QueryNode3_Query")};
  for (std::size_t i = 0; i < changes.size(); ++i) {
    for (std::size_t j = 0; j < changes.size(); ++j) {
      if (i == j) continue;
      ASSERT_TRUE(MergeItems(changes[i], changes[j])) << i << " against " << j;
      EXPECT_FALSE(Document::Open(Path("ours"), CreateFakeObject)->IsUnsaved()) << i << ", " << j;
    }
  }
}

TEST_F(merged_parts, two_new_queries_of_one_server_stand_against_each_other) {
  const auto add = [](const char* sText) {
    return [=](DocumentBag& bag) {
      bag.WriteProperty(Server(1) + "QueryNodes_QueryNodeCount", Long{3});
      AddQuery(bag, 1, 3);
      bag.WriteProperty(Server(1) + "QueryNodes_QueryNode3_Query", sText);
    };
  };
  EXPECT_FALSE(MergeItems(add("anna"), add("bert")));
  EXPECT_TRUE(MergeItems(add("same"), add("same")));
}

TEST_F(document_changed_outside, changes_of_one_server_stand_against_each_other_and_it_says_so) {
  ASSERT_FALSE(Merges([](DocumentBag& bag) { bag.WriteProperty(Server(1) + "User", "anna"); },
                      [](DocumentBag& bag) { bag.WriteProperty(Server(1) + "User", "bert"); }));
  EXPECT_NE(SentenceOf([&] {
              Document::Open(Path("ours"));
            }).find("holds a merge that was not settled, at line "),
            Text::npos);
}

TEST_F(document_changed_outside, one_settled_by_hand_is_asked_about_and_opened_as_unsaved) {
  ASSERT_FALSE(Merges([](DocumentBag& bag) { bag.WriteProperty(Server(1) + "User", "anna"); },
                      [](DocumentBag& bag) { bag.WriteProperty(Server(1) + "User", "bert"); }));
  // What is ours is kept.
  std::istringstream lines(BytesOf(Path("ours")));
  Text sSettled;
  bool bTheirs = false;
  for (Text sLine; std::getline(lines, sLine);) {
    const bool bMark = sLine.starts_with("<<<<<<<") || sLine.starts_with("=======") ||
                       sLine.starts_with(">>>>>>>");
    if (bMark) bTheirs = sLine.starts_with("=======");
    if (!bMark && !bTheirs) sSettled += sLine + "\n";
  }
  sSettled.replace(sSettled.find("anna"), 4, "carl");
  WriteBytes(Path(), sSettled);

  int nAsked = 0;
  const auto no = [&](DocumentDoubt doubt) {
    EXPECT_EQ(doubt, DocumentDoubt::ChangedOutside);
    ++nAsked;
    return false;
  };
  EXPECT_EQ(Document::Open(Path(), {}, nullptr, no), nullptr);
  EXPECT_EQ(nAsked, 1);
  const auto opened = Document::Open(Path(), {}, nullptr, [](DocumentDoubt) { return true; });
  EXPECT_TRUE(opened->IsUnsaved());
  EXPECT_FALSE(opened->IsReadOnly());
  EXPECT_FALSE(opened->IsChangedOnDisk());
  EXPECT_EQ(Read(*opened, Server(1) + "User"), Value("carl"));
  EXPECT_EQ(BytesOf(Path()), sSettled);
  opened->Save(ContentOf("saved"));
  EXPECT_FALSE(opened->IsUnsaved());
  EXPECT_FALSE(Document::Open(Path())->IsUnsaved());
}

TEST_F(document_changed_outside, opening_the_one_that_is_open_keeps_the_hold_when_it_is_declined) {
  MakeServers("plant.orvc");
  const auto present = Document::Open(Path());
  Text sBytes = BytesOf(Path());
  sBytes.replace(sBytes.find("\"S2\""), 4, "\"X2\"");
  WriteBytes(Path(), sBytes);
  EXPECT_EQ(Document::Open(Path(), {}, present.get(), [](DocumentDoubt) { return false; }),
            nullptr);
  EXPECT_FALSE(present->IsReadOnly());
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
  present->Save(ContentOf("mine"), true);
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("mine"));
}

TEST_F(document_changed_outside, line_ends_of_another_system_are_no_change) {
  MakeServers("plant.orvc");
  Text sBytes = "\xEF\xBB\xBF";
  for (const char c : BytesOf(Path())) sBytes.append(c == '\n' ? "\r\n" : Text(1, c));
  WriteBytes(Path(), sBytes);
  EXPECT_FALSE(Document::Open(Path())->IsUnsaved());
}

}  // namespace
}  // namespace orvane::console
