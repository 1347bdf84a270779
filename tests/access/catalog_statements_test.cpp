#include "access/catalog_statements.h"

#include <gtest/gtest.h>

#include "tests/fakes/historian.h"
#include "tests/fakes/user_interface.h"

namespace orvane::access {
namespace {

using platform::Long;
using platform::Text;

TEST(catalog_statements, a_bare_create_ends_in_a_blank) {
  EXPECT_EQ(FormCreateDatabase("N", "", 0), "CREATE DATABASE \"N\" ");
}

TEST(catalog_statements, a_path_stands_in_the_storage_clause) {
  EXPECT_EQ(FormCreateDatabase("N", "P", 0), "CREATE DATABASE \"N\" ON (PATH='P')");
}

TEST(catalog_statements, a_size_drops_the_path) {
  EXPECT_EQ(FormCreateDatabase("N", "P", 10), "CREATE DATABASE \"N\" ON (SIZE=10)");
  EXPECT_EQ(FormCreateDatabase("N", "", 5), "CREATE DATABASE \"N\" ON (SIZE=5)");
}

TEST(catalog_statements, a_negative_size_is_no_size) {
  EXPECT_EQ(FormCreateDatabase("N", "", -1), "CREATE DATABASE \"N\" ");
  EXPECT_EQ(FormCreateDatabase("N", "P", -1), "CREATE DATABASE \"N\" ON (PATH='P')");
}

TEST(catalog_statements, a_drop_has_no_trailing_blank) {
  EXPECT_EQ(FormDropDatabase("N"), "DROP DATABASE \"N\"");
}

TEST(catalog_statements, the_identity_is_looked_up_by_name) {
  EXPECT_EQ(FormIdentityLookup("N"), "SELECT Identity FROM Orvane..Historians WHERE Name = 'N'");
}

TEST(catalog_statements, names_and_paths_are_not_escaped) {
  EXPECT_EQ(FormCreateDatabase("a\"b", "c'd", 0), "CREATE DATABASE \"a\"b\" ON (PATH='c'd')");
  EXPECT_EQ(FormDropDatabase("a\"b"), "DROP DATABASE \"a\"b\"");
  EXPECT_EQ(FormIdentityLookup("a'b"),
            "SELECT Identity FROM Orvane..Historians WHERE Name = 'a'b'");
}

struct create_catalog : testing::Test {
  create_catalog() {
    historian->servers.push_back({"S1", {}});
    historian->onExecute = [this](const Text& sText) -> platform::RecordsetPtr {
      pointersAtExecute.push_back(ui.MousePointer());
      if (bFail) throw platform::Failure(3805, "The catalog exists.");
      const bool bLookup = sText.starts_with("SELECT Identity");
      std::vector<fakes::FakeRecordset::Row> rows;
      if (bLookup && bKnown) rows.push_back({"{GUID}"});
      return std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{{"Identity"}},
                                                    rows);
    };
    cn->Open("Provider = P; Data Source = S1;", "", "", -1);
    historian->log.clear();
  }
  void ByGuid(const platform::Value& vtValue) { historian->options[5].second = vtValue; }
  Text Create(const Text& sPath = "", Long lSize = 0) {
    return CreateCatalog(objects, ui, cn, "N", sPath, lSize);
  }

