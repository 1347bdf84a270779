#include "provider/engines/postgres/postgres_address.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/ado/failure_of.h"
#include "tests/fakes/variable.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using testing::HasSubstr;
using testing::Not;
using tests::FailureOf;
namespace failure = platform::failure;

Text Refusal(const Text& sDataSource) {
  const auto failed = FailureOf([&] { ReadPostgresAddress(sDataSource); });
  EXPECT_EQ(failed.lNumber, failure::kInvalidArgument) << sDataSource;
  return failed.sSentence;
}

TEST(PostgresAddressTest, is_told_from_other_data_sources) {
  EXPECT_TRUE(IsPostgresAddress("postgresql://h/d"));
  EXPECT_TRUE(IsPostgresAddress("postgres://h"));
  EXPECT_TRUE(IsPostgresAddress("service=plant"));
  EXPECT_FALSE(IsPostgresAddress("localhost"));
  EXPECT_FALSE(IsPostgresAddress("/var/lib/postgresql://x"));
  EXPECT_FALSE(IsPostgresAddress(""));
}

TEST(PostgresAddressTest, gives_server_database_and_user) {
  const auto address = ReadPostgresAddress(
      "postgresql://anna@a.example:5433,b.example/plant?target_session_attrs=read-write");
  EXPECT_EQ(address.sUser, "anna");
  EXPECT_EQ(address.Setting("host"), "a.example,b.example");
  EXPECT_EQ(address.Setting("port"), "5433,");
  EXPECT_EQ(address.Setting("dbname"), "plant");
  EXPECT_EQ(address.Setting("target_session_attrs"), "read-write");
  EXPECT_EQ(address.Setting("user"), "");
  EXPECT_EQ(address.Shown(), "a.example,b.example");
  EXPECT_EQ(ReadPostgresAddress("service=plant").Shown(), "plant");
  EXPECT_EQ(ReadPostgresAddress("postgresql:///plant").Shown(), "this machine");
}

TEST(PostgresAddressTest, with_a_password_is_refused_without_repeating_it) {
  for (const char* const sDataSource :
       {"postgresql://anna:hush@h/d", "postgresql://h/d?password=hush",
        "postgresql://h/d?pass%77ord=hush", "service=plant password=hush",
        "postgresql://anna:%68ush@h/d", "postgresql://h/d?sslpassword=hush"}) {
    const Text sSentence = Refusal(sDataSource);
    EXPECT_EQ(sSentence,
              "The server's text holds a password; leave it out and enter it in the logon dialog.");
  }
}

TEST(PostgresAddressTest, sets_nothing_but_the_way_to_the_server) {
  EXPECT_EQ(Refusal("postgresql://h/d?options=-csession_preload_libraries%3Dx"),
            "The data source sets \"options\", which is not for data sources: leave it out, or put "
            "it into the service file.");
  EXPECT_THAT(Refusal("postgresql://h/d?replication=database"), HasSubstr("\"replication\""));
  EXPECT_THAT(Refusal("postgresql://h/d?sslkey=pkcs11%3Aevil"), HasSubstr("\"sslkey\""));
  EXPECT_EQ(ReadPostgresAddress("postgresql://h/d?sslkey=/keys/a").Setting("sslkey"), "/keys/a");
}

TEST(PostgresAddressTest, that_cannot_be_read_is_refused_in_one_sentence) {
  for (const Text& sDataSource :
       {Text("postgresql://[::1/d"), Text("postgresql://h/d?what=x"), Text("service=a b"),
        Text("postgresql://h/%zz"), Text("postgresql://h\0/d", 17)}) {
    const Text sSentence = Refusal(sDataSource);
    EXPECT_THAT(sSentence, HasSubstr("write postgresql://HOST:PORT/DATABASE or service=NAME."));
    EXPECT_THAT(sSentence, Not(HasSubstr("\n")));
  }
}

TEST(PostgresAddressTest, of_another_machine_wants_encryption_unless_it_says_otherwise) {
  const auto modeOf = [](const Text& sDataSource) {
    auto address = ReadPostgresAddress(sDataSource);
    RequireEncryption(address);
    return address.Setting("sslmode");
  };
  for (const char* const sFar :
       {"postgresql://plant.example/d", "postgresql://10.0.0.7/d", "postgresql://localhost,far/d",
        "postgresql://127.evil.example/d", "postgresql://h/d?hostaddr=10.0.0.7",
        "postgresql://localhost/d?hostaddr=10.0.0.7",
        "postgresql://localhost,far/d?hostaddr=127.0.0.1,"}) {
    EXPECT_EQ(modeOf(sFar), "require") << sFar;
  }
  for (const char* const sNear :
       {"postgresql:///d", "postgresql://localhost/d", "postgresql://127.0.0.1/d",
        "postgresql://[::1]/d", "postgresql:///d?host=/run/postgresql",
        "postgresql://far/d?hostaddr=127.0.0.1", "service=nowhere"}) {
    EXPECT_EQ(modeOf(sNear), "") << sNear;
  }
  EXPECT_EQ(modeOf("postgresql://far/d?sslmode=disable"), "disable");
  EXPECT_EQ(modeOf("postgresql://far/d?sslmode=prefer"), "prefer");

  const auto file =
      std::filesystem::temp_directory_path() / ("orvane-modes-" + std::to_string(getpid()));
  std::ofstream(file) << "[plant]\nhost=far\n[here]\nhost=localhost\n[sure]\nhost=far\n"
                         "sslmode=verify-full\n[open]\nhost=far\nsslmode=disable\n";
  const fakes::Variable services("PGSERVICEFILE", file.c_str());
  EXPECT_EQ(modeOf("service=plant"), "require");
  for (const char* const sSaid : {"service=here", "service=sure", "service=open"}) {
    EXPECT_EQ(modeOf(sSaid), "") << sSaid;
  }
  std::filesystem::remove(file);
}

TEST(PostgresAddressTest, of_another_machine_is_taken_as_the_environment_says) {
  const auto modeOf = [](const Text& sDataSource) {
    auto address = ReadPostgresAddress(sDataSource);
    RequireEncryption(address);
    return address.Setting("sslmode");
  };
  {
    const fakes::Variable host("PGHOST", "far");
    EXPECT_EQ(modeOf("postgresql:///d"), "require");
  }
  const fakes::Variable mode("PGSSLMODE", "verify-full");
  EXPECT_EQ(modeOf("postgresql://far/d"), "") << "not made weaker";
}

}  // namespace
}  // namespace orvane::provider::engines
