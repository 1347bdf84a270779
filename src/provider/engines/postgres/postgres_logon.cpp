#include "provider/engines/postgres/postgres_logon.h"

#include <fmt/format.h>
#include <locale.h>

#include <array>
#include <charconv>
#include <chrono>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/ado/logon_failures.h"
#include "platform/failure.h"
#include "platform/one_line.h"
#include "provider/engines/postgres/postgres_errors.h"
#include "provider/engines/postgres/postgres_hosts.h"
#include "provider/engines/postgres/stop_signal.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;
using Clock = std::chrono::steady_clock;

namespace {

// What holds where the address says nothing: a server that is not there, or a link that has died,
// is noticed within half a minute.
constexpr std::array<std::pair<const char*, const char*>, 6> kUnlessSet = {{
    {"connect_timeout", "10"},
    {"keepalives_idle", "10"},
    {"keepalives_interval", "5"},
    {"keepalives_count", "3"},
    {"tcp_user_timeout", "25000"},
    {"application_name", "ORVANE Console"},
}};

PostgresSettings SettingsFor(const PostgresAddress& address, const Text& sUser) {
  PostgresSettings settings = address.settings;
  for (const auto& [sKeyword, sValue] : kUnlessSet) {
    if (address.Setting(sKeyword).empty()) settings.emplace_back(sKeyword, sValue);
  }
  settings.emplace_back("client_encoding", "UTF8");
  const Text& sName = sUser.empty() ? address.sUser : sUser;
  if (!sName.empty()) settings.emplace_back("user", sName);
  return settings;
}

PostgresHandle BeginLogOn(const PostgresSettings& settings, const std::vector<PostgresHost>& hosts,
                          const Text& sPassword) {
  const PostgresSettings places = SettingsOf(hosts);
  std::vector<const char*> keywords;
  std::vector<const char*> values;
  // What comes later goes before what came earlier.
  for (const auto* const some : {&settings, &places}) {
    for (const auto& [sKeyword, sValue] : *some) {
      keywords.push_back(sKeyword.c_str());
      values.push_back(sValue.c_str());
    }
  }
  if (!sPassword.empty()) {
    keywords.push_back("password");
    values.push_back(sPassword.c_str());
  }
  keywords.push_back(nullptr);
  values.push_back(nullptr);
  return PostgresHandle(PQconnectStartParams(keywords.data(), values.data(), 0));
}

// How long a host may say nothing; 0 is as long as it likes.
std::chrono::seconds ConnectTimeOf(const PQconninfoOption* options, Text& sProblem) {
  const Text sTime = OptionOf(options, "connect_timeout");
  int nSeconds = 0;
  const char* const end = sTime.data() + sTime.size();
  const auto [read, error] = std::from_chars(sTime.data(), end, nSeconds);
  if (!sTime.empty() && (error != std::errc() || read != end)) {
    sProblem = fmt::format("invalid integer value \"{}\" for connection option \"connect_timeout\"",
                           platform::OneLine(sTime));
  }
  return std::chrono::seconds(nSeconds > 0 ? nSeconds : 0);
}

// Goes on until there is a connection, or will be none. Gives the host whose time is over.
std::optional<std::size_t> FinishLogOn(PGconn* connection, const std::vector<PostgresHost>& hosts,
                                       std::chrono::seconds time, const std::stop_token& stop) {
  const StopSignal signal(stop);
  std::size_t nTried = hosts.size();
  auto end = Clock::time_point::max();
  auto wanted =
      PQstatus(connection) == CONNECTION_BAD ? PGRES_POLLING_FAILED : PGRES_POLLING_WRITING;
  while (wanted == PGRES_POLLING_READING || wanted == PGRES_POLLING_WRITING) {
    if (stop.stop_requested()) {
      throw Failure(failure::kCancelled, "The connection was cancelled.", "PostgreSQL");
    }
    const std::size_t nNow = TriedOf(connection, hosts);
    if (std::exchange(nTried, nNow) != nNow && time.count() != 0) end = Clock::now() + time;
    auto left = StopSignal::kForever;
    if (end != Clock::time_point::max()) {
      left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
      if (left.count() <= 0) return nTried;
    }
    const short nEvents = wanted == PGRES_POLLING_READING ? POLLIN : POLLOUT;
    if (signal.WaitFor(PQsocket(connection), nEvents, left)) wanted = PQconnectPoll(connection);
  }
  return std::nullopt;
}

// Has libpq say in the one language that it always has what is looked through for why it failed.
class EnglishWords {
 public:
  EnglishWords()
      : m_english(newlocale(LC_ALL_MASK, "C", nullptr)), m_before(uselocale(m_english)) {}
  EnglishWords(const EnglishWords&) = delete;
  EnglishWords& operator=(const EnglishWords&) = delete;
  ~EnglishWords() {
    uselocale(m_before);
    freelocale(m_english);
  }

