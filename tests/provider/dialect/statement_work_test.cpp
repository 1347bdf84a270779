// What reading a statement costs is counted, and grows as its text does.
#include "provider/dialect/statement_work.h"

#include <functional>

#include "tests/provider/dialect/translated.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

constexpr const char* kTooMuch = "The statement takes too much work to read; send it in parts.";

bool IsEnough(const Text& sStatement, std::size_t nMost) {
  TwoPlants schema;
  StatementWork work(Deadline({}, {}), nMost);
  const TranslationSettings settings{zones::TimeZone("UTC"), {}, false, false};
  try {
    Translate(sStatement, ReadTokens(sStatement, work), schema, settings, work);
    return true;
  } catch (const platform::Failure& failed) {
    EXPECT_EQ(failed.Description(), kTooMuch);
    return false;
  }
}

// The least that lets the statement through, to a hundredth.
std::size_t WorkOf(const Text& sStatement) {
  std::size_t nEnough = 1024;
  while (!IsEnough(sStatement, nEnough)) {
    if (testing::Test::HasFailure()) return nEnough;
    nEnough *= 2;
  }
  std::size_t nTooFew = 0;
  while (nEnough - nTooFew > 1 + nEnough / 100) {
    const std::size_t nMiddle = (nEnough + nTooFew) / 2;
    (IsEnough(sStatement, nMiddle) ? nEnough : nTooFew) = nMiddle;
  }
  return nEnough;
}

Text Joined(int n, const Text& sSeparator, const std::function<Text(Text)>& part) {
  Text sAll;
  for (int i = 0; i < n; ++i) sAll += (i == 0 ? "" : sSeparator) + part(std::to_string(i));
  return sAll;
}
Text Times(int n, const Text& sPart) {
  return Joined(n, "", [&](const Text&) { return sPart; });
}

TEST(statement_work, grows_as_the_text_does) {
  const Text sWhere = "SELECT 1 FROM Plant1..Data WHERE ";
  const auto same = [](Text sPart) { return [=](const Text&) { return sPart; }; };
  const std::vector<std::pair<const char*, std::function<Text(int)>>> shapes = {
      {"BETWEENs",
       [&](int n) {
         return sWhere + Joined(n, " AND ", same("Timestamp BETWEEN '*-1h' AND '*'"));
       }},
      {"nested calls",
       [&](int n) { return "SELECT " + Times(n / 4, "abs(") + "1" + Times(n / 4, ")"); }},
      {"nested brackets",
       [&](int n) { return "SELECT " + Times(n / 4, "(") + "1" + Times(n / 4, ")"); }},
      {"nested queries",
       [&](int n) {
         return "SELECT * FROM " + Times(n / 8, "(SELECT * FROM ") + "Plant1..Data" +
                Times(n / 8, ")");
       }},
      {"a list",
       [&](int n) { return sWhere + "Timestamp IN (" + Joined(n, ",", same("'*'")) + ")"; }},
      {"a list of numbers",
       [&](int n) {
         return sWhere + "unixepoch(Timestamp) IN (" + Joined(n, ",", same("Value")) + ")";
       }},
      {"arguments",
       [&](int n) { return sWhere + "max(" + Joined(n, ", ", same("Value")) + ") > 1"; }},
      {"arguments that are times",
       [&](int n) { return sWhere + "max(" + Joined(n, ", ", same("Timestamp")) + ") > '*'"; }},
      {"unions",
       [&](int n) { return Joined(n, " UNION ", same("SELECT Timestamp FROM Plant1..Data")); }},
      {"cases",
       [&](int n) { return sWhere + "CASE Timestamp " + Times(n, "WHEN '*' THEN 1 ") + "END"; }},
      {"rows",
       [&](int n) {
         return "INSERT INTO Plant1..Data (Tag, Timestamp) VALUES " +
                Joined(n, ", ", same("('T1', '*')"));
       }},
      {"a row that is stored over and over",
       [&](int n) {
         return "INSERT INTO Plant1..Data (" + Joined(n, ", ", same("Timestamp")) + ") VALUES (" +
                Joined(n, ", ", same("'*'")) + ")";
       }},
      {"assignments",
       [&](int n) {
         return "UPDATE Plant1..Data SET " + Joined(n, ", ", same("Timestamp = '*'"));
       }},
      {"concatenation", [&](int n) { return "SELECT 1" + Times(n, " || 1"); }},
      {"items and their names",
       [&](int n) {
         const auto name = [](const Text& sNumber) { return "x" + sNumber; };
         return "SELECT " + Joined(n, ", ", [](const Text& s) { return "Value AS x" + s; }) +
                " FROM Plant1..Data GROUP BY " + Joined(n, ", ", name);
       }},
      {"named queries that read one another",
       [&](int n) {
         Text sAll = "WITH a0 AS (SELECT 1 AS x)";
         for (int i = 1; i <= n / 8; ++i) {
           sAll += ", a" + std::to_string(i) + " AS (SELECT x FROM a" + std::to_string(i - 1) + ")";
         }
         return sAll + " SELECT x FROM a" + std::to_string(n / 8);
       }},
      {"a long text", [&](int n) { return "SELECT '" + Times(n, "0123456789") + "'"; }},
  };
  for (const auto& [sName, shape] : shapes) {
    constexpr int kSize = 400;
    const auto nOnce = static_cast<double>(WorkOf(shape(kSize)));
    const auto nTwice = static_cast<double>(WorkOf(shape(2 * kSize)));
    EXPECT_GT(nOnce, kSize / 8) << sName;
    EXPECT_LT(nTwice / nOnce, 2.1) << sName << ": " << nOnce << ", then " << nTwice;
  }
}

TEST(statement_work, is_bounded) {
  EXPECT_TRUE(IsEnough("SELECT 1", 100));
  EXPECT_FALSE(IsEnough("SELECT 1", 1));
}

TEST(statement_work, of_reading_tokens_hears_that_it_is_cancelled) {
  const auto number = [](const Text& sStatement) {
    std::stop_source stop;
    StatementWork work(Deadline(stop.get_token(), {}));
    // The first look is then behind it.
    work.Step();
    stop.request_stop();
    try {
      ReadTokens(sStatement, work);
      return platform::Long{0};
    } catch (const platform::Failure& failed) {
      return failed.Number();
    }
  };
  for (const Text& sStatement : {Times(2000, "1 "), "'" + Times(2000, "x") + "'"}) {
    EXPECT_EQ(number(sStatement), platform::failure::kCancelled) << sStatement.substr(0, 20);
  }
  EXPECT_EQ(number("SELECT 1"), 0);
}

}  // namespace
}  // namespace orvane::provider::dialect
