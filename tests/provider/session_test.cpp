#include "provider/session.h"

#include <sqlite3.h>

#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class session : public SessionFixture {};

// A recorder writes while the console reads.
TEST_F(session, reads_while_another_program_writes) {
  const auto opened = OpenPlant();
  sqlite3* stranger = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Plant1.db").c_str(), &stranger),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(stranger, "BEGIN IMMEDIATE; DELETE FROM Data", nullptr, nullptr, nullptr),
            SQLITE_OK);
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  EXPECT_EQ(Failing(*opened, "DELETE FROM Plant1..Data").substr(0, 4), "3803");
  ASSERT_EQ(sqlite3_exec(stranger, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(stranger);
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "0\n");
}

TEST_F(session, offers_the_options_and_servers_of_its_provider) {
  HistorianProvider provider(PlaceAt(m_root.Path()));
  EXPECT_EQ(provider.Properties().size(), 9U);
  EXPECT_EQ(provider.Properties().front().sName, "Log File");
  EXPECT_EQ(provider.Properties().at(7).sName, "Link in Use");
  EXPECT_EQ(provider.Properties().back().sName, "Time Zone in Use");
  EXPECT_EQ(provider.KnownServers(), std::vector<Text>{"localhost"});
}

}  // namespace
}  // namespace orvane::provider