  fakes::FakeHistorianPtr historian = std::make_shared<fakes::FakeHistorian>();
  fakes::FakeObjects objects{historian};
  platform::ConnectionPtr cn = objects.CreateConnection();
  fakes::FakeUserInterface ui;
  std::vector<Long> pointersAtExecute;
  bool bFail = false;
  bool bKnown = true;
};

TEST_F(create_catalog, sends_the_statement_under_the_hourglass_and_resets_it) {
  EXPECT_EQ(Create("P"), "N");
  EXPECT_EQ(historian->log, std::vector<Text>{"Execute CREATE DATABASE \"N\" ON (PATH='P')"});
  EXPECT_EQ(pointersAtExecute, std::vector<Long>{11});
  EXPECT_EQ(ui.pointers, (std::vector<Long>{11, 0}));
  EXPECT_EQ(ui.nDoEvents, 2);
}

TEST_F(create_catalog, known_by_name_no_lookup_is_sent) {
  for (const platform::Value& vtValue : {platform::Value(false), platform::Value()}) {
    ByGuid(vtValue);
    historian->log.clear();
    EXPECT_EQ(Create(), "N");
    EXPECT_EQ(historian->log, std::vector<Text>{"Execute CREATE DATABASE \"N\" "});
  }
}

TEST_F(create_catalog, known_by_guid_the_identity_is_returned) {
  ByGuid(true);
  EXPECT_EQ(Create(), "{GUID}");
  EXPECT_EQ(historian->log.back(),
            "Execute SELECT Identity FROM Orvane..Historians WHERE Name = 'N'");
  EXPECT_TRUE(ui.boxes.empty());
}

TEST_F(create_catalog, an_identity_that_is_not_found_is_told_once_and_stays_empty) {
  ByGuid(true);
  bKnown = false;
  EXPECT_EQ(Create(), "");
  ASSERT_EQ(ui.boxes.size(), 1U);
  EXPECT_EQ(ui.boxes[0].sText, "Historian GUID not found.");
  EXPECT_EQ(ui.boxes[0].sTitle, "");
  EXPECT_EQ(ui.boxes[0].buttons, platform::MsgBoxButtons::OkOnly);
  EXPECT_EQ(ui.icons[0], platform::MsgBoxIcon::Critical);
}

TEST_F(create_catalog, a_failed_creation_leaves_the_hourglass) {
  bFail = true;
  EXPECT_THROW(Create(), platform::Failure);
  EXPECT_EQ(ui.pointers, std::vector<Long>{11});
}

TEST_F(create_catalog, a_lookup_that_fails_comes_after_the_creation_and_without_the_hourglass) {
  ByGuid(true);
  const auto create = historian->onExecute;
  historian->onExecute = [&](const Text& sText) -> platform::RecordsetPtr {
    bFail = sText.starts_with("SELECT Identity");
    return create(sText);
  };
  EXPECT_THROW(Create(), platform::Failure);
  EXPECT_EQ(
      historian->log,
      (std::vector<Text>{"Execute CREATE DATABASE \"N\" ",
                         "Execute SELECT Identity FROM Orvane..Historians WHERE Name = 'N'"}));
  EXPECT_EQ(ui.pointers, (std::vector<Long>{11, 0}));
  EXPECT_TRUE(ui.boxes.empty());
}

TEST_F(create_catalog, a_missing_property_fails_after_the_creation) {
  historian->options.clear();
  try {
    Create();
    FAIL();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Description(),
              "The provider has no property \"Historians By GUID\"; check its name.");
  }
  EXPECT_EQ(historian->log, std::vector<Text>{"Execute CREATE DATABASE \"N\" "});
  EXPECT_EQ(ui.pointers, (std::vector<Long>{11, 0}));
}

TEST_F(create_catalog, an_identity_of_another_kind_is_given_as_text) {
  ByGuid(true);
  platform::Value vtIdentity;
  historian->onExecute = [&](const Text&) {
    return std::make_shared<fakes::FakeRecordset>(
        std::vector<fakes::FakeColumn>{{"Name"}, {"Identity"}},
        std::vector<fakes::FakeRecordset::Row>{{"first", vtIdentity}, {"second", "no"}});
  };
  vtIdentity = Long{17};
  EXPECT_EQ(Create(), "17");
  vtIdentity = platform::Value();
  EXPECT_EQ(Create(), "");
  EXPECT_TRUE(ui.boxes.empty()) << "a row was found";
}

TEST_F(create_catalog, without_a_connection_nothing_is_sent) {
  try {
    CreateCatalog(objects, ui, nullptr, "N", "", 0);
    FAIL();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), 91);
  }
  EXPECT_TRUE(ui.pointers.empty());
}

