// What the cases of the administrator's commands begin with: a server with a few tables, a document
// with two named queries, and the user's part in dialogs. One thread.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "platform/conversions.h"
#include "tests/scenarios/driver.h"
#include "tests/scenarios/written_document.h"

namespace orvane::scenarios::commands {

using platform::DataType;
using platform::PropertyBag;
using platform::Value;
using Texts = std::vector<Text>;

inline constexpr const char* kServer = "localhost";
inline constexpr const char* kCatalogs = "localhost.Catalogs";
inline constexpr const char* kPlant = "localhost.Catalogs.Plant";
inline constexpr const char* kPumps = "localhost.Catalogs.Plant.Pumps";
inline constexpr const char* kFans = "localhost.Catalogs.Plant.Fans";
inline constexpr const char* kData = "localhost.Catalogs.Plant.Data";
inline constexpr const char* kQueries = "localhost.Queries";
inline constexpr const char* kAllPumps = "localhost.Queries.All pumps";
inline constexpr const char* kAllFans = "localhost.Queries.All fans";

inline ServerSetup Localhost() {
  return {kServer,
          {{"Plant",
            {{"Pumps",
              {{"Name", DataType::WChar, false, true}, {"Speed", DataType::Double, true, false}},
              {{"P1", 1.5}, {"P2", 2.5}, {"P3", 3.5}}},
             {"Fans", {{"Name", DataType::WChar, false, true}}, {{"F1"}}},
             {"Data",
              {{"Tag", DataType::WChar, false, true},
               {"Timestamp", DataType::DBTimeStamp, false, true},
               {"Value", DataType::Double, true, false}},
              {}}}},
           {"Functions", {}},
           {"Orvane", {}}}};
}

/// A document with the server and two named queries.
inline void WriteDocument(PropertyBag& pb, platform::ObjectFactory&) {
  Write(pb, {.sServer = kServer,
             .queries = {{"All pumps", "SELECT Name FROM Plant..Pumps"},
                         {"All fans", "SELECT Name FROM Plant..Fans"}}});
}

class command_scenario : public testing::Test {
 protected:
  command_scenario() { driver->AddServer(Localhost()); }

  void OpenServers() {
    driver->OpenDocument(WriteDocument);
    driver->Expand(kStaticNode);
  }
  void OpenTables() {
    OpenServers();
    for (const char* sKey : {kServer, kCatalogs, kPlant}) driver->Expand(sKey);
  }
  void OpenQueries() {
    OpenServers();
    driver->Expand(kServer);
    driver->Expand(kQueries);
  }
  /// Answers the next dialog by its button alone.
  void Answer(const Text& sButton) {
    driver->AnswerForm([=](ShownForm& form) { form.Click(sButton); });
  }
  /// Types into boxes of the next dialog and presses the button.
  void Fill(const std::map<Text, Text>& texts, const Text& sButton = "m_btnOk") {
    driver->AnswerForm([=](ShownForm& form) {
      for (const auto& [sBox, sText] : texts) form.Type(sBox, sText);
      form.Click(sButton);
    });
  }
  void NewQuery(const Text& sName, const Text& sSql) {
    Fill({{"m_txtName", sName}, {"m_txtSqlStatement", sSql}});
    driver->Choose(kQueries, "New Query...");
  }
  Texts FirstColumn() {
    Texts texts;
    for (const auto& row : driver->Grid().rows) texts.push_back(row.at(0));
    return texts;
  }
  Value Saved(const Text& sName) { return driver->SavedValue("ServersNode_" + sName); }
  Text SavedQueryName(int iNumber) {
    return platform::ToText(Saved("ServerNodes_ServerNode1_QueryNodes_QueryNode" +
                                  std::to_string(iNumber) + "_QueryName"));
  }
  /// The table's query as a save writes it, in the document that is opened by doing so.
  platform::TableQueryPtr SavedTable(const Text& sTable, Boolean* bDefaultFilter = nullptr) {
    driver->SaveAndReopen();
    const Text sCatalogs = "ServerNodes_ServerNode1_CatalogNodes_";
    for (int c = 1; !Saved(sCatalogs + "CatalogNode" + std::to_string(c) + "_Catalog").IsNull();
         ++c) {
      const Text sTables = sCatalogs + "CatalogNode" + std::to_string(c) + "_TableNodes_TableNode";
      for (int t = 1; !Saved(sTables + std::to_string(t) + "_Query").IsNull(); ++t) {
        const Text sNode = sTables + std::to_string(t);
        const Value vtQuery = Saved(sNode + "_Query");
        const auto query =
            std::dynamic_pointer_cast<platform::TableQuery>(*vtQuery.As<platform::ObjectPtr>());
        if (!query || query->Table() != sTable) continue;
        if (bDefaultFilter) {
          *bDefaultFilter = platform::ToBoolean(Saved(sNode + "_DefaultFilterCondition"));
        }
        return query;
      }
    }
    return nullptr;
  }
  void ExpectNoBoxes() {
    for (const BoxSeen& box : driver->TakeBoxes()) ADD_FAILURE() << box.sText;
  }
  /// Expects one "Error" box with only an OK button, and gives its text.
  Text ErrorBox() {
    const auto boxes = driver->TakeBoxes();
    EXPECT_EQ(boxes.size(), 1U);
    if (boxes.size() != 1) return {};
    EXPECT_EQ(boxes[0].sTitle, "Error");
    EXPECT_EQ(boxes[0].buttons, platform::MsgBoxButtons::OkOnly);
    EXPECT_FALSE(boxes[0].sText.empty());
    return boxes[0].sText;
  }
  void ExpectQuestion(const Text& sText, const Text& sTitle) {
    const auto boxes = driver->TakeBoxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].sText, sText);
    EXPECT_EQ(boxes[0].sTitle, sTitle);
    EXPECT_EQ(boxes[0].buttons, platform::MsgBoxButtons::YesNo);
  }

  std::unique_ptr<Driver> driver = MakeDriver();
};

}  // namespace orvane::scenarios::commands
