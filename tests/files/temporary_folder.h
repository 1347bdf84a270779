// A folder for one test, and what its files hold and are.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace orvane::files {

class FolderTest : public testing::Test {
 protected:
  FolderTest() {
    std::string sPattern =
        (std::filesystem::temp_directory_path() / "orvane-files-XXXXXX").string();
    m_folder = mkdtemp(sPattern.data());
  }
  ~FolderTest() override { std::filesystem::remove_all(m_folder); }

  std::string Path(const std::string& sName = "file") const { return (m_folder / sName).string(); }
  std::string Folder() const { return m_folder.string(); }
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(m_folder), {}));
  }
  static std::string BytesOf(const std::string& sPath) {
    std::ostringstream bytes;
    bytes << std::ifstream(sPath, std::ios::binary).rdbuf();
    return bytes.str();
  }
  static void WriteBytes(const std::string& sPath, const std::string& sBytes) {
    std::ofstream(sPath, std::ios::binary) << sBytes;
  }
  static struct stat StatusOf(const std::string& sPath) {
    struct stat status {};
    EXPECT_EQ(stat(sPath.c_str(), &status), 0) << sPath;
    return status;
  }
  static mode_t ModeOf(const std::string& sPath) { return StatusOf(sPath).st_mode & 07777; }

 private:
  std::filesystem::path m_folder;
};

}  // namespace orvane::files
