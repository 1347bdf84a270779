#include "access/schema_browsing.h"

#include <gtest/gtest.h>

#include "tests/fakes/historian.h"

namespace orvane::access {
namespace {

using fakes::FakeRecordset;
using platform::DataType;
using platform::Long;
using platform::SchemaNumber;
using platform::Text;

class schema_browsing : public testing::Test {
 protected:
  schema_browsing() {
    historian->servers = {{"S1",
                           {{"Plant",
                             {{"Pumps",
                               {{"Name", DataType::WChar, false, true},
                                {"Speed", DataType::Double, true, false},
                                {"Serial", DataType::Guid, true, false}},
                               {}},
                              {"Fans", {{"Name"}}, {}}}},
                            {"Empty", {}}}}};
    cn->Open("Data Source = S1;", "", "", -1);
    historian->log.clear();
    query.Catalog("Plant");
    query.Table("Pumps");
  }

  std::vector<Text> Columns() {
    std::vector<Text> names;
    for (Long i = 1; i <= query.Columns().Count(); ++i) names.push_back(query.Columns().Item(i));
    return names;
  }
  std::vector<Text> Structure() {
    std::vector<Text> rows;
    ForEachStructureRow(cn, "Plant", "Pumps", [&](const TableStructureRow& row) {
      rows.push_back(row.sColumn + "|" + row.sTypeName + "|" + (row.nullable() ? "yes" : "no") +
                     "|" + (row.bKey ? "key" : ""));
    });
    return rows;
  }
  template <class Step>
  static Long FailureOf(Step&& step) {
    try {
      step();
    } catch (const platform::Failure& failure) {
      sDescription = failure.Description();
      return failure.Number();
    }
    return 0;
  }
  /// The schema gives a rowset prepared by the case.
  void Gives(SchemaNumber schema, const std::shared_ptr<FakeRecordset>& rs) {
    historian->schemas[schema] = [rs](auto) {
      rs->MoveFirst();
      rs->nMoveFirst = 0;
      return rs;
    };
  }
  void Refuses(SchemaNumber schema) {
    historian->schemas[schema] = [](auto) -> platform::RecordsetPtr {
      throw platform::Failure(3808, "The provider has no such rowset.");
    };
  }

