// The connection: reads the connection string, finds the provider, asks through the logon prompt
// and holds the session while it is open. Slow calls run through the host's long operation.
// Made by the host's object factory; one thread at a time.
#pragma once

#include <functional>
#include <memory>
#include <stop_token>

#include "ado/connection_properties.h"
#include "ado/connection_review.h"
#include "ado/fetch.h"
#include "ado/logon_prompt.h"
#include "ado/provider_source.h"
#include "platform/long_operation.h"

namespace orvane::ado {

/// What a connection works with. What the host does not offer is null: without providers none is
/// found, without a prompt nobody is asked, without long operations the caller waits, without a
/// review every connection is opened as it was asked for.
struct ConnectionServices {
  std::shared_ptr<ProviderSource> providers;
  std::shared_ptr<LogonPrompt> prompt;
  std::shared_ptr<platform::LongOperation> longOperation;
  std::shared_ptr<ConnectionReview> review = {};
  /// For the rows of all recordsets of the program; none bounds nothing.
  std::shared_ptr<MemoryBudget> budget = {};
};

class Connection final : public platform::Connection {
 public:
  explicit Connection(ConnectionServices services) : m_services(std::move(services)) {}
  /// Closes an open connection.
  ~Connection() override;

  platform::Text ConnectionString() const override { return m_sConnectionString; }
  /// Fails with failure::kObjectOpen while open and with kInvalidArgument for a string that holds
  /// a password. What else is wrong with the string is told by Open.
  void ConnectionString(const platform::Text& sConnectionString) override;
  platform::Properties& Properties() override { return m_properties; }
  /// An empty string opens with the property ConnectionString, any other replaces that.
  void Open(const platform::Text& sConnectionString, const platform::Text& sUserId,
            const platform::Text& sPassword, platform::Long lOptions) override;
  void Close() override;
  platform::Boolean IsOpen() const override { return m_session != nullptr; }
  platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                    std::span<const platform::Value> vtRestrictions = {}) override;

  /// Runs one statement; fails with failure::kObjectClosed when closed, with kBusy while another
  /// call has not returned. The recordset is never null.
  StatementResult Execute(Statement statement, FetchWishes wishes = {});

 private:
  /// Open, and no other call runs.
  void RequireOpen() const;
  void RequireClosed() const;
  void AskForLogon(LogonRequest& logon);
  /// The user says that the server may be logged on to although nothing is encrypted.
  void RequireYesTo(const platform::Text& sServer) const;
  void RunLong(const platform::Text& sWhat, const std::function<void(std::stop_token)>& work,
               const std::function<bool()>& tick = {}, bool bGivesWay = false);

  ConnectionServices m_services;
  platform::Text m_sConnectionString;
  std::shared_ptr<Provider> m_provider;
  ConnectionProperties m_properties;
  std::unique_ptr<Session> m_session;
  bool m_bRunning = false;  // a call of the session
};

}  // namespace orvane::ado
