// The six schema rowsets.
#include <set>

#include "platform/ado/column_flags.h"
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

using platform::DataType;
using platform::Recordset;
using platform::RecordsetPtr;
using platform::SchemaNumber;

class schema : public Conformance {
 protected:
  schema() { Reopen(""); }

  void Reopen(const Text& sOptions) { m_session = Open(sOptions); }
  void Run(const Text& sText) { SessionActs::Run(*m_session, sText); }
  RecordsetPtr Schema(SchemaNumber schema, const std::vector<Value>& vtRestrictions = {}) {
    return m_session->OpenSchema(schema, vtRestrictions, {});
  }
  static Text FieldNames(Recordset& rs) {
    Text sNames;
    for (platform::ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
      sNames += (column == 0 ? "" : " ") + rs.FieldAt(column).Name();
    }
    return sNames;
  }

  std::unique_ptr<ado::Session> m_session;
};

ORVANE_ON_EVERY_ENGINE(schema);

TEST_P(schema, list_catalogs_with_those_of_the_historian) {
  Run("CREATE DATABASE \"plant2\" ");
  Run("CREATE DATABASE \"Plant1\" ");
  const auto rs = Schema(SchemaNumber::Catalogs);
  EXPECT_EQ(FieldNames(*rs), "CATALOG_NAME DESCRIPTION");
  EXPECT_EQ(Cells(*rs, "CATALOG_NAME"), "Functions Orvane Plant1 plant2");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Catalogs, {Value("PLANT1")}), "CATALOG_NAME"), "Plant1");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Catalogs, {Value("Plant9")}), "CATALOG_NAME"), "");
}

TEST_P(schema, list_the_tables_of_a_catalog) {
  Run("CREATE DATABASE \"Plant1\" ");
  Run("CREATE VIEW Plant1..Recent AS SELECT * FROM Plant1..Data");
  const auto rs = Schema(SchemaNumber::Tables, {Value("Plant1")});
  EXPECT_EQ(FieldNames(*rs),
            "TABLE_CATALOG TABLE_SCHEMA TABLE_NAME TABLE_TYPE TABLE_GUID DESCRIPTION TABLE_PROPID "
            "DATE_CREATED DATE_MODIFIED");
  EXPECT_EQ(Cells(*rs, "TABLE_NAME"), "Data Data2 Recent Tags");
  EXPECT_EQ(Cells(*rs, "TABLE_TYPE"), "TABLE TABLE VIEW TABLE");
  EXPECT_EQ(Cells(*rs, "TABLE_CATALOG"), "Plant1 Plant1 Plant1 Plant1");
  const auto names = [&](const std::vector<Value>& vtRestrictions) {
    return Cells(*Schema(SchemaNumber::Tables, vtRestrictions), "TABLE_NAME");
  };
  EXPECT_EQ(names({Value("Plant1"), Value(), Value("data")}), "Data");
  EXPECT_EQ(names({Value("Plant1"), Value(), Value(), Value("VIEW")}), "Recent");
  EXPECT_EQ(names({Value("Plant1"), Value("dbo")}), "");
  EXPECT_EQ(names({Value("Plant1"), Value("")}), "Data Data2 Recent Tags");
  EXPECT_EQ(names({}), "Functions TimeExpressions Historians Data Data2 Recent Tags");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Tables, {Value("Orvane")}), "TABLE_TYPE"), "SYSTEM TABLE");
}

TEST_P(schema, fail_for_a_catalog_that_is_not_there) {
  EXPECT_EQ(FailureOf([&] { Schema(SchemaNumber::Tables, {Value("Plant9")}); }),
            "5: There is no catalog \"Plant9\" on this server; reload the list of catalogs.");
}

