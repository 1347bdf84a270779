// A folder of a test's own under the temporary folder, gone with all that is in it at the end.
// Also what the component tests put into such folders.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace orvane::component::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string sPath =
        (std::filesystem::temp_directory_path() / "orvane_component_XXXXXX").string();
    if (mkdtemp(sPath.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_path = sPath;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(m_path, error);
  }

  const std::filesystem::path& Path() const { return m_path; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return m_path / name; }

 private:
  std::filesystem::path m_path;
};

inline std::string ReadText(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline void WriteText(const std::filesystem::path& file, const std::string& sText) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream << sText;
  ASSERT_TRUE(stream.good()) << file;
}

/// The library of a fixture of fixtures/CMakeLists.txt.
inline std::filesystem::path Fixture(const std::string& sName) {
  return std::filesystem::path(ORVANE_FIXTURES) / ("libfixture_" + sName + ".so");
}

}  // namespace orvane::component::test
