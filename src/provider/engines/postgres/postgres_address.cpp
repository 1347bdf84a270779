#include "provider/engines/postgres/postgres_address.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>

#include "platform/case_folding.h"
#include "platform/failure.h"
#include "platform/one_line.h"
#include "provider/engines/data_source.h"
#include "provider/engines/postgres/postgres_handle.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

// Left out on purpose: "options" sets anything on the server, "replication" is no session, and
// what loads a library or names a program is not for a text that came with a document.
constexpr std::array<std::string_view, 29> kTaken = {
    "application_name",
    "channel_binding",
    "connect_timeout",
    "dbname",
    "gssencmode",
    "host",
    "hostaddr",
    "keepalives",
    "keepalives_count",
    "keepalives_idle",
    "keepalives_interval",
    "krbsrvname",
    "passfile",
    "port",
    "requirepeer",
    "service",
    "ssl_max_protocol_version",
    "ssl_min_protocol_version",
    "sslcert",
    "sslcompression",
    "sslcrl",
    "sslcrldir",
    "sslkey",
    "sslmode",
    "sslrootcert",
    "sslsni",
    "target_session_attrs",
    "tcp_user_timeout",
    "user",
};

void RequireTaken(std::string_view sKeyword, std::string_view sValue) {
  const bool bTaken = std::ranges::binary_search(kTaken, sKeyword);
  // A key "ENGINE:NAME" has the library for encryption load ENGINE.
  const bool bLoads = sKeyword == "sslkey" && sValue.find(':') != std::string_view::npos;
  if (bTaken && !bLoads) return;
  throw Failure(failure::kInvalidArgument,
                fmt::format("The data source sets \"{}\", which is not for data sources: leave it "
                            "out, or put it into the service file.",
                            platform::OneLine(sKeyword)),
                "PostgreSQL");
}

constexpr std::array<const char*, 3> kBeginnings = {"postgresql://", "postgres://", "service="};
constexpr std::size_t kLongestBeginning = 13;

PostgresOptions Parse(Text sDataSource) {
  // Whoever writes the beginning in capitals means the same.
  const std::size_t nBeginning = std::min(sDataSource.find_first_of(":="), sDataSource.size());
  sDataSource.replace(0, nBeginning, platform::FoldCase(sDataSource.substr(0, nBeginning)));
  char* sError = nullptr;
  PostgresOptions options(PQconninfoParse(sDataSource.c_str(), &sError));
  const std::unique_ptr<char, decltype(&PQfreemem)> error(sError, &PQfreemem);
  if (options == nullptr) {
    Text sDetail = error == nullptr ? Text("no memory") : Text(error.get());
    while (!sDetail.empty() && (sDetail.back() == '\n' || sDetail.back() == '.')) {
      sDetail.pop_back();
    }
    throw Failure(failure::kInvalidArgument,
                  fmt::format("The data source cannot be read ({}): write "
                              "postgresql://HOST:PORT/DATABASE or service=NAME.",
                              platform::OneLine(sDetail)),
                  "PostgreSQL");
  }
  return options;
}

}  // namespace

Text PostgresAddress::Setting(std::string_view sKeyword) const {
  const auto found = std::ranges::find(settings, sKeyword,
                                       [](const auto& item) -> const Text& { return item.first; });
  return found == settings.end() ? Text() : found->second;
}

Text PostgresAddress::Shown() const {
  for (const auto* const sKeyword : {"host", "hostaddr", "service"}) {
    if (const Text sValue = Setting(sKeyword); !sValue.empty()) return platform::OneLine(sValue);
  }
  return "this machine";
}

void RequireEncryption(PostgresAddress& address) {
  if (!address.Setting("sslmode").empty() || !address.Setting("service").empty()) return;
  Text sHosts = address.Setting("hostaddr");
  if (sHosts.empty()) sHosts = address.Setting("host");
  for (std::size_t nBegin = 0; nBegin < sHosts.size();) {
    const std::size_t nEnd = std::min(sHosts.find(',', nBegin), sHosts.size());
    const std::string_view sHost = std::string_view(sHosts).substr(nBegin, nEnd - nBegin);
    // An empty host is the socket of this machine, and so is a path.
    const bool bHere = sHost.empty() || sHost.front() == '/' || sHost.front() == '@' ||
                       sHost == "localhost" || sHost == "::1" ||
                       (sHost.starts_with("127.") &&
                        sHost.find_first_not_of("0123456789.") == std::string_view::npos);
    if (!bHere) {
      address.settings.emplace_back("sslmode", "require");
      return;
    }
    nBegin = nEnd + 1;
  }
}

bool IsPostgresAddress(std::string_view sDataSource) {
  const Text sFolded = platform::FoldCase(sDataSource.substr(0, kLongestBeginning));
  return std::ranges::any_of(
      kBeginnings, [&](const char* sBeginning) { return sFolded.starts_with(sBeginning); });
}

PostgresAddress ReadPostgresAddress(const Text& sDataSource) {
  RefusePassword(sDataSource);
  if (sDataSource.find('\0') != Text::npos) {
    throw Failure(failure::kInvalidArgument,
                  "The data source holds a character that no address has: write "
                  "postgresql://HOST:PORT/DATABASE or service=NAME.",
                  "PostgreSQL");
  }
  const PostgresOptions options = Parse(sDataSource);
  PostgresAddress address;
  for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
    if (option->val == nullptr) continue;
    const std::string_view sKeyword = option->keyword;
    if (sKeyword == "password" || sKeyword == "sslpassword") RefusePassword("password=x");
    RequireTaken(sKeyword, option->val);
    if (sKeyword == "user") {
      address.sUser = option->val;
    } else {
      address.settings.emplace_back(option->keyword, option->val);
    }
  }
  return address;
}

}  // namespace orvane::provider::engines
