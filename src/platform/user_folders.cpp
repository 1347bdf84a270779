#include "platform/user_folders.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace orvane::platform {
namespace {

namespace fs = std::filesystem;

constexpr const char* kOurs = "orvane";

std::string Environment(const char* sName) {
  const char* const sValue = std::getenv(sName);
  return sValue == nullptr ? std::string() : sValue;
}

std::optional<fs::path> UserFolder(const char* sVariable, const char* sBelowHome) {
  const fs::path named = Environment(sVariable);
  if (named.is_absolute()) return named / kOurs;
  const auto home = HomeFolder();
  if (!home) return std::nullopt;
  return *home / sBelowHome / kOurs;
}

}  // namespace

std::optional<fs::path> HomeFolder() {
  const fs::path home = Environment("HOME");
  if (!home.is_absolute()) return std::nullopt;
  return home;
}

std::optional<fs::path> UserDataFolder() {
  return UserFolder("XDG_DATA_HOME", ".local/share");
}

std::optional<fs::path> UserSettingsFolder() {
  return UserFolder("XDG_CONFIG_HOME", ".config");
}

std::optional<fs::path> UserStateFolder() {
  return UserFolder("XDG_STATE_HOME", ".local/state");
}

std::vector<fs::path> SystemDataFolders() {
  std::string sFolders = Environment("XDG_DATA_DIRS");
  if (sFolders.empty()) sFolders = "/usr/local/share:/usr/share";
  std::vector<fs::path> folders;
  for (std::size_t nStart = 0; nStart <= sFolders.size();) {
    const std::size_t nEnd = std::min(sFolders.find(':', nStart), sFolders.size());
    const fs::path folder = sFolders.substr(nStart, nEnd - nStart);
    if (folder.is_absolute()) folders.push_back(folder / kOurs);
    nStart = nEnd + 1;
  }
  return folders;
}

}  // namespace orvane::platform
