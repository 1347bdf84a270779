// Values go to the historian by parameters and come back what they were.
#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

using platform::Bytes;
using platform::Decimal;
using platform::Guid;

class parameters : public Conformance {
 protected:
  // Written by one connection, read by another.
  void ExpectKept(const Text& sType, const std::vector<Value>& values) {
    SCOPED_TRACE(sType);
    const auto writing = Open();
    if (!m_bMade) Run(*writing, "CREATE DATABASE \"P\" ");
    m_bMade = true;
    Run(*writing, "CREATE TABLE P..T (Nr INTEGER PRIMARY KEY, a " + sType + ")");
    std::int64_t llNumber = 0;
    for (const Value& vt : values) {
      With(*writing, "INSERT INTO P..T (Nr, a) VALUES (?, ?)", {++llNumber, vt});
    }
    const auto reading = Open();
    const auto rs = Run(*reading, "SELECT a FROM P..T ORDER BY Nr").recordset;
    ASSERT_EQ(rs->RecordCount(), static_cast<platform::RowIndex>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
      const Value vtRead = rs->ValueAt(static_cast<platform::RowIndex>(i), 0);
      EXPECT_TRUE(vtRead == values[i])
          << "wrote " << Shown(values[i]) << ", read " << Shown(vtRead);
      const auto* const dWritten = values[i].As<double>();
      const auto* const dRead = vtRead.As<double>();
      if (dWritten == nullptr || dRead == nullptr || *dWritten == 0) continue;
      EXPECT_EQ(std::bit_cast<std::uint64_t>(*dRead), std::bit_cast<std::uint64_t>(*dWritten));
    }
    // Each finds its row again.
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (values[i].IsNull()) continue;
      const auto found = With(*reading, "SELECT a FROM P..T WHERE Nr = ? AND a = ?",
                              {static_cast<std::int64_t>(i + 1), values[i]});
      EXPECT_EQ(found.recordset->RecordCount(), 1) << Shown(values[i]);
    }
    Run(*writing, "DROP TABLE P..T");
  }
  static Text Shown(const Value& vt) {
    return std::to_string(static_cast<int>(vt.Kind())) + " " + platform::ToText(vt);
  }

  std::mt19937_64 m_random{7};
  bool m_bMade = false;

  Text RandomText() {
    // Characters of one to four bytes, quotes, marks, ends of lines and zero bytes.
    static const std::vector<Text> kPieces{"a",  "'",  "\"", "?", Text(1, '\0'),     "\n",
                                           "\t", "\\", "%",  ";", "\xC3\xA9",        "\xE2\x82\xAC",
                                           "0",  "-",  ":",  " ", "\xF0\x9F\x9A\x80"};
    Text sText;
    for (std::size_t n = m_random() % 30; n > 0; --n) sText += kPieces[m_random() % kPieces.size()];
    if (Differs(Difference::kNoZeroCharacter)) std::erase(sText, '\0');
    return sText;
  }
  Bytes RandomBytes() {
    Bytes bytes(m_random() % 40);
    for (auto& byte : bytes) byte = static_cast<std::byte>(m_random());
    return bytes;
  }
};

ORVANE_ON_EVERY_ENGINE(parameters);

