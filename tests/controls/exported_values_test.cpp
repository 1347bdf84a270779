// Values of each type of column as an engine gives them, exported in each form and read back: SQL
// by the engine itself, CSV by an import, JSON Lines by a parser. They are the same to the last
// bit. ORVANE_ROWS sets the number of rows.
#include <bit>
#include <charconv>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "exports/row_import.h"
#include "exports/row_writer.h"
#include "exports/typed_text.h"
#include "tests/controls/edited_table.h"
#include "tests/controls/on_engines.h"
#include "tests/controls/random_rows.h"

namespace orvane::controls {
namespace {

using exports::Form;
using platform::ColumnIndex;
using platform::Recordset;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::Text;
using platform::Value;
using platform::ValueKind;
using tests::Difference;

/// A decimal of many digits, where the engine keeps them.
constexpr const char* kWide =
    "-123456789012345678901234567890.1234567890123456789012345678901234567890";

/// What a parser makes of one line: of a number its digits, of all else what JSON has it for.
class JsonRow final : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit JsonRow(const Text& sLine) { EXPECT_TRUE(nlohmann::json::sax_parse(sLine, this)); }

  std::vector<Text> values;

  bool null() override { return Take("null"); }
  bool boolean(bool bValue) override { return Take(bValue ? "true" : "false"); }
  bool number_integer(number_integer_t llValue) override { return Take(std::to_string(llValue)); }
  bool number_unsigned(number_unsigned_t uValue) override { return Take(std::to_string(uValue)); }
  bool number_float(number_float_t, const string_t& sDigits) override { return Take(sDigits); }
  bool string(string_t& sText) override { return Take('"' + sText); }
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return true; }
  bool key(string_t&) override { return true; }
  bool end_object() override { return true; }
  bool start_array(std::size_t) override { return false; }
  bool end_array() override { return false; }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& e) override {
    ADD_FAILURE() << e.what();
    return false;
  }

 private:
  bool Take(const Text& sValue) {
    values.push_back(sValue);
    return true;
  }
};

class exported_values : public testing::Test, public tests::OnEngines {
 protected:
  exported_values() {
    for (const char* const sTable : {"First", "Second"}) {
      m_server->Run(Text("CREATE TABLE P..") + sTable + tests::kColumnOfEachType);
    }
    Fill();
    m_rows = Rows("First");
  }

