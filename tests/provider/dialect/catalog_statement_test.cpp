#include "provider/dialect/catalog_statement.h"

#include <gmock/gmock.h>

#include "platform/failure.h"
#include "tests/provider/dialect/tokens.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

Text Read(const Text& sStatement) {
  try {
    const auto read = ReadCatalogStatement(sStatement, Tokens(sStatement));
    if (!read) return "none";
    if (const auto* const drop = std::get_if<DropDatabase>(&*read)) return "drop " + drop->sName;
    const auto& create = std::get<CreateDatabase>(*read);
    if (!create.sFile.empty()) return "take in " + create.sName + " from '" + create.sFile + "'";
    return "create " + create.sName + " at '" + create.sPath + "' of " +
           std::to_string(create.llKilobytes);
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kSqlError);
    return failure.Description();
  }
}

TEST(catalog_statement, is_read_in_every_form_in_which_it_is_sent) {
  EXPECT_EQ(Read("CREATE DATABASE \"N\" "), "create N at '' of 0");
  EXPECT_EQ(Read("CREATE DATABASE \"N\" ON (PATH='P')"), "create N at 'P' of 0");
  EXPECT_EQ(Read("CREATE DATABASE \"N\" ON (SIZE=5)"), "create N at '' of 5");
  EXPECT_EQ(Read("create database [N M] on (size=5, path='/a b')"), "create N M at '/a b' of 5");
  EXPECT_EQ(Read("CREATE DATABASE \"N\" ON (FILE='/a/b.db')"), "take in N from '/a/b.db'");
  EXPECT_EQ(Read("DROP DATABASE \"N\""), "drop N");
  EXPECT_EQ(Read("drop database N;"), "drop N");
}

TEST(catalog_statement, is_not_taken_for_another_statement) {
  EXPECT_EQ(Read("CREATE TABLE a..b (c)"), "none");
  EXPECT_EQ(Read("DROP TABLE DATABASE"), "none");
  EXPECT_EQ(Read("SELECT DATABASE"), "none");
}

TEST(catalog_statement, says_what_is_written_wrongly) {
  EXPECT_EQ(Read("CREATE DATABASE"),
            "The name of the catalog is missing (character 16 of the statement); write it between "
            "double quotes.");
  EXPECT_EQ(Read("DROP DATABASE 'N'"),
            "The name of the catalog is missing (character 15 of the statement); write it between "
            "double quotes.");
  EXPECT_EQ(Read("DROP DATABASE N M"),
            "The statement goes on (character 17 of the statement); remove what follows the name "
            "of the catalog.");
  EXPECT_EQ(Read("CREATE DATABASE N ON PATH='P'"),
            "\"(\" is missing (character 22 of the statement); write ON (PATH='folder') or ON "
            "(SIZE=kilobytes).");
  EXPECT_EQ(Read("CREATE DATABASE N ON (COLOR='P')"),
            "Only a path and a size can be given (character 23 of the statement); write ON "
            "(PATH='folder') or ON (SIZE=kilobytes).");
  EXPECT_EQ(Read("CREATE DATABASE N ON (PATH=P)"),
            "The path is missing (character 28 of the statement); write it between single "
            "quotes.");
  for (const char* const sItems : {"FILE='/f', SIZE=5", "PATH='/', FILE='/'"}) {
    EXPECT_THAT(Read("CREATE DATABASE N ON (" + Text(sItems) + ")"),
                testing::StartsWith("A file is taken in as it is and where it lies (character "));
  }
  for (const char* const sSize : {"0", "1.5", "99999999999999999999", "x"}) {
    EXPECT_EQ(Read("CREATE DATABASE N ON (SIZE=" + Text(sSize) + ")"),
              "The size is no number of kilobytes (character 28 of the statement); write a whole "
              "number above 0.");
  }
  EXPECT_EQ(Read("CREATE DATABASE \"a\"b\" "),
            "A quote is never closed (character 21 of the statement); close it with \".");
}

}  // namespace
}  // namespace orvane::provider::dialect
