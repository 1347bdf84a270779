#include "provider/historian/data_folder.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/fakes/stored_secrets.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;

Text ServerOf(std::string_view sDataSource) {
  Text sServer;
  const Text sFailure = FailureOf([&] { sServer = ServerFromDataSource(sDataSource); });
  return sFailure == "no failure" ? sServer : sFailure;
}

TEST(data_folder, takes_a_plain_name_for_a_historian_and_nothing_for_the_default) {
  EXPECT_EQ(ServerOf("localhost"), "localhost");
  EXPECT_EQ(ServerOf(""), "localhost");
  EXPECT_EQ(ServerOf("Plant 7"), "Plant 7");
  EXPECT_EQ(ServerOf("caf\xC3\xA9.2"), "caf\xC3\xA9.2");
}

TEST(data_folder, says_that_other_kinds_of_servers_are_not_spoken_to) {
  for (const char* const sText : {"postgresql://host/db", "PostgreSQL://host", "postgres://host",
                                  "service=plant", "odbc:DSN"}) {
    EXPECT_EQ(ServerOf(sText),
              "3808: This version speaks to embedded historians and PostgreSQL servers only; enter "
              "localhost, the name of another historian on this machine, or "
              "postgresql://HOST:PORT/DATABASE.");
  }
}

TEST(data_folder, refuses_a_password_without_repeating_it) {
  for (const Text& sText : fakes::TextsWithSecret()) {
    EXPECT_EQ(ServerOf(sText),
              "5: The server's text holds a password; leave it out and enter it in the logon "
              "dialog.")
        << sText;
  }
  EXPECT_EQ(ServerOf("postgresql://user@host:5432/db").substr(0, 4), "3808");
}

TEST(data_folder, refuses_what_is_no_name) {
  for (const char* const sText : {"a/b", "..", ".hidden", "a\\b", "C:", "a\nb"}) {
    EXPECT_EQ(ServerOf(sText), "3800: \"" + Text(sText) +
                                   "\" is no name of a historian; enter localhost or the name of "
                                   "another historian on this machine.");
  }
}

TEST(data_folder, lists_the_default_server_first_and_then_what_there_is) {
  const TemporaryRoot root;
  EXPECT_EQ(KnownServers(root.Path()), (std::vector<Text>{"localhost"}));
  for (const char* const sFolder : {"b", "a", "localhost", ".new-1234"}) {
    std::filesystem::create_directories(root.Historian(sFolder));
  }
  std::ofstream(root.Historian("file")) << "x";
  EXPECT_EQ(KnownServers(root.Path()), (std::vector<Text>{"localhost", "a", "b"}));
}

TEST(data_folder, there_is_no_historian_without_a_home) {
  EXPECT_EQ(FailureOf([] { HistorianFolder({}, "localhost"); }),
            "3800: There is no home folder to keep historians in; set HOME, or XDG_DATA_HOME, to "
            "the whole path of a folder and start again.");
  EXPECT_EQ(KnownServers({}), (std::vector<Text>{"localhost"}));
}

}  // namespace
}  // namespace orvane::provider::historian
