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
#include "provider/engines/postgres/postgres_hosts.h"

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

// A host without a name is the socket of this machine, and so is a path.
bool IsHere(std::string_view sHost) {
  return sHost.empty() || sHost.front() == '/' || sHost.front() == '@' || sHost == "localhost" ||
         sHost == "::1" ||
         (sHost.starts_with("127.") &&
          sHost.find_first_not_of("0123456789.") == std::string_view::npos);
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
  if (!address.Setting("sslmode").empty()) return;
  Text sProblem;  // which the logon tells
  const PostgresOptions known = CompletedSettings(address.settings, sProblem);
  const Text sMode = OptionOf(known.get(), "sslmode");
  if (!sMode.empty() && sMode != "prefer" && sMode != "allow") return;
  // Where a host has an address it is not looked up.
  const auto names = PartsOf(OptionOf(known.get(), "host"));
  const auto addresses = PartsOf(OptionOf(known.get(), "hostaddr"));
  for (std::size_t n = 0; n < std::max(names.size(), addresses.size()); ++n) {
    const bool bAddress = n < addresses.size() && !addresses[n].empty();
    if (bAddress ? IsHere(addresses[n]) : n >= names.size() || IsHere(names[n])) continue;
    address.settings.emplace_back("sslmode", "require");
    address.bMustEncrypt = true;
    return;
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
