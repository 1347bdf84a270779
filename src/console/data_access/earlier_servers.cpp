#include "console/data_access/earlier_servers.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "files/private_files.h"
#include "files/replacement.h"
#include "platform/stored_secret.h"
#include "platform/user_folders.h"
#include "platform/utf8.h"

namespace orvane::console {

using platform::Text;

namespace {

// Of what stands in the file; twenty servers are far less.
constexpr std::size_t kMostOfFile = 1 << 16;
constexpr std::size_t kLongest = 2048;

/// Others may have written into the file.
bool IsServer(const Text& sLine) {
  return !sLine.empty() && sLine.size() <= kLongest && platform::IsUtf8(sLine) &&
         !platform::HoldsSecret(sLine) && std::ranges::none_of(sLine, [](char character) {
           return static_cast<unsigned char>(character) < 0x20;
         });
}

}  // namespace

EarlierServers EarlierServers::OfUser() {
  const auto state = platform::UserStateFolder();
  return state ? EarlierServers(*state / "servers") : EarlierServers();
}

std::vector<Text> EarlierServers::All() const {
  std::vector<Text> servers;
  std::error_code error;
  // Nothing but a file is read: a pipe would hold the reader up.
  if (m_file.empty() || !std::filesystem::is_regular_file(m_file, error)) return servers;
  std::ifstream stream(m_file, std::ios::binary);
  Text sBytes(kMostOfFile, '\0');
  stream.read(sBytes.data(), static_cast<std::streamsize>(sBytes.size()));
  sBytes.resize(static_cast<std::size_t>(stream.gcount()));
  std::istringstream lines(sBytes);
  for (Text sLine; servers.size() < kMost && std::getline(lines, sLine);) {
    if (IsServer(sLine) && std::ranges::find(servers, sLine) == servers.end()) {
      servers.push_back(sLine);
    }
  }
  return servers;
}

void EarlierServers::Remember(const Text& sServer) const {
  if (m_file.empty() || !IsServer(sServer)) return;
  auto servers = All();
  if (!servers.empty() && servers.front() == sServer) return;
  std::erase(servers, sServer);
  servers.insert(servers.begin(), sServer);
  servers.resize(std::min(servers.size(), kMost));
  Text sBytes;
  for (const Text& sLine : servers) sBytes += sLine + "\n";
  std::error_code error;
  files::MakePrivateFolders(m_file.parent_path(), error);
  try {
    files::Replace(m_file, sBytes, {.mode = files::kPrivateFile});
  } catch (const std::system_error&) {
    // Then it is not remembered.
  }
}

}  // namespace orvane::console
