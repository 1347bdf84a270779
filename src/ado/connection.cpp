#include "ado/connection.h"

#include "ado/out_of_memory.h"
#include "ado/secret.h"
#include "platform/ado/logon_failures.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/stored_secret.h"

namespace orvane::ado {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr const char* kProvider = "Provider";
constexpr const char* kDisableServerSelection = "Disable Server Selection";

// Looks at the text before it is read, so that it is refused also when it cannot be read as a
// whole. The sentence repeats nothing of it.
void RefusePassword(std::string_view sConnectionString) {
  if (platform::HoldsSecret(sConnectionString)) {
    throw Failure(failure::kInvalidArgument,
                  "A connection string must not hold a password: type it in the logon dialog.");
  }
}

std::shared_ptr<Provider> FindProvider(ProviderSource* providers,
                                       const ConnectionSettings& settings) {
  const Text sName = settings.Find(kProvider).value_or("");
  if (sName.empty()) {
    throw Failure(failure::kProviderNotFound,
                  "The connection string names no provider: begin it with \"Provider = \" and the "
                  "provider's name.");
  }
  auto provider = providers == nullptr ? nullptr : providers->Find(sName);
  if (provider == nullptr) {
    throw Failure(failure::kProviderNotFound,
                  "There is no provider \"" + sName +
                      "\" on this machine: register it, or name another one in the connection "
                      "string.");
  }
  return provider;
}

/// Stops as soon as one of two stops.
class EitherStop {
 public:
  EitherStop(std::stop_token one, std::stop_token other)
      : m_one(std::move(one), Request{m_both}), m_other(std::move(other), Request{m_both}) {}
  std::stop_token Token() const { return m_both.get_token(); }

 private:
  struct Request {
    std::stop_source& both;
    void operator()() const { both.request_stop(); }
  };

  std::stop_source m_both;
  std::stop_callback<Request> m_one;
  std::stop_callback<Request> m_other;
};

bool ServerSelectionDisabled(const ConnectionSettings& settings) {
  const Text sValue = settings.Find(kDisableServerSelection).value_or("");
  if (sValue.empty()) return false;
  try {
    return platform::ToBoolean(sValue);
  } catch (const Failure&) {
    throw Failure(failure::kInvalidArgument, Text("\"") + kDisableServerSelection +
                                                 "\" takes True or False, not \"" + sValue + "\".");
  }
}

}  // namespace

Connection::~Connection() {
  if (m_session == nullptr) return;
  m_properties.Attach(nullptr);
  try {
    m_session->Close();
  } catch (...) {
    // A destructor has nobody to tell; the session is let go in any case.
  }
}

void Connection::ConnectionString(const Text& sConnectionString) {
  RequireClosed();
  RefusePassword(sConnectionString);
  m_sConnectionString = sConnectionString;
  m_provider = nullptr;
  try {
    const auto settings = ConnectionSettings::Parse(sConnectionString);
    if (const Text sName = settings.Find(kProvider).value_or("");
        !sName.empty() && m_services.providers) {
      m_provider = m_services.providers->Find(sName);
    }
    m_properties.Describe(settings, m_provider.get());
  } catch (const Failure&) {
    // Only the properties of a provider are missing; Open tells what is wrong.
    m_properties.Describe({}, nullptr);
  }
}

void Connection::Open(const Text& sConnectionString, const Text& sUserId, const Text& sPassword,
                      platform::Long /*lOptions*/) {
  RequireClosed();
  if (!sConnectionString.empty()) ConnectionString(sConnectionString);
  auto settings = ConnectionSettings::Parse(m_sConnectionString);
  const auto provider = FindProvider(m_services.providers.get(), settings);
  m_properties.Describe(settings, provider.get());
  m_properties.AddValuesSet(settings);

  LogonRequest logon;
  const WipeAtEnd wipe(logon.sPassword);
  logon.sServer = platform::ToText(m_properties.Get(platform::kDataSource));
  logon.sUser =
      sUserId.empty() ? platform::ToText(m_properties.Get(ConnectionProperties::kUserId)) : sUserId;
  logon.sPassword = sPassword;
  logon.bServerSelectable = !ServerSelectionDisabled(settings);
  logon.knownServers = provider->KnownServers();
  if (logon.sServer.empty() && !logon.knownServers.empty()) {
    logon.sServer = logon.knownServers.front();
  }
  const bool bPrompt =
      platform::ToLong(m_properties.Get(ConnectionProperties::kPrompt)) == platform::kPromptAlways;
  if (bPrompt) AskForLogon(logon);
  RefusePassword(logon.sServer);
  settings.Set(platform::kDataSource, logon.sServer);
  settings.Set(ConnectionProperties::kUserId, logon.sUser);
  if (m_services.review) m_services.review->Review(settings);

  std::unique_ptr<Session> session;
  const auto open = [&] {
    RunLong("Connecting to " + logon.sServer, [&](std::stop_token stop) {
      session = provider->Open(settings, logon.sPassword, std::move(stop));
    });
  };
  try {
    open();
  } catch (const Failure& refused) {
    if (refused.Number() != failure::kNotEncrypted || !bPrompt) throw;
    RequireYesTo(logon.sServer);
    settings.MayGoUnencrypted(true);
    open();
  }
  m_properties.Put(platform::kDataSource, logon.sServer);
  m_properties.Put(ConnectionProperties::kUserId, logon.sUser);
  m_properties.Put(ConnectionProperties::kProviderName, settings.Find(kProvider).value_or(""));
  m_properties.Attach(session.get());
  m_provider = provider;
  m_session = std::move(session);
  if (m_services.review) m_services.review->Opened(settings);
}