  /// With random values, as they are.
  void Fill() {
    const char* const sRows = std::getenv("ORVANE_ROWS");
    const std::int64_t llRows = sRows ? std::atoll(sRows) : 24;
    const auto random = std::make_shared<tests::RandomRows>(31, !Differs(Difference::kNoNaN));
    const bool bWide = !Differs(Difference::kDecimalsAreDoubles);
    Put("INSERT INTO P..First VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        [=, llNumber = std::int64_t{0}](std::vector<Value>& values) mutable {
          if (++llNumber > llRows) return false;
          values = random->Row(llNumber);
          for (Value& vtValue : values) {
            const auto* const sText = vtValue.As<Text>();
            if (sText == nullptr || !Differs(Difference::kNoZeroCharacter)) continue;
            Text sKept = *sText;
            std::erase(sKept, '\0');
            vtValue = sKept;
          }
          if (bWide && llNumber % 4 == 0) values.back() = platform::Decimal{kWide};
          // All texts that have a meaning somewhere, and a number that is the last of its kind.
          constexpr const char* kTexts[] = {"", "NULL", "'", "\\", "?", "--", "it''s; DROP"};
          if (llNumber <= std::ssize(kTexts)) values[5] = kTexts[llNumber - 1];
          if (llNumber == 1) values[3] = 5e-324;
          if (llNumber == 2) values[2] = std::numeric_limits<std::int64_t>::min();
          if (llNumber == 3) values[3] = -0.0;
          if (llNumber == 4) values[3] = -std::numeric_limits<double>::infinity();
          return true;
        });
  }
  void Put(const Text& sSql, platform::ParameterRows rows) {
    const auto command = m_server->CreateCommand();
    command->ActiveConnection(m_cn);
    command->CommandText(sSql);
    command->Batch(std::move(rows));
    command->Execute();
  }
  RecordsetPtr Rows(const Text& sTable) {
    return m_server->Run(m_cn, "SELECT * FROM P.." + sTable + " ORDER BY Nr");
  }
  Text Written(exports::WriterOptions options) const {
    options.zone = m_zone;
    const auto writer = exports::MakeRowWriter(std::move(options));
    Text sOut;
    writer->Begin(*m_rows, exports::AllColumns(*m_rows), sOut);
    for (RowIndex row = 0; row < m_rows->RecordCount(); ++row) writer->Row(*m_rows, row, sOut);
    return sOut;
  }
  static std::string Shown(const Value& vtValue) {
    return std::to_string(static_cast<int>(vtValue.Kind())) + " " + platform::ToText(vtValue);
  }
  void ExpectSameIn(const Text& sTable) {
    const RecordsetPtr rs = Rows(sTable);
    ASSERT_EQ(rs->RecordCount(), m_rows->RecordCount());
    for (RowIndex row = 0; row < rs->RecordCount(); ++row) {
      for (ColumnIndex column = 0; column < rs->FieldCount(); ++column) {
        const Value vtWas = m_rows->ValueAt(row, column);
        const Value vtIs = rs->ValueAt(row, column);
        EXPECT_TRUE(SameValue(vtWas, vtIs)) << rs->FieldAt(column).Name() << " of row " << row + 1
                                            << ": " << Shown(vtWas) << " became " << Shown(vtIs);
      }
    }
  }

  std::shared_ptr<tests::HistorianServer> m_server = tests::HistorianServer::Make(GetParam());
  const platform::ConnectionPtr m_cn = m_server->Connect("Time Zone = Europe/Berlin;");
  const zones::TimeZone m_zone{"Europe/Berlin"};
  RecordsetPtr m_rows;
};

ORVANE_ON_ENGINES(exported_values);

TEST_P(exported_values, of_sql_come_back_from_the_engine_that_runs_it) {
  const Text sSql = Written({.form = Form::Sql, .sInto = "\"P\"..\"Second\""});
  // A statement ends with a line; so may a text.
  const Text sHead = "INSERT INTO \"P\"..\"Second\" (";
  ASSERT_TRUE(sSql.starts_with(sHead));
  for (std::size_t n = 0; n < sSql.size();) {
    const std::size_t nEnd = std::min(sSql.find(");\n" + sHead, n), sSql.size() - 3) + 1;
    const Text sStatement = sSql.substr(n, nEnd - n);
    EXPECT_NO_THROW(m_server->Run(m_cn, sStatement)) << sStatement;
    n = nEnd + 2;
  }
  ExpectSameIn("Second");
}

