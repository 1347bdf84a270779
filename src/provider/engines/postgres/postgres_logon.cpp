#include "provider/engines/postgres/postgres_logon.h"

#include <fmt/format.h>

#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "ado/secret.h"
#include "platform/failure.h"
#include "provider/engines/postgres/postgres_errors.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

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

// Keywords and values as libpq wants them.
class Settings {
 public:
  Settings(const PostgresAddress& address, const Text& sUser, Text sPassword)
      : m_sPassword(std::move(sPassword)), m_settings(address.settings) {
    for (const auto& [sKeyword, sValue] : kUnlessSet) {
      if (address.Setting(sKeyword).empty()) m_settings.emplace_back(sKeyword, sValue);
    }
    m_settings.emplace_back("client_encoding", "UTF8");
    const Text& sName = sUser.empty() ? address.sUser : sUser;
    if (!sName.empty()) m_settings.emplace_back("user", sName);
  }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;
  ~Settings() { ado::Wipe(m_sPassword); }

  PGconn* Connect() const {
    std::vector<const char*> keywords;
    std::vector<const char*> values;
    for (const auto& [sKeyword, sValue] : m_settings) {
      keywords.push_back(sKeyword.c_str());
      values.push_back(sValue.c_str());
    }
    if (!m_sPassword.empty()) {
      keywords.push_back("password");
      values.push_back(m_sPassword.c_str());
    }
    keywords.push_back(nullptr);
    values.push_back(nullptr);
    return PQconnectdbParams(keywords.data(), values.data(), 0);
  }

 private:
  Text m_sPassword;
  std::vector<std::pair<Text, Text>> m_settings;
};

// Between who waits and who connects; whoever is last lets it go, with a connection that nobody
// waits for any more.
struct Attempt {
  std::mutex mutex;
  std::condition_variable_any done;
  std::optional<PostgresHandle> handle;
};

}  // namespace

PostgresHandle LogOn(const PostgresAddress& address, const Text& sUser, Text sPassword,
                     const std::stop_token& stop) {
  // libpq tries several hosts in one call only, and that call hears nothing.
  const auto attempt = std::make_shared<Attempt>();
  auto settings = std::make_unique<Settings>(address, sUser, std::move(sPassword));
  ado::Wipe(sPassword);
  std::thread([attempt, settings = std::move(settings)]() mutable {
    PostgresHandle handle(settings->Connect());
    settings.reset();
    const std::lock_guard lock(attempt->mutex);
    attempt->handle = std::move(handle);
    attempt->done.notify_all();
  }).detach();

  std::unique_lock lock(attempt->mutex);
  if (!attempt->done.wait(lock, stop, [&] { return attempt->handle.has_value(); })) {
    throw Failure(failure::kCancelled, "The connection was cancelled.", "PostgreSQL");
  }
  PostgresHandle handle = std::move(*attempt->handle);
  if (handle != nullptr && PQstatus(handle.get()) == CONNECTION_OK) return handle;
  const Text sWords = handle == nullptr ? Text("no memory") : LastWords(handle.get());
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
    throw Failure(failure::kNoRights,
                  fmt::format("The server at {} does not encrypt what is sent, so nothing was sent "
                              "to it: add \"?sslmode=disable\" to its address if nobody can listen "
                              "on the way.",
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
