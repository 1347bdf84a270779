#include "provider/historian/data_folder.h"

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/failure.h"
#include "platform/historian_names.h"
#include "platform/user_folders.h"
#include "provider/engines/data_source.h"

namespace orvane::provider::historian {
namespace {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;
namespace fs = std::filesystem;

bool IsServerName(std::string_view sName) {
  return sName.size() <= 128 && sName.front() != '.' &&
         std::all_of(sName.begin(), sName.end(), [](char c) {
           return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F && c != '/' && c != '\\' &&
                  c != ':' && c != '=' && c != ';';
         });
}

}  // namespace

fs::path DefaultRoot() {
  return platform::UserDataFolder().value_or(fs::path());
}

fs::path HistorianFolder(const fs::path& root, const Text& sServer) {
  if (root.empty()) {
    throw Failure(failure::kServerNotFound,
                  "There is no home folder to keep historians in; set HOME, or XDG_DATA_HOME, to "
                  "the whole path of a folder and start again.");
  }
  return root / "historians" / sServer;
}

Text ServerFromDataSource(std::string_view sDataSource) {
  const Text sFolded = platform::FoldCase(sDataSource);
  engines::RefusePassword(sDataSource);
  for (const char* const sScheme : {"postgresql:", "postgres:", "service=", "odbc:"}) {
    if (sFolded.starts_with(sScheme)) {
      throw Failure(failure::kNotSupported,
                    "This version speaks to embedded historians and PostgreSQL servers only; enter "
                    "localhost, the name of another historian on this machine, or "
                    "postgresql://HOST:PORT/DATABASE.");
    }
  }
  if (sDataSource.empty()) return Text(platform::kDefaultServer);
  if (!IsServerName(sDataSource)) {
    throw Failure(failure::kServerNotFound,
                  "\"" + Text(sDataSource) +
                      "\" is no name of a historian; enter localhost or the name of another "
                      "historian on this machine.");
  }
  return Text(sDataSource);
}

std::vector<Text> KnownServers(const fs::path& root) {
  std::vector<Text> servers;
  std::error_code error;
  // Without a root the path would be one below the current folder.
  const fs::path folder = root.empty() ? fs::path() : root / "historians";
  for (auto entry = fs::directory_iterator(folder, error);
       !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const Text sName = entry->path().filename().string();
    std::error_code unreadable;
    if (sName != platform::kDefaultServer && IsServerName(sName) &&
        entry->is_directory(unreadable)) {
      servers.push_back(sName);
    }
  }
  std::sort(servers.begin(), servers.end());
  servers.insert(servers.begin(), Text(platform::kDefaultServer));
  return servers;
}

}  // namespace orvane::provider::historian