  inline static Text sDescription;
  fakes::FakeHistorianPtr historian = std::make_shared<fakes::FakeHistorian>();
  platform::ConnectionPtr cn = std::make_shared<fakes::FakeConnection>(historian);
  fakes::FakeTableQuery query;
};

TEST_F(schema_browsing, catalogs_come_from_an_unrestricted_rowset_in_its_order) {
  std::vector<Text> names;
  ForEachCatalog(cn, [&](const Text& sName) { names.push_back(sName); });
  EXPECT_EQ(names, (std::vector<Text>{"Plant", "Empty"}));
  EXPECT_EQ(historian->log, (std::vector<Text>{"OpenSchema 1()"}));
}

TEST_F(schema_browsing, tables_are_restricted_to_the_catalog) {
  std::vector<Text> names;
  ForEachTable(cn, "Plant", [&](const Text& sName) { names.push_back(sName); });
  EXPECT_EQ(names, (std::vector<Text>{"Pumps", "Fans"}));
  EXPECT_EQ(historian->log, (std::vector<Text>{"OpenSchema 20(Plant)"}));
}

TEST_F(schema_browsing, what_was_read_before_a_failure_was_handed_over) {
  const auto rs =
      std::make_shared<FakeRecordset>(std::vector<fakes::FakeColumn>{{"CATALOG_NAME"}},
                                      std::vector<FakeRecordset::Row>{{"A"}, {"B"}, {"C"}});
  rs->failing = {{2, 0}};
  Gives(SchemaNumber::Catalogs, rs);
  std::vector<Text> names;
  EXPECT_EQ(FailureOf([&] { ForEachCatalog(cn, [&](const Text& s) { names.push_back(s); }); }),
            3021);
  EXPECT_EQ(names, (std::vector<Text>{"A", "B"}));
}

TEST_F(schema_browsing, a_rowset_without_the_field_fails) {
  Gives(SchemaNumber::Tables,
        std::make_shared<FakeRecordset>(std::vector<fakes::FakeColumn>{{"OTHER"}},
                                        std::vector<FakeRecordset::Row>{{"A"}}));
  EXPECT_EQ(FailureOf([&] { ForEachTable(cn, "Plant", [](const Text&) {}); }), 3265);
}

TEST_F(schema_browsing, without_a_connection_fails_with_91_and_a_clear_sentence) {
  const auto ignore = [](const Text&) {};
  EXPECT_EQ(FailureOf([&] { ForEachCatalog(nullptr, ignore); }), 91);
  EXPECT_EQ(sDescription, "The server is not connected; connect it first.");
  EXPECT_EQ(FailureOf([&] { ForEachTable(nullptr, "Plant", ignore); }), 91);
  EXPECT_EQ(FailureOf([&] { GetTableColumns(query, nullptr); }), 91);
}

TEST_F(schema_browsing, an_empty_column_list_takes_the_servers_columns_in_their_order) {
  GetTableColumns(query, cn);
  EXPECT_EQ(Columns(), (std::vector<Text>{"Name", "Speed", "Serial"}));
  EXPECT_EQ(historian->log, (std::vector<Text>{"OpenSchema 4(Plant,null,Pumps)"}));
}

TEST_F(schema_browsing, a_filled_column_list_takes_no_new_columns) {
  query.Columns().Add("Speed");
  query.Columns().Add("Name");
  GetTableColumns(query, cn);
  EXPECT_EQ(Columns(), (std::vector<Text>{"Speed", "Name"}));
}

TEST_F(schema_browsing, a_last_column_that_the_server_lacks_is_removed) {
  query.Columns().Add("Name");
  query.Columns().Add("name");
  GetTableColumns(query, cn);
  EXPECT_EQ(Columns(), (std::vector<Text>{"Name"}));
}

TEST_F(schema_browsing, an_index_past_the_shortened_list_fails_with_9) {
  for (const char* sColumn : {"Gone", "Name", "Speed"}) query.Columns().Add(sColumn);
  EXPECT_EQ(FailureOf([&] { GetTableColumns(query, cn); }), 9);
  EXPECT_EQ(sDescription,
            "The table \"Pumps\" of the catalog \"Plant\" has lost columns that its query names, "
            "and the query loses them too; expand the catalog again to go on.");
  EXPECT_EQ(Columns(), (std::vector<Text>{"Name", "Speed"}));
  GetTableColumns(query, cn);
  EXPECT_EQ(Columns(), (std::vector<Text>{"Name", "Speed"})) << "the next time goes on";
}

TEST_F(schema_browsing, the_entry_behind_a_removed_one_is_not_examined) {
  for (const char* sColumn : {"Gone", "GoneToo", "Name"}) query.Columns().Add(sColumn);
  EXPECT_EQ(FailureOf([&] { GetTableColumns(query, cn); }), 9);
  EXPECT_EQ(Columns(), (std::vector<Text>{"GoneToo", "Name"}));
}

TEST_F(schema_browsing, structure_lists_columns_with_type_null_and_key) {
  EXPECT_EQ(Structure(),
            (std::vector<Text>{"Name|text|no|key", "Speed|double|yes|", "Serial||yes|"}));
  EXPECT_EQ(historian->log,
            (std::vector<Text>{"OpenSchema 4(Plant,null,Pumps)", "OpenSchema 28(Plant,null,Pumps)",
                               "OpenSchema 22()"}));
}

TEST_F(schema_browsing, structure_takes_the_first_best_match_of_the_type) {
  historian->Table("S1", "Plant", "Pumps")->columns = {{"Count", DataType::Integer, true, false}};
  EXPECT_EQ(Structure(), (std::vector<Text>{"Count|integer|yes|"}));
}

TEST_F(schema_browsing, structure_compares_key_names_exactly) {
  Gives(SchemaNumber::PrimaryKeys,
        std::make_shared<FakeRecordset>(std::vector<fakes::FakeColumn>{{"COLUMN_NAME"}},
                                        std::vector<FakeRecordset::Row>{{"NAME"}, {"Serial"}}));
  EXPECT_EQ(Structure(),
            (std::vector<Text>{"Name|text|no|", "Speed|double|yes|", "Serial||yes|key"}));
}

TEST_F(schema_browsing, structure_is_empty_without_a_message_when_a_rowset_is_refused) {
  for (const auto schema :
       {SchemaNumber::Columns, SchemaNumber::PrimaryKeys, SchemaNumber::ProviderTypes}) {
    historian->schemas.clear();
    historian->log.clear();
    Refuses(schema);
    EXPECT_TRUE(Structure().empty());
    EXPECT_EQ(historian->log.size(), 3U) << "the other two are asked for all the same";
  }
}

TEST_F(schema_browsing, structure_is_empty_without_a_message_when_a_field_is_missing) {
  Gives(
      SchemaNumber::ProviderTypes,
      std::make_shared<FakeRecordset>(std::vector<fakes::FakeColumn>{{"DATA_TYPE"}, {"TYPE_NAME"}},
                                      std::vector<FakeRecordset::Row>{}));
  EXPECT_TRUE(Structure().empty());
}

TEST_F(schema_browsing, structure_of_a_disconnected_server_is_empty) {
  cn = nullptr;
  EXPECT_TRUE(Structure().empty());
}

TEST_F(schema_browsing, structure_goes_on_when_a_key_row_cannot_be_read) {
  const auto keys =
      std::make_shared<FakeRecordset>(std::vector<fakes::FakeColumn>{{"COLUMN_NAME"}},
                                      std::vector<FakeRecordset::Row>{{"broken"}, {"Speed"}});
  keys->failing = {{0, 0}};
  Gives(SchemaNumber::PrimaryKeys, keys);
  EXPECT_EQ(Structure(),
            (std::vector<Text>{"Name|text|no|", "Speed|double|yes|key", "Serial||yes|"}));
  EXPECT_EQ(keys->nMoveFirst, 3) << "each scan goes back to the first row";
}

TEST_F(schema_browsing, structure_passes_by_a_type_row_that_cannot_be_compared) {
  const auto types = std::make_shared<FakeRecordset>(
      std::vector<fakes::FakeColumn>{{"DATA_TYPE"}, {"BEST_MATCH"}, {"TYPE_NAME"}},
      std::vector<FakeRecordset::Row>{{Long{130}, true, "broken"}, {Long{130}, true, "text"}});
  types->failing = {{0, 0}};
  Gives(SchemaNumber::ProviderTypes, types);
  EXPECT_EQ(Structure(), (std::vector<Text>{"Name|text|no|key", "Speed||yes|", "Serial||yes|"}));
}

TEST_F(schema_browsing, structure_names_no_type_when_the_first_best_match_cannot_be_read) {
  const auto types = std::make_shared<FakeRecordset>(
      std::vector<fakes::FakeColumn>{{"DATA_TYPE"}, {"BEST_MATCH"}, {"TYPE_NAME"}},
      std::vector<FakeRecordset::Row>{{Long{130}, true, "broken"}, {Long{130}, true, "text"}});
  types->failing = {{0, 2}};
  Gives(SchemaNumber::ProviderTypes, types);
  EXPECT_EQ(Structure(), (std::vector<Text>{"Name||no|key", "Speed||yes|", "Serial||yes|"}));
}

TEST_F(schema_browsing, structure_fails_when_a_columns_own_field_cannot_be_read) {
  const auto columns = std::make_shared<FakeRecordset>(
      std::vector<fakes::FakeColumn>{{"COLUMN_NAME"}, {"DATA_TYPE"}, {"IS_NULLABLE"}},
      std::vector<FakeRecordset::Row>{{"Name", Long{130}, false}, {"Speed", Long{5}, true}});
  columns->failing = {{1, 1}};
  Gives(SchemaNumber::Columns, columns);
  EXPECT_EQ(FailureOf([&] { Structure(); }), 3021);
}

TEST_F(schema_browsing, structure_passes_on_failures_of_what_is_done_with_a_row) {
  EXPECT_EQ(FailureOf([&] {
              ForEachStructureRow(cn, "Plant", "Pumps", [](const TableStructureRow&) {
                throw platform::Failure(9, "The list is full.");
              });
            }),
            9);
}

}  // namespace
}  // namespace orvane::access
