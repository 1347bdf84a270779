#include "provider/engines/postgres/postgres_engine.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "platform/user_folders.h"
#include "platform/utf8.h"
#include "provider/engines/postgres/postgres_address.h"
#include "provider/engines/postgres/postgres_historian.h"
#include "provider/engines/postgres/postgres_link.h"
#include "provider/engines/postgres/postgres_session.h"

namespace orvane::provider::engines {

using platform::Text;
namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t kMostOfAServiceFile = 1 << 20;

fs::path ServiceFile() {
  if (const char* const sFile = std::getenv("PGSERVICEFILE")) return sFile;
  const auto home = platform::HomeFolder();
  return home ? *home / ".pg_service.conf" : fs::path();
}

PostgresAddress AddressOf(const Logon& logon) {
  auto address = ReadPostgresAddress(logon.sDataSource);
  if (!logon.bMayGoUnencrypted) RequireEncryption(address);
  return address;
}

}  // namespace

platform::Boolean PostgresEngine::Serves(const Text& sDataSource) const {
  return IsPostgresAddress(sDataSource);
}

std::vector<Text> PostgresEngine::KnownServers() const {
  const fs::path file = ServiceFile();
  std::error_code error;
  // A pipe or a device would be waited for.
  if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > kMostOfAServiceFile) {
    return {};
  }
  std::vector<Text> servers;
  std::ifstream lines(file);
  for (Text sLine; std::getline(lines, sLine);) {
    const auto nEnd = sLine.find(']');
    if (!sLine.starts_with('[') || nEnd == Text::npos || !platform::IsUtf8(sLine)) continue;
    const Text sName = sLine.substr(1, nEnd - 1);
    const bool bPlain = !sName.empty() && std::ranges::none_of(sName, [](char character) {
      return character == ' ' || character == '\'' || character == '\\' ||
             static_cast<unsigned char>(character) < 0x20;
    });
    if (bPlain) servers.push_back("service=" + sName);
  }
  return servers;
}

void PostgresEngine::MakeHistorian(const Logon& logon, const Text& sPassword,
                                   const std::stop_token& stop) {
  PostgresLink link(AddressOf(logon), logon.sUser, sPassword, stop);
  // What fails ends the connection, and with it the transaction.
  link.Command((Text("BEGIN READ WRITE; ") + kNewPostgresHistorian).c_str(), stop);
  link.Command("COMMIT", {});
}

std::unique_ptr<EngineSession> PostgresEngine::Open(const Logon& logon, const Text& sPassword,
                                                    std::stop_token stop) {
  return std::make_unique<PostgresSession>(
      std::make_unique<PostgresLink>(AddressOf(logon), logon.sUser, sPassword, stop), stop);
}

}  // namespace orvane::provider::engines
