#include "provider/historian/recorder_lock.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "tests/provider/temporary_root.h"

namespace orvane::provider::historian {
namespace {

namespace fs = std::filesystem;
using File = RecorderLock::File;

class recorder_lock : public testing::Test {
 protected:
  recorder_lock() {
    std::ofstream(m_catalog).flush();
    chmod(m_root.Path().c_str(), 0755);
    // Only an administrator can give a file to a group that is not his.
    if (geteuid() == 0) EXPECT_EQ(chown(m_catalog.c_str(), 0, kPlant), 0);
    chmod(m_catalog.c_str(), 0660);
  }

  static constexpr gid_t kPlant = 65530;
  TemporaryRoot m_root;
  fs::path m_catalog = m_root.Path() / "Plant1.db";
  fs::path m_file = m_root.Path() / "Plant1.db.recorder";
};

TEST_F(recorder_lock, is_open_to_whom_the_catalog_is_open) {
  const RecorderLock lock(m_catalog);
  struct stat catalog {};
  struct stat file {};
  ASSERT_EQ(stat(m_catalog.c_str(), &catalog), 0);
  ASSERT_EQ(stat(m_file.c_str(), &file), 0);
  EXPECT_EQ(file.st_gid, catalog.st_gid);
  EXPECT_EQ(file.st_mode & 07777U, 0660U);
}

TEST_F(recorder_lock, of_one_who_may_not_give_the_group_hides_from_nobody) {
  chmod(m_root.Path().c_str(), 0777);
  chmod(m_catalog.c_str(), 0666);
  {
    const WithoutRoot withoutRoot;
    const RecorderLock lock(m_catalog);
    EXPECT_TRUE(lock.Take());
  }
  struct stat file {};
  ASSERT_EQ(stat(m_file.c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 07777U, geteuid() == 0 ? 0644U : 0666U);
}

TEST_F(recorder_lock, that_is_not_there_is_held_by_nobody) {
  EXPECT_TRUE(RecorderLock(m_catalog, File::Found).Take());
  EXPECT_FALSE(fs::exists(m_file));
}

TEST_F(recorder_lock, that_cannot_be_opened_counts_as_held) {
  const RecorderLock lock(m_catalog);
  chmod(m_file.c_str(), 0);
  const WithoutRoot withoutRoot;
  EXPECT_FALSE(RecorderLock(m_catalog, File::Found).Take());
}

}  // namespace
}  // namespace orvane::provider::historian