TEST_P(schema, list_the_columns_of_a_table) {
  Run("CREATE DATABASE \"Plant1\" ");
  Run("CREATE TABLE Plant1..Kinds (a INT NOT NULL, b BIGINT DEFAULT 7, c DOUBLE, d BOOLEAN, e "
      "GUID, f BLOB, g VARCHAR(20), h NUMERIC, i DATE, j TIME, k TIMESTAMP)");
  const std::vector<Value> vtKinds = {Value("Plant1"), Value(), Value("Kinds")};
  const auto rs = Schema(SchemaNumber::Columns, vtKinds);
  EXPECT_EQ(FieldNames(*rs),
            "TABLE_CATALOG TABLE_SCHEMA TABLE_NAME COLUMN_NAME COLUMN_GUID COLUMN_PROPID "
            "ORDINAL_POSITION COLUMN_HASDEFAULT COLUMN_DEFAULT COLUMN_FLAGS IS_NULLABLE DATA_TYPE "
            "TYPE_GUID CHARACTER_MAXIMUM_LENGTH CHARACTER_OCTET_LENGTH NUMERIC_PRECISION "
            "NUMERIC_SCALE DATETIME_PRECISION DESCRIPTION");
  EXPECT_EQ(Cells(*rs, "COLUMN_NAME"), "a b c d e f g h i j k");
  EXPECT_EQ(Cells(*rs, "ORDINAL_POSITION"), "1 2 3 4 5 6 7 8 9 10 11");
  EXPECT_EQ(Cells(*rs, "DATA_TYPE"), "3 20 5 11 72 128 130 131 133 134 135");
  EXPECT_EQ(Cells(*rs, "IS_NULLABLE"), "False True True True True True True True True True True");
  EXPECT_EQ(rs->FieldAt(10).Type(), DataType::Boolean);
  EXPECT_EQ(rs->FieldAt(11).Type(), DataType::Integer);
  EXPECT_EQ(rs->ValueAt(1, 7), Value(true));
  EXPECT_EQ(rs->ValueAt(1, 8), Value("7"));
  EXPECT_EQ(rs->ValueAt(6, 13), Value(20));
  EXPECT_EQ(
      Cells(*Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), Value("KINDS"), Value("G")}),
            "COLUMN_NAME"),
      "g");
  EXPECT_EQ(Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), Value("None")})->RecordCount(),
            0);
  EXPECT_EQ(Schema(SchemaNumber::Columns, {Value("Plant1")})->RecordCount(), 11 + 4 + 4 + 4);
  if (!Differs(Difference::kTypelessColumns)) return;
  Run("CREATE TABLE Plant1..Any (a)");
  EXPECT_EQ(
      Cells(*Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), Value("Any")}), "DATA_TYPE"),
      "0");
}

TEST_P(schema, tell_which_columns_take_values) {
  Run("CREATE DATABASE \"Plant1\" ");
  Run("CREATE TABLE Plant1..Made (a INT NOT NULL, b INT, c INT GENERATED ALWAYS AS (a + 1) "
      "STORED)");
  Run("CREATE VIEW Plant1..Seen AS SELECT a, b FROM Plant1..Made");
  const auto takeValues = [&](const char* sTable) {
    constexpr platform::Long kWrite = 0x4;
    const auto rs = Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), Value(sTable)});
    Text sColumns;
    for (; !rs->Eof(); rs->MoveNext()) {
      const auto lFlags = platform::ToLong(rs->Fields().Item("COLUMN_FLAGS").Value());
      if ((lFlags & kWrite) == 0) continue;
      sColumns += platform::ToText(rs->Fields().Item("COLUMN_NAME").Value());
    }
    return sColumns;
  };
  EXPECT_EQ(takeValues("Made"), "ab");
  EXPECT_EQ(takeValues("Seen"), "");
}

