#include "console/data_access/earlier_servers.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>

#include "tests/files/temporary_folder.h"

namespace orvane::console {
namespace {

using platform::Text;
using testing::ElementsAre;
using testing::IsEmpty;

class earlier_servers : public files::FolderTest {
 protected:
  const std::string m_sFile = Path("state/servers");
  const EarlierServers m_servers{m_sFile};
};

TEST_F(earlier_servers, are_offered_newest_first_and_once) {
  EXPECT_THAT(m_servers.All(), IsEmpty());
  for (const char* const sServer : {"localhost", "postgresql://a/d", "localhost", "service=mill"}) {
    m_servers.Remember(sServer);
  }
  EXPECT_THAT(EarlierServers(m_sFile).All(),
              ElementsAre("service=mill", "localhost", "postgresql://a/d"));
  EXPECT_EQ(StatusOf(m_sFile).st_mode & 07777U, 0600U) << "which servers there are is the user's";
}

TEST_F(earlier_servers, are_not_remembered_with_what_looks_like_a_password_or_is_no_line) {
  for (const char* const sServer : {"", "postgresql://anna:hush@a/d", "a\nb"}) {
    m_servers.Remember(sServer);
  }
  EXPECT_FALSE(std::filesystem::exists(m_sFile));
  // What others have put there is not offered either.
  m_servers.Remember("S1");
  WriteBytes(m_sFile, BytesOf(m_sFile) + "postgresql://anna:hush@a/d\n\xFF\xFE\n\nS1\nS2");
  EXPECT_THAT(m_servers.All(), ElementsAre("S1", "S2"));
  m_servers.Remember("S3");
  EXPECT_EQ(BytesOf(m_sFile), "S3\nS1\nS2\n");
}

TEST_F(earlier_servers, are_no_more_than_one_looks_through) {
  for (std::size_t n = 0; n < EarlierServers::kMost + 5; ++n) {
    m_servers.Remember("S" + std::to_string(n));
  }
  EXPECT_EQ(m_servers.All().size(), EarlierServers::kMost);
  EXPECT_EQ(m_servers.All().front(), "S24");
  const std::string sWhole = BytesOf(m_sFile);
  EXPECT_EQ(std::ranges::count(sWhole, '\n'), EarlierServers::kMost) << "nor in the file";
  // Nor is more of a file looked at.
  WriteBytes(m_sFile, "S1\n" + std::string(1 << 20, 'x') + "\nS2\n");
  m_servers.Remember("S3");
  EXPECT_THAT(m_servers.All(), ElementsAre("S3", "S1"));
}

TEST_F(earlier_servers, keep_nobody_waiting_or_from_working) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const EarlierServers none{Path("pipe")};
  none.Remember("S1");
  EXPECT_THAT(none.All(), IsEmpty());
  const EarlierServers folder{Folder()};
  folder.Remember("S1");
  EXPECT_THAT(folder.All(), IsEmpty());
}

}  // namespace
}  // namespace orvane::console