void Connection::AskForLogon(LogonRequest& logon) {
  if (m_services.prompt == nullptr) {
    throw Failure(
        failure::kNotSupported,
        "This program has no logon dialog: set \"Prompt\" to 4 and name server and user in "
        "the connection string.");
  }
  const Text sServer = logon.sServer;
  if (!m_services.prompt->Ask(logon)) {
    throw Failure(failure::kCancelled, "The logon was cancelled.");
  }
  if (!logon.bServerSelectable) logon.sServer = sServer;
}

void Connection::RequireYesTo(const Text& sServer) const {
  if (m_services.prompt->MayGoUnencrypted(sServer)) return;
  throw Failure(failure::kCancelled, "The logon was cancelled.");
}

void Connection::Close() {
  RequireOpen();
  m_session->Close();
  m_properties.Attach(nullptr);
  m_session = nullptr;
}

platform::RecordsetPtr Connection::OpenSchema(platform::SchemaNumber schema,
                                              std::span<const platform::Value> vtRestrictions) {
  RequireOpen();
  platform::RecordsetPtr recordset;
  RunLong("Reading what the server holds", [&](std::stop_token stop) {
    recordset = m_session->OpenSchema(schema, vtRestrictions, std::move(stop));
  });
  return recordset;
}

StatementResult Connection::Execute(Statement statement, FetchWishes wishes) {
  RequireOpen();
  const auto fetch = std::make_shared<Fetch>(std::move(wishes), m_services.budget);
  statement.rows = fetch;
  StatementResult result;
  try {
    const auto run = [&](std::stop_token stop) {
      const EitherStop either(std::move(stop), fetch->Stop());
      result = m_session->Execute(statement, either.Token());
    };
    constexpr const char* kWhat = "Running the statement";
    if (fetch->GivesWay()) {
      RunLong(kWhat, run, {}, true);
    } else {
      RunLong(kWhat, run, [&] { return fetch->Show(); });
    }
    fetch->RethrowCallers();
  } catch (...) {
    fetch->KeepOrRethrow(statement);
  }
  if (auto rs = fetch->Recordset()) result.recordset = std::move(rs);
  return result;
}

// Where the host has no long operations the work is done where it is called, and cannot be stopped.
void Connection::RunLong(const Text& sWhat, const std::function<void(std::stop_token)>& work,
                         const std::function<bool()>& tick, bool bGivesWay) {
  m_bRunning = true;
  const struct Ended {
    bool& bRunning;
    ~Ended() { bRunning = false; }
  } ended{m_bRunning};
  TellingMemory([&] {
    if (!m_services.longOperation) {
      work({});
    } else if (bGivesWay) {
      m_services.longOperation->RunGivingWay(sWhat, work);
    } else if (tick) {
      m_services.longOperation->RunShown(sWhat, work, tick);
    } else {
      m_services.longOperation->Run(sWhat, work);
    }
  });
}

void Connection::RequireOpen() const {
  if (m_session == nullptr) {
    throw Failure(failure::kObjectClosed, "The connection is closed: open it first.");
  }
  if (m_bRunning) {
    throw Failure(failure::kBusy,
                  "The connection is still running a statement: wait until it is done, or cancel "
                  "it.");
  }
}

void Connection::RequireClosed() const {
  if (m_session != nullptr) {
    throw Failure(failure::kObjectOpen, "The connection is already open: close it first.");
  }
}

}  // namespace orvane::ado