// ---- the calls themselves, in their order

/// What is asked of commands and of the screen, in one list.
struct catalog_calls : testing::Test {
  struct Screen : fakes::FakeUserInterface {
    explicit Screen(std::vector<Text>& all) : calls(all) {}
    using fakes::FakeUserInterface::MousePointer;
    void MousePointer(Long lPointer) override {
      calls.push_back("Pointer " + std::to_string(lPointer));
    }
    void DoEvents() override { calls.emplace_back("DoEvents"); }
    std::vector<Text>& calls;
  };
  struct Command : fakes::FakeCommand {
    Command(std::vector<Text>& all, const platform::ConnectionPtr& wanted)
        : calls(all), connection(wanted) {}
    void ActiveConnection(const platform::ConnectionPtr& cn) override {
      calls.emplace_back(cn == connection ? "ActiveConnection" : "ActiveConnection of another");
      fakes::FakeCommand::ActiveConnection(cn);
    }
    platform::RecordsetPtr Execute(Long* lRecordsAffected, Long lOptions) override {
      calls.push_back(CommandText() + "|" + (lRecordsAffected ? "affected" : "unset") + "|" +
                      std::to_string(lOptions));
      return std::make_shared<fakes::FakeRecordset>(
          std::vector<fakes::FakeColumn>{{"Identity"}},
          std::vector<fakes::FakeRecordset::Row>{{"{GUID}"}});
    }
    std::vector<Text>& calls;
    platform::ConnectionPtr connection;
  };
  struct Objects : fakes::FakeObjects {
    Objects(const fakes::FakeHistorianPtr& historian, std::vector<Text>& all)
        : FakeObjects(historian), calls(all) {}
    platform::CommandPtr CreateCommand() override {
      calls.emplace_back("CreateCommand");
      return std::make_shared<Command>(calls, connection);
    }
    std::vector<Text>& calls;
    platform::ConnectionPtr connection;
  };

  catalog_calls() {
    historian->servers.push_back({"S1", {}});
    historian->options[5].second = true;
    objects.connection = objects.CreateConnection();
    objects.connection->Open("Provider = P; Data Source = S1;", "", "", -1);
  }

  std::vector<Text> calls;
  fakes::FakeHistorianPtr historian = std::make_shared<fakes::FakeHistorian>();
  Objects objects{historian, calls};
  Screen screen{calls};
};

TEST_F(catalog_calls, a_creation_waits_under_the_hourglass_and_looks_up_without_it) {
  CreateCatalog(objects, screen, objects.connection, "N", "", 0);
  EXPECT_EQ(calls, (std::vector<Text>{
                       "CreateCommand", "ActiveConnection", "Pointer 11", "DoEvents",
                       "CREATE DATABASE \"N\" |unset|-1", "Pointer 0", "DoEvents",
                       "SELECT Identity FROM Orvane..Historians WHERE Name = 'N'|unset|-1"}));
}

TEST_F(catalog_calls, a_removal_is_one_statement_and_nothing_else) {
  DropCatalog(objects, objects.connection, "N");
  EXPECT_EQ(calls, (std::vector<Text>{"CreateCommand", "ActiveConnection",
                                      "DROP DATABASE \"N\"|unset|-1"}));
}

TEST_F(create_catalog, a_refused_removal_passes_through) {
  bFail = true;
  try {
    DropCatalog(objects, cn, "N");
    FAIL();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Description(), "The catalog exists.");
  }
}

TEST_F(create_catalog, dropping_sends_the_statement_and_leaves_the_pointer_alone) {
  DropCatalog(objects, cn, "N");
  EXPECT_EQ(historian->log, std::vector<Text>{"Execute DROP DATABASE \"N\""});
  EXPECT_TRUE(ui.pointers.empty());
  EXPECT_EQ(ui.nDoEvents, 0);
}

}  // namespace
}  // namespace orvane::access