TEST_P(exported_values, of_csv_come_back_by_an_import) {
  std::istringstream file(Written({.form = Form::Csv}));
  std::vector<exports::ImportColumn> columns;
  for (ColumnIndex column = 0; column < m_rows->FieldCount(); ++column) {
    columns.push_back({m_rows->FieldAt(column).Name(), m_rows->FieldAt(column).Type(), false,
                       Differs(Difference::kDecimalsAreDoubles)});
  }
  const auto rows = std::make_shared<exports::RowImport>(file, "Second", columns, m_zone);
  Put("INSERT INTO P..Second VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      [rows](std::vector<Value>& values) { return rows->Next(values); });
  ExpectSameIn("Second");
}

TEST_P(exported_values, of_json_are_told_to_any_parser) {
  std::istringstream lines(Written({.form = Form::JsonLines}));
  Text sLine;
  RowIndex row = 0;
  for (; std::getline(lines, sLine); ++row) {
    const JsonRow read(sLine);
    ASSERT_EQ(read.values.size(), static_cast<std::size_t>(m_rows->FieldCount()));
    for (ColumnIndex column = 0; column < m_rows->FieldCount(); ++column) {
      const Value vtWas = m_rows->ValueAt(row, column);
      const Text& sRead = read.values[static_cast<std::size_t>(column)];
      SCOPED_TRACE(m_rows->FieldAt(column).Name() + ": " + Shown(vtWas) + " is " + sRead);
      if (const auto* const d = vtWas.As<double>(); d != nullptr && std::isfinite(*d)) {
        double dRead = 0;
        const auto end = std::from_chars(sRead.data(), sRead.data() + sRead.size(), dRead);
        EXPECT_EQ(end.ptr, sRead.data() + sRead.size());
        EXPECT_TRUE(SameValue(vtWas, dRead));
      } else if (vtWas.IsNull()) {
        EXPECT_EQ(sRead, "null");
      } else if (const auto* const bWas = vtWas.As<bool>()) {
        EXPECT_EQ(sRead, *bWas ? "true" : "false");
      } else if (const auto* const time = vtWas.As<platform::Timestamp>()) {
        Text sTime = sRead.substr(1);
        sTime[sTime.find('T')] = ' ';
        EXPECT_EQ(
            exports::ReadTyped(platform::DataType::DBTimeStamp, sTime, zones::TimeZone::Utc(), {}),
            Value(*time));
      } else if (vtWas.Kind() == ValueKind::Long || vtWas.Kind() == ValueKind::LongLong ||
                 vtWas.Kind() == ValueKind::Decimal) {
        EXPECT_EQ(sRead, platform::ToText(vtWas));
      } else {
        EXPECT_EQ(sRead, '"' + platform::ToText(vtWas));
      }
    }
  }
  EXPECT_EQ(row, m_rows->RecordCount());
}

// A column without a type has the kind with the value.
TEST(exported_values_of_any_type, come_back_with_their_kinds) {
  const auto server = tests::HistorianServer::Make();
  const auto cn = server->Connect();
  server->Run(cn, "CREATE TABLE P..T (Nr INTEGER PRIMARY KEY, v)");
  const double dInfinity = std::numeric_limits<double>::infinity();
  const std::vector<Value> values{5,
                                  5.0,
                                  -0.0,
                                  dInfinity,
                                  -dInfinity,
                                  5e-324,
                                  std::numeric_limits<std::int64_t>::min(),
                                  std::numeric_limits<std::int64_t>::max(),
                                  "5",
                                  "",
                                  Text("\0\n'", 3),
                                  Text("\xFF"),
                                  platform::Bytes{},
                                  platform::Bytes{std::byte{0}, std::byte{255}},
                                  Value()};
  ado::Command command;
  command.ActiveConnection(cn);
  command.CommandText("INSERT INTO P..T (v) VALUES (?)");
  command.Batch([&, n = std::size_t{0}](std::vector<Value>& next) mutable {
    if (n == values.size()) return false;
    next = {values[n++]};
    return true;
  });
  command.Execute();
  const RecordsetPtr rs = server->Run(cn, "SELECT v FROM P..T ORDER BY Nr");
  const auto writer = exports::MakeRowWriter({.form = Form::Sql, .sInto = "P..T"});
  server->Run(cn, "DELETE FROM P..T");
  Text sOut;
  writer->Begin(*rs, {0}, sOut);
  for (RowIndex row = 0; row < rs->RecordCount(); ++row) {
    sOut.clear();
    writer->Row(*rs, row, sOut);
    server->Run(cn, sOut);
  }
  const RecordsetPtr back = server->Run(cn, "SELECT v FROM P..T ORDER BY Nr");
  ASSERT_EQ(back->RecordCount(), std::ssize(values));
  for (RowIndex row = 0; row < back->RecordCount(); ++row) {
    EXPECT_TRUE(SameValue(back->ValueAt(row, 0), rs->ValueAt(row, 0)))
        << row << ": " << platform::ToText(back->ValueAt(row, 0));
  }
}

}  // namespace
}  // namespace orvane::controls
