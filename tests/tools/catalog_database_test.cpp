// What is written into a catalog's file, past the engine.
#include "tools/orvane_historian/catalog_database.h"

#include <gtest/gtest.h>

#include "provider/historian/historian.h"
#include "tests/provider/engines/refusing_disk.h"
#include "tests/provider/temporary_root.h"

namespace orvane::tools {
namespace {

using platform::Value;
using tests::RefusingDisk;

class CatalogDatabaseTest : public testing::Test {
 protected:
  platform::Text Fails(const provider::historian::CatalogRecord& record) {
    CatalogDatabase database(record);
    PreparedStatement insert(database, "INSERT INTO Tags (Tag) VALUES (?)");
    insert << Value("T");
    const RefusingDisk disk(EDQUOT);
    return provider::FailureOf([&] { insert.Run(); });
  }

  provider::TemporaryRoot m_root;
  provider::engines::SqliteEngine m_engine;
  provider::historian::CatalogRecord m_record =
      provider::historian::Historian(m_root.Path(), "localhost", m_engine, {})
          .CreateCatalog("Plant1", "", 0, {});
};

TEST_F(CatalogDatabaseTest, loses_no_value_of_any_kind) {
  {
    CatalogDatabase database(m_record);
    database.Execute("CREATE TABLE Kept (Number INTEGER, Content)");
    PreparedStatement insert(database, "INSERT INTO Kept VALUES (?, ?)");
    std::int32_t lNumber = 0;
    for (const Value& vtValue :
         {Value(true), Value(std::int32_t{7}), Value(std::int64_t{8}), Value(1.5),
          Value(platform::Decimal{"12.34"}), Value(""), Value(platform::Guid{}),
          Value(platform::Date{}), Value(platform::TimeOfDay{}), Value(platform::Timestamp{}),
          Value(platform::Bytes{}), Value()}) {
      insert << Value(lNumber++) << vtValue;
      insert.Run();
    }
  }
  const auto session = m_engine.Open(provider::historian::EngineCatalog(m_record, true), {});
  const auto result = session->Run(
      {"SELECT typeof(Content) || ' ' || coalesce(Content, '') FROM Kept ORDER BY Number", {}, {}},
      {});
  EXPECT_EQ(provider::Rows(*result.recordset),
            "integer 1\ninteger 7\ninteger 8\nreal 1.5\ntext 12.34\ntext \n"
            "text {00000000-0000-0000-0000-000000000000}\ntext 1970-01-01\ntext 00:00:00\n"
            "integer 0\nblob \nnull \n");
}

TEST_F(CatalogDatabaseTest, a_full_disk_is_called_full_whatever_the_system_calls_it) {
  constexpr const char* kFull =
      "3807: The catalog \"Plant1\" has no room left on its disk, so nothing was written: make "
      "room and try again.";
  EXPECT_EQ(Fails(m_record), kFull);
  // A limit that the disk does not reach.
  const auto room = std::filesystem::space(m_root.Path()).available;
  m_record.llKilobytes = static_cast<std::int64_t>(room / 1024 * 2);
  EXPECT_EQ(Fails(m_record), kFull);
}

}  // namespace
}  // namespace orvane::tools