TEST_P(schema, tell_of_columns_what_their_rows_tell) {
  Run("CREATE DATABASE \"Plant1\" ");
  Run("CREATE TABLE Plant1..Made (n DECIMAL(9, 2), d DATE, t TIME, s TIMESTAMP, x TEXT, l BIGINT)");
  const auto columns = Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), Value("Made")});
  const auto rows = SessionActs::Run(*m_session, "SELECT * FROM Plant1..Made").recordset;
  for (platform::ColumnIndex column = 0; !columns->Eof(); columns->MoveNext(), ++column) {
    namespace flags = platform::column_flags;
    const auto lFlags = platform::ToLong(columns->Fields().Item("COLUMN_FLAGS").Value());
    const platform::Field& field = rows->FieldAt(column);
    EXPECT_EQ((lFlags & flags::kTakesBeyond) != 0,
              field.TextOrder() == platform::TextOrder::BeyondValues)
        << field.Name();
    EXPECT_EQ((lFlags & flags::kNullIsLast) != 0, field.NullIsLast()) << field.Name();
  }
}

TEST_P(schema, list_indexes_part_by_part) {
  Run("CREATE DATABASE \"Plant1\" ");
  Run("CREATE TABLE Plant1..Odd (a INT NOT NULL, b TEXT, c INT, PRIMARY KEY (c, a), UNIQUE (b))");
  Run("CREATE UNIQUE INDEX Plant1..Few ON Odd (a DESC) WHERE a > 5");
  Run("CREATE INDEX Plant1..Worked ON Odd (a, a + c)");
  const std::vector<Value> vtOdd{"Plant1", Value(), Value(), Value(), "ODD"};
  const auto rs = Schema(SchemaNumber::Indexes, vtOdd);
  EXPECT_EQ(FieldNames(*rs),
            "TABLE_CATALOG TABLE_SCHEMA TABLE_NAME INDEX_CATALOG INDEX_SCHEMA INDEX_NAME "
            "PRIMARY_KEY UNIQUE CLUSTERED TYPE FILL_FACTOR INITIAL_SIZE NULLS SORT_BOOKMARKS "
            "AUTO_UPDATE NULL_COLLATION ORDINAL_POSITION COLUMN_NAME COLUMN_GUID COLUMN_PROPID "
            "COLLATION CARDINALITY PAGES FILTER_CONDITION INTEGRATED");
  if (Differs(Difference::kIndexesOfKeysOwn)) {
    EXPECT_EQ(Cells(*rs, "INDEX_NAME"),
              "Few sqlite_autoindex_Odd_1 sqlite_autoindex_Odd_1 sqlite_autoindex_Odd_2 Worked "
              "Worked");
  } else {
    EXPECT_EQ(Cells(*rs, "INDEX_NAME"), "Few Odd_b_key Odd_pkey Odd_pkey Worked Worked");
  }
  EXPECT_EQ(Cells(*rs, "TABLE_NAME"), "Odd Odd Odd Odd Odd Odd");
  // By the indexes' names, which differ for those of the table's own rules.
  Text sKey;
  Text sUnique;
  for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
    const auto field = [&](const char* sName) {
      return platform::ToText(rs->Fields().Item(sName).Value());
    };
    const Text sPart = field("COLUMN_NAME") + field("ORDINAL_POSITION") + " ";
    if (field("PRIMARY_KEY") == "True") sKey += sPart;
    if (field("PRIMARY_KEY") == "False" && field("UNIQUE") == "True") sUnique += sPart;
  }
  EXPECT_EQ(sKey, "c1 a2 ");
  EXPECT_EQ(sUnique, "a1 b1 ");
  EXPECT_EQ(rs->ValueAt(4, 17), Value("a"));
  EXPECT_TRUE(rs->ValueAt(5, 17).IsNull());
  EXPECT_EQ(Cells(*rs, "COLLATION"), "2 1 1 1 1 1");
  EXPECT_NE(Cells(*rs, "FILTER_CONDITION").find("a > 5"), Text::npos);
  EXPECT_TRUE(rs->ValueAt(5, 23).IsNull());
  std::vector<Value> vtOne = vtOdd;
  vtOne[2] = "Few";
  EXPECT_EQ(Schema(SchemaNumber::Indexes, vtOne)->RecordCount(), 1);
  vtOne[3] = 3;
  EXPECT_EQ(Schema(SchemaNumber::Indexes, vtOne)->RecordCount(), 0);
  EXPECT_NE(
      Cells(*Schema(SchemaNumber::Indexes, {Value("Plant1")}), "INDEX_NAME").find("DataByTime"),
      Text::npos);
  EXPECT_EQ(Schema(SchemaNumber::Indexes, {Value("Plant1"), Value("x")})->RecordCount(), 0);
}

