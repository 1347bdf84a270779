#include "provider/engines/sqlite/sqlite_functions.h"

#include <gtest/gtest.h>

#include "platform/conversions.h"
#include "provider/engines/sqlite/sqlite_engine.h"

namespace orvane::provider::engines {
namespace {

using platform::Failure;
using platform::Text;
using platform::Value;

Value Length(const Value& vtValue) {
  if (vtValue.IsNull()) return {};
  const Text sText = platform::ToText(vtValue);
  if (sText == "bad") throw Failure(platform::failure::kSqlError, "That is bad; give another.");
  return static_cast<std::int64_t>(sText.size());
}

EngineStatement Calling(const Text& sSql) {
  EngineStatement statement;
  statement.sSql = sSql;
  statement.functions.push_back({"text_length", Length});
  return statement;
}

TEST(sqlite_functions, are_called_by_the_statement_that_brings_them) {
  const auto session = SqliteEngine().Open({}, {});
  const auto result =
      session->Run(Calling("SELECT text_length('four'), text_length(12345), text_length(NULL), "
                           "text_length(x'00'), text_length(1.5)"),
                   {});
  EXPECT_EQ(result.recordset->ValueAt(0, 0), Value(std::int64_t{4}));
  EXPECT_EQ(result.recordset->ValueAt(0, 1), Value(std::int64_t{5}));
  EXPECT_TRUE(result.recordset->ValueAt(0, 2).IsNull());
  EXPECT_EQ(result.recordset->ValueAt(0, 3), Value(std::int64_t{4}));
  EXPECT_EQ(result.recordset->ValueAt(0, 4), Value(std::int64_t{3}));
}

TEST(sqlite_functions, are_gone_afterwards) {
  const auto session = SqliteEngine().Open({}, {});
  session->Run(Calling("SELECT text_length('four')"), {});
  EngineStatement without;
  without.sSql = "SELECT text_length('four')";
  EXPECT_THROW(session->Run(without, {}), Failure);
}

TEST(sqlite_functions, end_the_statement_with_their_own_failure) {
  const auto session = SqliteEngine().Open({}, {});
  try {
    session->Run(Calling("SELECT text_length(x) FROM (SELECT 'good' AS x UNION ALL SELECT 'bad')"),
                 {});
    FAIL() << "no failure";
  } catch (const Failure& failed) {
    EXPECT_EQ(failed.Number(), platform::failure::kSqlError);
    EXPECT_EQ(failed.Description(), "That is bad; give another.");
  }
  EXPECT_EQ(session->Run(Calling("SELECT text_length('four')"), {}).recordset->RecordCount(), 1);
}

}  // namespace
}  // namespace orvane::provider::engines
