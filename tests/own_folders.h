// Folders of the user for one test program: made when it begins, gone when it ends. What the
// program, and all that it starts, keeps for its user goes there and not to whoever runs the tests.
// Made by the main function of each test program, before anything else.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace orvane::tests {

class OwnFolders {
 public:
  OwnFolders() {
    std::string sTemplate =
        (std::filesystem::temp_directory_path() / "orvane-home-XXXXXX").string();
    if (mkdtemp(sTemplate.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_home = sTemplate;
    setenv("HOME", m_home.c_str(), 1);
    for (const char* const sVariable :
         {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"}) {
      unsetenv(sVariable);
    }
  }
  OwnFolders(const OwnFolders&) = delete;
  OwnFolders& operator=(const OwnFolders&) = delete;
  ~OwnFolders() {
    std::error_code ignored;
    std::filesystem::remove_all(m_home, ignored);
  }

 private:
  std::filesystem::path m_home;
};

}  // namespace orvane::tests