TEST_P(schema, list_primary_keys_in_the_order_of_the_key) {
  Run("CREATE DATABASE \"Plant1\" ");
  Run("CREATE TABLE Plant1..Odd (a INT, b INT, c INT, PRIMARY KEY (c, a))");
  const auto rs = Schema(SchemaNumber::PrimaryKeys, {Value("Plant1"), Value(), Value("Odd")});
  EXPECT_EQ(FieldNames(*rs),
            "TABLE_CATALOG TABLE_SCHEMA TABLE_NAME COLUMN_NAME COLUMN_GUID COLUMN_PROPID ORDINAL "
            "PK_NAME");
  EXPECT_EQ(Cells(*rs, "COLUMN_NAME"), "c a");
  EXPECT_EQ(Cells(*rs, "ORDINAL"), "1 2");
  EXPECT_EQ(Cells(*rs, "PK_NAME"), "PK_Odd PK_Odd");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::PrimaryKeys, {Value("Plant1"), Value(), Value("Data")}),
                  "COLUMN_NAME"),
            "Tag Timestamp");
}

TEST_P(schema, list_one_best_match_for_every_type_that_columns_have) {
  const auto rs = Schema(SchemaNumber::ProviderTypes);
  EXPECT_EQ(FieldNames(*rs),
            "TYPE_NAME DATA_TYPE COLUMN_SIZE LITERAL_PREFIX LITERAL_SUFFIX CREATE_PARAMS "
            "IS_NULLABLE CASE_SENSITIVE SEARCHABLE UNSIGNED_ATTRIBUTE FIXED_PREC_SCALE "
            "AUTO_UNIQUE_VALUE LOCAL_TYPE_NAME MINIMUM_SCALE MAXIMUM_SCALE GUID TYPELIB VERSION "
            "IS_LONG BEST_MATCH IS_FIXEDLENGTH");
  std::set<int> best;
  std::set<int> all;
  Text sNames;
  for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
    const int iType = platform::ToLong(rs->Fields().Item("DATA_TYPE").Value());
    all.insert(iType);
    if (rs->Fields().Item("BEST_MATCH").Value() != Value(true)) continue;
    EXPECT_TRUE(best.insert(iType).second) << iType;
    sNames += platform::ToText(rs->Fields().Item("TYPE_NAME").Value()) + " ";
  }
  EXPECT_EQ(best, all);
  EXPECT_EQ(sNames, GetParam().sBestTypes);
  for (const int iType : {3, 5, 11, 20, 72, 128, 130, 131, 133, 134, 135}) {
    EXPECT_TRUE(best.contains(iType)) << iType;
    const auto one = Schema(SchemaNumber::ProviderTypes, {Value(iType), Value(true)});
    ASSERT_EQ(one->RecordCount(), 1) << iType;
    EXPECT_NE((" " + sNames).find(" " + platform::ToText(one->ValueAt(0, 0)) + " "), Text::npos);
  }
}

TEST_P(schema, name_types_that_make_columns_of_their_type) {
  Run("CREATE DATABASE \"Plant1\" ");
  const auto types = Schema(SchemaNumber::ProviderTypes);
  for (types->MoveFirst(); !types->Eof(); types->MoveNext()) {
    const Text sType = platform::ToText(types->Fields().Item("TYPE_NAME").Value());
    Run("CREATE TABLE Plant1..Made (a " + sType + ")");
    EXPECT_EQ(Cells(*Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), Value("Made")}),
                    "DATA_TYPE"),
              platform::ToText(types->Fields().Item("DATA_TYPE").Value()))
        << sType;
    Run("DROP TABLE Plant1..Made");
  }
}

