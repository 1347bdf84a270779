// The temporary file for rows beyond the memory budget: where it is, and what happens when its disk
// is full.
#include "ado/spill_file.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "ado/fetch.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

namespace fs = std::filesystem;
using tests::FailureOf;
namespace failure = platform::failure;

std::vector<std::byte> Bytes(std::size_t size, int iFirst) {
  std::vector<std::byte> bytes(size);
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<std::byte>(static_cast<std::size_t>(iFirst) + i * 7);
  }
  return bytes;
}

void ExpectBytes(const std::byte* bytes, std::size_t size, int iFirst) {
  const auto expected = Bytes(size, iFirst);
  EXPECT_EQ(std::memcmp(bytes, expected.data(), size), 0);
}

/// While it lives, no file may become larger.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

 private:
  rlimit m_before{};
};

class SpillFileTest : public ::testing::Test {
 protected:
  SpillFileTest() {
    std::string sTemplate = "/var/tmp/orvane-spill-XXXXXX";
    if (::mkdtemp(sTemplate.data()) != nullptr) m_folder = sTemplate;
  }
  ~SpillFileTest() override {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
  }

  fs::path m_folder;
};

TEST_F(SpillFileTest, keeps_what_is_written_where_it_was_put) {
  SpillFile file(std::span(&m_folder, 1));
  std::vector<std::pair<const std::byte*, std::size_t>> written;
  int i = 0;
  // Small ones, one that is larger than what is mapped at once, and small ones again.
  for (const std::size_t size :
       {1U, 100'000U, 3U, 5'000'000U, 12'000'000U, 40'000'000U, 64U, 65U}) {
    written.emplace_back(file.Write(Bytes(size, i++)), size);
  }
  i = 0;
  for (const auto& [bytes, size] : written) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bytes) % 8, 0U);
    ExpectBytes(bytes, size, i++);
  }
  EXPECT_GE(file.Bytes(), 57'000'000U);
}

TEST_F(SpillFileTest, has_no_name) {
  SpillFile file(std::span(&m_folder, 1));
  file.Write(Bytes(1000, 1));
  EXPECT_EQ(file.Folder(), m_folder);
  EXPECT_TRUE(fs::is_empty(m_folder));
}

TEST_F(SpillFileTest, is_on_a_disk_rather_than_in_memory) {
  const std::vector<fs::path> folders = {"/dev/shm", m_folder / "missing", m_folder};
  EXPECT_EQ(SpillFile(folders).Folder(), m_folder);
  EXPECT_EQ(SpillFile(std::span(folders).first(1)).Folder(), "/dev/shm");
}

TEST_F(SpillFileTest, says_where_it_cannot_be_made) {
  const fs::path missing = m_folder / "missing";
  EXPECT_EQ(FailureOf([&] { SpillFile(std::span(&missing, 1)); }),
            (tests::Told{failure::kStorage,
                         "There is no memory left for rows, and no temporary file can be made in "
                         "\"" +
                             missing.string() + "\": make room there, or set a row limit."}));
}

TEST_F(SpillFileTest, says_that_its_disk_is_full_and_keeps_what_it_has) {
  SpillFile file(std::span(&m_folder, 1));
  const auto* const first = file.Write(Bytes(10'000'000, 1));
  const auto* last = first;
  {
    const FileSizeLimit limit(20'000'000);
    // All of the second part does not fit any more, but this does.
    last = file.Write(Bytes(2'000'000, 2));
    EXPECT_EQ(FailureOf([&] { file.Write(Bytes(12'000'000, 3)); }),
              (tests::Told{failure::kStorage,
                           "The disk of \"" + m_folder.string() +
                               "\" has no room left for more rows: make room there, or set a row "
                               "limit."}));
    ExpectBytes(file.Write(Bytes(1'000, 4)), 1'000, 4);
  }
  ExpectBytes(file.Write(Bytes(12'000'000, 5)), 12'000'000, 5);
  ExpectBytes(first, 10'000'000, 1);
  ExpectBytes(last, 2'000'000, 2);
}

/// Hands over numbers until the temporary file takes no more, and looks at what is kept then.
void ExpectStoppedByFullDisk(const std::string& sFolder) {
  const auto fetch = std::make_shared<Fetch>(FetchWishes{.bKeepRows = true},
                                             std::make_shared<MemoryBudget>(100'000));
  fetch->Begin({{"n"}}, true);
  platform::RowIndex given = 0;
  try {
    for (;;) {
      std::vector<Column> block(1);
      for (int i = 0; i < 4000; ++i) block[0].AppendLongLong(given + i);
      fetch->Take(block);
      given += 4000;
      ASSERT_LT(given, 1'000'000);
    }
  } catch (...) {
    fetch->KeepOrRethrow({});
  }
  const auto rs = fetch->Recordset();
  EXPECT_EQ(rs->State(), platform::FetchState::Stopped);
  const std::string sSentence = "The disk of \"" + sFolder +
                                "\" has no room left for more rows: make room there, or set a row "
                                "limit.";
  EXPECT_TRUE(rs->FetchRemark().ends_with(" rows. " + sSentence)) << rs->FetchRemark();
  ASSERT_EQ(rs->RecordCount(), given);
  ASSERT_GT(given, 100'000);
  for (platform::RowIndex row = 0; row < given; row += 7) {
    ASSERT_TRUE(rs->ValueAt(row, 0) == platform::Value(row));
  }
}

TEST_F(SpillFileTest, that_is_full_stops_a_fetch_and_keeps_its_rows) {
  const FileSizeLimit limit(1'000'000);
  ::unsetenv("TMPDIR");
  ExpectStoppedByFullDisk("/var/tmp");
}

/// In a process of its own, where all folders for temporary files are on a disk of a megabyte;
/// gives the process's status.
int OnSmallDisk(void (*work)()) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    const bool bOwn = ::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    bool bMounted = bOwn && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    for (const char* sFolder : {"/tmp", "/var/tmp"}) {
      bMounted = bMounted && ::mount("tmpfs", sFolder, "tmpfs", 0, "size=1m") == 0;
    }
    std::optional<FileSizeLimit> instead;
    if (!bMounted) instead.emplace(1'000'000);
    ::unsetenv("TMPDIR");
    work();
    std::fflush(nullptr);
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int nStatus = -1;
  EXPECT_EQ(::waitpid(pid, &nStatus, 0), pid);
  EXPECT_TRUE(WIFEXITED(nStatus)) << nStatus;
  return WEXITSTATUS(nStatus);
}

TEST_F(SpillFileTest, on_a_disk_that_really_fills_stops_a_fetch_and_keeps_its_rows) {
  const auto twice = [] {
    ExpectStoppedByFullDisk("/var/tmp");
    // What was taken is given back with the rows, so that there is room again.
    ExpectStoppedByFullDisk("/var/tmp");
  };
  EXPECT_EQ(OnSmallDisk(twice), 0);
}

}  // namespace
}  // namespace orvane::ado