TEST_P(parameters, the_ends_of_each_type_come_back_as_they_were) {
  using namespace std::chrono;
  using Limits = std::numeric_limits<double>;
  constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  ExpectKept("BIGINT", {kLeast, kMost, std::int64_t{0}, std::int64_t{9007199254740993}, Value()});
  ExpectKept("INT", {std::numeric_limits<std::int32_t>::min(), 0, 7,
                     std::numeric_limits<std::int32_t>::max(), Value()});
  if (Differs(Difference::kTypesBindNothing)) ExpectKept("INT", {kMost, 0});
  ExpectKept("DOUBLE", {5e-324, Limits::max(), Limits::lowest(), 0.1, 1e22, 9007199254740993.0,
                        Limits::infinity(), -Limits::infinity(), Limits::min(), Value()});
  ExpectKept("BOOLEAN", {true, false, Value()});
  ExpectKept("TEXT", {"", Value(), "NULL", " ", "'", "1e5",
                      "12345678901234567890.12345678901234567890", "*-1h"});
  if (!Differs(Difference::kNoZeroCharacter)) {
    ExpectKept("TEXT", {Text("a\0b\0", 4), Text(1, '\0')});
  }
  ExpectKept("BLOB", {Bytes(), Bytes(3), Value(), Bytes(100000, std::byte{255})});
  ExpectKept("TIMESTAMP",
             {platform::Timestamp(microseconds(-1)), platform::Timestamp(microseconds(1)),
              platform::Timestamp(sys_days(year{1} / 1 / 1)),
              platform::Timestamp(sys_days(year{10000} / 1 / 1) - microseconds(1)), Value()});
  ExpectKept("DATE", {platform::Date(year{2024} / 2 / 29), platform::Date(year{1} / 1 / 1),
                      platform::Date(year{9999} / 12 / 31), Value()});
  ExpectKept("TIME", {platform::TimeOfDay(0), platform::TimeOfDay(hours(24)) - microseconds(1),
                      platform::TimeOfDay(microseconds(1)), Value()});
  Guid guid;
  guid.bytes.fill(0xAB);
  ExpectKept("GUID", {guid, Guid{}, Value()});
  if (Differs(Difference::kTypelessColumns))
    ExpectKept("", {std::int64_t{-5}, "5", 5.0, Value(), Bytes(2), ""});
}

TEST_P(parameters, minus_zero_is_kept) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"P\" ");
  Run(*opened, "CREATE TABLE P..T (a DOUBLE)");
  With(*opened, "INSERT INTO P..T VALUES (?)", {-0.0});
  const auto rs = Run(*opened, "SELECT a FROM P..T").recordset;
  EXPECT_EQ(*rs->ValueAt(0, 0).As<double>(), 0.0);
  EXPECT_EQ(std::signbit(*rs->ValueAt(0, 0).As<double>()), !Differs(Difference::kNoMinusZero));
}

