// Whether what is sent is encrypted, and to whom, as a connection tells it.
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "platform/ado/logon_failures.h"
#include "provider/engines/postgres/postgres_engine.h"
#include "provider/historian_provider.h"
#include "tests/provider/engines/postgres_fixture.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using platform::Value;
using testing::HasSubstr;
using tests::FailureOf;
using tests::PostgresCluster;
namespace failure = platform::failure;

// A server that encrypts, with a certificate for "localhost" that it has made itself.
class PostgresEncryptionTest : public tests::PostgresTest {
 protected:
  void SetUp() override {
    const auto folder = PostgresCluster::Get().Folder();
    const Text sData = (folder / "data").string();
    const Text sMake =
        "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=localhost -addext "
        "subjectAltName=DNS:localhost -keyout '" +
        sData + "/server.key' -out '" + sData + "/server.crt' 2> /dev/null && chown --reference='" +
        sData + "' '" + sData + "/server.key' '" + sData + "/server.crt' && chmod 600 '" + sData +
        "/server.key' && cp '" + sData + "/server.crt' '" + Certificate() + "'";
    // The server's packages bring it along.
    ASSERT_EQ(std::system(sMake.c_str()), 0) << "openssl makes no certificate";
    Encrypt("on");
  }
  void TearDown() override { Encrypt("off"); }

  static constexpr int kMostLooks = 2000;
  static constexpr std::chrono::milliseconds kPause{10};

  static Text Certificate() { return (PostgresCluster::Get().Folder() / "known.crt").string(); }
  static void Encrypt(const Text& sOn) {
    PostgresCluster::Get().Do("postgres", "ALTER SYSTEM SET ssl = " + sOn);
    PostgresCluster::Get().Do("postgres", "SELECT pg_reload_conf()");
    // It is read when the server comes to it.
    for (int n = 0; n < kMostLooks; ++n) {
      PGconn* const connection = PQconnectdb(PostgresCluster::Get().Address().c_str());
      PGresult* const result = PQexec(connection, "SHOW ssl");
      const bool bDone = PQntuples(result) == 1 && sOn == PQgetvalue(result, 0, 0);
      PQclear(result);
      PQfinish(connection);
      if (bDone) return;
      std::this_thread::sleep_for(kPause);
    }
    FAIL() << "the server does not take ssl = " << sOn;
  }
  /// As a connection of the provider tells it.
  static Value LinkTo(const Text& sHost, const Text& sSettings, bool bMayGoUnencrypted = false) {
    auto settings =
        ado::ConnectionSettings::Parse("Data Source = postgresql://" + sHost + ":" +
                                       std::to_string(PostgresCluster::Get().Port()) + "/postgres" +
                                       sSettings + "; User ID = " + PostgresCluster::kUser);
    settings.MayGoUnencrypted(bMayGoUnencrypted);
    const auto opened = HistorianProvider({{std::make_shared<PostgresEngine>()}, FixedNow})
                            .Open(settings, PostgresCluster::kPassword, {});
    return opened->PropertyValue("Link in Use");
  }
};

TEST_F(PostgresEncryptionTest, is_told_with_whom_it_is) {
  EXPECT_EQ(LinkTo("127.0.0.1", "?sslmode=disable"), Value("not encrypted"));
  EXPECT_EQ(LinkTo("127.0.0.1", "?sslmode=require"),
            Value("encrypted to 127.0.0.1, which has not proved its name"));
  EXPECT_EQ(LinkTo("localhost", "?sslmode=verify-full&sslrootcert=" + Certificate()),
            Value("encrypted to localhost"));
  EXPECT_EQ(Open()->Link(), "") << "a socket of this machine";
}

// One that counts as far is asked for it without a word in its address.
TEST_F(PostgresEncryptionTest, a_far_server_encrypts) {
  for (const bool bMayGoUnencrypted : {false, true}) {
    EXPECT_EQ(LinkTo(PostgresCluster::kFarHost, "", bMayGoUnencrypted),
              Value("encrypted to 0x7f.1, which has not proved its name"))
        << "what may go without encryption goes with it where it can";
  }
}

TEST_F(PostgresEncryptionTest, a_server_that_is_not_the_one_of_its_certificate_is_not_connected) {
  const auto failed =
      FailureOf([] { LinkTo("127.0.0.1", "?sslmode=verify-full&sslrootcert=" + Certificate()); });
  EXPECT_EQ(failed.lNumber, failure::kServerNotFound);
  EXPECT_THAT(failed.sSentence, HasSubstr("server certificate for"));
}

TEST_F(PostgresEncryptionTest, what_a_link_is_cannot_be_set) {
  const auto opened =
      HistorianProvider({{std::make_shared<PostgresEngine>()}, FixedNow})
          .Open(ado::ConnectionSettings::Parse("Data Source = " + PostgresCluster::Get().Address()),
                {}, {});
  EXPECT_EQ(FailureOf([&] { opened->PropertyValue("link in use", "x"); }).sSentence,
            "The property \"Link in Use\" can be read, but not set; set \"sslmode\" in the data "
            "source.");
}

// The cluster as it is.
class PostgresUnencryptedTest : public tests::PostgresTest {
 protected:
  static Text FarAddress(const Text& sSettings) {
    return Text("postgresql://") + PostgresCluster::kFarHost + ":" +
           std::to_string(PostgresCluster::Get().Port()) + "/postgres" + sSettings;
  }
  static Text LinkOf(const Logon& logon) {
    return PostgresEngine().Open(logon, PostgresCluster::kPassword, {})->Link();
  }
};

TEST_F(PostgresUnencryptedTest, is_sent_nothing_until_somebody_says_that_it_may) {
  const Text sAddress = FarAddress("");
  const auto failed = FailureOf([&] { LinkOf({sAddress, PostgresCluster::kUser}); });
  EXPECT_EQ(failed.lNumber, failure::kNotEncrypted);
  EXPECT_EQ(failed.sSentence,
            Text("The server at ") + PostgresCluster::kFarHost +
                " does not encrypt what is sent, so nothing was sent to it: add "
                "\"?sslmode=disable\" to its address, or \"sslmode=disable\" to its service, if "
                "nobody can listen on the way.");
  EXPECT_EQ(LinkOf({sAddress, PostgresCluster::kUser, true}), "not encrypted");
  EXPECT_EQ(LinkOf({FarAddress("?sslmode=disable"), PostgresCluster::kUser}), "not encrypted");
  EXPECT_EQ(FailureOf([&] {
              LinkOf({FarAddress("?sslmode=require"), PostgresCluster::kUser, true});
            }).lNumber,
            failure::kNotSupported)
      << "what the address says is not overruled, and nobody is asked";
}

}  // namespace
}  // namespace orvane::provider::engines