TEST_P(schema, take_a_catalog_without_a_name_for_none_in_particular) {
  Run("CREATE DATABASE \"Plant1\" ");
  const auto names = [&](SchemaNumber schema, const std::vector<Value>& vtRestrictions) {
    return Cells(*Schema(schema, vtRestrictions), "TABLE_CATALOG");
  };
  EXPECT_NE(names(SchemaNumber::Tables, {Value("")}).find("Plant1"), Text::npos);
  EXPECT_EQ(names(SchemaNumber::Tables, {Value("")}), names(SchemaNumber::Tables, {}));
  EXPECT_EQ(names(SchemaNumber::Columns, {Value(""), Value(), Value("Data")}),
            names(SchemaNumber::Columns, {Value(), Value(), Value("Data")}));
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Catalogs, {Value("")}), "CATALOG_NAME"),
            Cells(*Schema(SchemaNumber::Catalogs), "CATALOG_NAME"));
  // In a statement it is a name, of no catalog.
  EXPECT_NE(Failing(*m_session, "SELECT 1 FROM \"\"..Data"), "no failure");
  EXPECT_NE(Failing(*m_session, "DROP DATABASE \"\""), "no failure");
  EXPECT_NE(Failing(*m_session, "CREATE DATABASE \"\""), "no failure");
}

TEST_P(schema, show_prefixed_names_and_understand_them) {
  Run("CREATE DATABASE \"Plant1\" ");
  Reopen("Identifier Prefixes = True;");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Catalogs), "CATALOG_NAME"),
            "Orv_Functions Orv_Orvane Orv_Plant1");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Tables, {Value("Orv_Plant1")}), "TABLE_NAME"),
            "Orv_Data Orv_Data2 Orv_Tags");
  // From the listing, and again without it.
  for (int i = 0; i < 2; ++i) {
    const auto rs =
        Schema(SchemaNumber::Columns, {Value("Orv_Plant1"), Value(), Value("Orv_Data")});
    EXPECT_EQ(Cells(*rs, "COLUMN_NAME"), "Tag Timestamp Value Status");
    EXPECT_EQ(Cells(*rs, "TABLE_NAME"), "Orv_Data Orv_Data Orv_Data Orv_Data");
  }
  EXPECT_EQ(
      Cells(*Schema(SchemaNumber::PrimaryKeys, {Value("Orv_Plant1"), Value(), Value("Orv_Data")}),
            "COLUMN_NAME"),
      "Tag Timestamp");
}

TEST_P(schema, show_identities_where_the_option_says_so) {
  Run("CREATE DATABASE \"Plant1\" ");
  Reopen("Historians By GUID = True;Identifier Prefixes = True;");
  const auto rs = Schema(SchemaNumber::Catalogs);
  const Text sNames = Cells(*rs, "CATALOG_NAME");
  EXPECT_EQ(sNames.substr(0, 26), "Orv_Functions Orv_Orvane {");
  const Text sIdentity = sNames.substr(25);
  EXPECT_EQ(sIdentity.size(), 38U);
  EXPECT_EQ(platform::ToText(rs->ValueAt(2, 1)), "Plant1");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Tables, {Value(sIdentity)}), "TABLE_NAME"),
            "Orv_Data Orv_Data2 Orv_Tags");
}

TEST_P(schema, show_times_as_numbers_where_the_option_says_so) {
  Run("CREATE DATABASE \"Plant1\" ");
  Reopen("Time as Double = True;");
  EXPECT_EQ(
      Cells(*Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), Value("Data")}), "DATA_TYPE"),
      "130 5 5 130");
}

TEST_P(schema, fail_for_an_unknown_number_and_a_closed_connection) {
  EXPECT_EQ(FailureOf([&] { Schema(static_cast<SchemaNumber>(99)); }),
            "3808: The provider has no schema rowset of the number 99; ask for another one.");
  m_session->Close();
  EXPECT_EQ(FailureOf([&] { Schema(SchemaNumber::Catalogs); }),
            "3704: The connection is closed; connect again.");
}

}  // namespace
}  // namespace orvane::provider::conformance