TEST_P(parameters, random_values_of_each_type_come_back_as_they_were) {
  using namespace std::chrono;
  constexpr int kValues = 40;
  const auto many = [](const auto& make) {
    std::vector<Value> values;
    for (int i = 0; i < kValues; ++i) values.push_back(make());
    return values;
  };
  const auto random = [&] { return static_cast<std::int64_t>(m_random()); };
  ExpectKept("BIGINT", many([&]() -> Value { return random() >> (m_random() % 64); }));
  ExpectKept("INT", many([&]() -> Value { return static_cast<std::int32_t>(m_random()); }));
  ExpectKept("DOUBLE", many([&]() -> Value {
               double d = 0;
               do d = std::bit_cast<double>(m_random());
               while (std::isnan(d));
               return d;
             }));
  ExpectKept("TEXT", many([&]() -> Value { return RandomText(); }));
  ExpectKept("BLOB", many([&]() -> Value { return RandomBytes(); }));
  ExpectKept("TIMESTAMP", many([&]() -> Value {
               return platform::Timestamp(microseconds(random() % 60'000'000'000'000'000));
             }));
  ExpectKept("DATE", many([&]() -> Value {
               return platform::Date(days(static_cast<int>(m_random() % 700'000)));
             }));
  ExpectKept("TIME", many([&]() -> Value {
               return platform::TimeOfDay(static_cast<std::int64_t>(m_random() % 86'400'000'000));
             }));
  ExpectKept("GUID", many([&]() -> Value {
               Guid guid;
               for (auto& byte : guid.bytes) byte = static_cast<std::uint8_t>(m_random());
               return guid;
             }));
}

TEST_P(parameters, a_decimal_is_exact_or_refused_and_never_rounded) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"P\" ");
  Run(*opened, "CREATE TABLE P..T (a TEXT, b DECIMAL(30, 10))");
  const Text sWide = "12345678901234567890.0123456789";
  With(*opened, "INSERT INTO P..T (a) VALUES (?)", {Decimal{sWide}});
  EXPECT_EQ(Select(*opened, "SELECT a FROM P..T"), sWide + "\n");
  const Text sFailure =
      FailureOf([&] { With(*opened, "UPDATE P..T SET b = ?", {Decimal{sWide}}); });
  const bool bRounds = Differs(Difference::kDecimalsAreDoubles);
  EXPECT_EQ(sFailure.starts_with("6: "), bRounds) << sFailure;
  EXPECT_EQ(Select(*opened, "SELECT b FROM P..T"), (bRounds ? "" : sWide) + "\n");
}

TEST_P(parameters, what_is_no_number_is_kept_or_refused_and_never_lost) {
  const auto opened = OpenPlant();
  const double dNan = std::numeric_limits<double>::quiet_NaN();
  const Text sFailure =
      FailureOf([&] { With(*opened, "UPDATE Plant1..Data SET Value = ?", {dNan}); });
  EXPECT_EQ(sFailure,
            Differs(Difference::kNoNaN)
                ? "13: The database keeps no value that is no number (NaN): give a number or null."
                : "no failure");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Value IS NULL"), "0\n");
  const auto rs = Run(*opened, "SELECT Value FROM Plant1..Data").recordset;
  EXPECT_EQ(std::isnan(*rs->ValueAt(0, 0).As<double>()), !Differs(Difference::kNoNaN));
}

TEST_P(parameters, name_no_catalog_and_no_file) {
  const auto opened = Open();
  const auto create = [&](const Text& sText, const Value& vt) {
    return FailureOf([&] { With(*opened, sText, {vt}); });
  };
  EXPECT_TRUE(create("CREATE DATABASE ?", Value()).starts_with("3805: "));
  EXPECT_TRUE(create("CREATE DATABASE ?", "P").starts_with("3805: "));
  EXPECT_EQ(create("CREATE DATABASE \"P\" ON (PATH=?)", m_server->Path()),
            "3805: A parameter stands in a definition (character 30 of the statement); write the "
            "value itself into the statement.");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Orvane..Historians WHERE Name IN ('P', 'NULL')"),
            "0\n");
}

TEST_P(parameters, are_values_and_never_text) {
  const auto opened = OpenPlant();
  const Text sEvil = "'; DROP TABLE Plant1..Data; --";
  With(*opened, "INSERT INTO Plant1..Tags (Tag) VALUES (?)", {sEvil});
  const auto rs =
      With(*opened, "SELECT Tag, ? FROM Plant1..Tags WHERE Tag = ?", {FixedNow(), sEvil}).recordset;
  EXPECT_EQ(Rows(*rs), sEvil + "|2024-05-15 12:00:00\n");
  EXPECT_EQ(rs->FieldAt(1).Name(), "?");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

TEST_P(parameters, the_rows_that_must_change_are_told_and_else_nothing_changes) {
  const auto opened = OpenPlant();
  ado::Statement statement{"UPDATE Plant1..Data SET Value = ? WHERE Value < ?"};
  statement.parameters = {-1, 2};
  statement.rowsExpected = 1;
  EXPECT_EQ(FailureOf([&] { opened->Execute(statement, {}); }),
            "3812: The statement would have changed 2 rows instead of 1 and was undone: read the "
            "rows again, then repeat the change.");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Value < 0"), "0\n");
  statement.rowsExpected = 2;
  EXPECT_EQ(opened->Execute(statement, {}).lRecordsAffected, 2);
  ado::Statement create{"CREATE DATABASE \"Plant2\" "};
  create.rowsExpected = 1;
  EXPECT_TRUE(FailureOf([&] { opened->Execute(create, {}); }).starts_with("3812: "));
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Orvane..Historians WHERE Name = 'Plant2'"),
            "0\n");
}

TEST_P(parameters, a_time_is_found_to_the_microsecond) {
  const auto opened = OpenPlant();
  const auto exact = FixedNow() + std::chrono::microseconds(123456);
  With(*opened, "UPDATE Plant1..Data SET Timestamp = ? WHERE Timestamp = ?", {exact, FixedNow()});
  EXPECT_EQ(Select(*opened, "SELECT Timestamp FROM Plant1..Data WHERE Timestamp > '*'"),
            "2024-05-15 12:00:00.123456\n");
  EXPECT_EQ(
      Rows(*With(*opened, "SELECT Value FROM Plant1..Data WHERE Timestamp = ?", {exact}).recordset),
      "0.5\n");
  const auto days = Open("Time as Double = True; Time Zone = UTC;");
  EXPECT_EQ(Rows(*With(*days, "SELECT count(*) FROM Plant1..Data WHERE Timestamp = ?", {45427.25})
                      .recordset),
            "1\n");
}

}  // namespace
}  // namespace orvane::provider::conformance