 private:
  locale_t m_english;
  locale_t m_before;
};

// The connection, or what came of it, with why there is none.
struct Attempt {
  PostgresHandle handle;
  Text sWords;
};

Attempt TryToLogOn(const PostgresSettings& settings, const Text& sPassword,
                   const std::stop_token& stop) {
  const EnglishWords english;
  Attempt attempt;
  const PostgresOptions options = CompletedSettings(settings, attempt.sWords);
  if (options == nullptr) return attempt;
  const std::chrono::seconds time = ConnectTimeOf(options.get(), attempt.sWords);
  if (!attempt.sWords.empty()) return attempt;
  auto [hosts, sWords] = HostsOf(options.get(), stop);
  attempt.sWords = std::move(sWords);
  while (!hosts.empty()) {
    attempt.handle = BeginLogOn(settings, hosts, sPassword);
    const auto silent = FinishLogOn(attempt.handle.get(), hosts, time, stop);
    if (!silent) {
      if (PQstatus(attempt.handle.get()) != CONNECTION_OK) {
        AddWords(attempt.sWords, LastWords(attempt.handle.get()));
      }
      return attempt;
    }
    // One that says nothing is left out, and the others are asked anew.
    AddWords(attempt.sWords, SilenceOf(hosts[*silent]));
    attempt.handle.reset();
    hosts.erase(hosts.begin() + static_cast<std::ptrdiff_t>(*silent));
  }
  return attempt;
}

}  // namespace

PostgresHandle LogOn(const PostgresAddress& address, const Text& sUser, const Text& sPassword,
                     const std::stop_token& stop) {
  auto [handle, sWords] = TryToLogOn(SettingsFor(address, sUser), sPassword, stop);
  if (PQstatus(handle.get()) == CONNECTION_OK) return std::move(handle);
  if (stop.stop_requested()) {
    throw Failure(failure::kCancelled, "The connection was cancelled.", "PostgreSQL");
  }
  // A server that is there and refuses the user says so in words alone.
  const bool bRole = sWords.find("FATAL:  role ") != Text::npos ||
                     sWords.find("authentication failed") != Text::npos;
  const bool bLogon = handle != nullptr && (bRole || PQconnectionNeedsPassword(handle.get()) != 0 ||
                                            PQconnectionUsedPassword(handle.get()) != 0);
  if (bLogon) {
    throw Failure(failure::kNoRights,
                  fmt::format("The server at {} does not let you in ({}): check user and password.",
                              address.Shown(), sWords),
                  "PostgreSQL");
  }
  if (sWords.find("does not support SSL") != Text::npos) {
    if (address.bMustEncrypt) {
      throw Failure(failure::kNotEncrypted,
                    fmt::format("The server at {} does not encrypt what is sent, so nothing was "
                                "sent to it: add \"?sslmode=disable\" to its address, or "
                                "\"sslmode=disable\" to its service, if nobody can listen on the "
                                "way.",
                                address.Shown()),
                    "PostgreSQL");
    }
    throw Failure(failure::kNotSupported,
                  fmt::format("The server at {} does not encrypt what is sent, which \"sslmode\" "
                              "asks for, so nothing was sent to it: let its administrator switch "
                              "encryption on, or leave \"sslmode\" out.",
                              address.Shown()),
                  "PostgreSQL");
  }
  throw Failure(failure::kServerNotFound,
                fmt::format("There is no connection to the server at {} ({}): check its name, and "
                            "whether it runs.",
                            address.Shown(), sWords),
                "PostgreSQL");
}

}  // namespace orvane::provider::engines
