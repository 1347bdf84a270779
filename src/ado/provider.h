// What a provider implements and the connection layer drives.
// A provider is a component; a session is one open connection of it. Calls of one session come
// one at a time, but from changing threads, except Cancel requests, which are stop tokens.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

#include "ado/connection_settings.h"
#include "ado/row_receiver.h"
#include "platform/ado/connection.h"

namespace orvane::ado {

/// A property that the provider's sessions offer, with the value it has when nothing was set.
struct PropertyDescription {
  platform::Text sName;
  platform::Value vtInitial;
};

/// One statement to run.
struct Statement {
  platform::Text sText;
  platform::Long lMaxRecords = 0;   ///< 0 fetches all rows
  std::chrono::seconds timeout{0};  ///< 0 waits for ever
  /// A statement that would change anything fails with failure::kWouldChange, nothing changed.
  platform::Boolean bReadOnly = false;
  /// One for each "?" of the text, in order.
  std::vector<platform::Value> parameters{};
  /// What the statement must change to be kept; see platform::Command::RowsExpected.
  std::optional<platform::RowIndex> rowsExpected{};
  /// Without one the statement runs once; see platform::Command::Batch.
  platform::ParameterRows batch{};
  /// Takes the rows. Without one the session gives them in a recordset of its own.
  std::shared_ptr<RowReceiver> rows{};
};

struct StatementResult {
  platform::RecordsetPtr recordset;  ///< null when the rows went to the statement's receiver
  platform::Long lRecordsAffected = 0;
};

class Session {
 public:
  Session() = default;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  virtual ~Session() = default;

  virtual StatementResult Execute(const Statement& statement, std::stop_token stop) = 0;
  virtual platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                            std::span<const platform::Value> vtRestrictions,
                                            std::stop_token stop) = 0;
  /// Current value of a property from Provider::Properties.
  virtual platform::Value PropertyValue(const platform::Text& sName) const = 0;
  virtual void PropertyValue(const platform::Text& sName, const platform::Value& vtValue) = 0;
  virtual void Close() = 0;
};

class Provider : public platform::Object {
 public:
  /// The provider's own properties in their published order.
  virtual std::vector<PropertyDescription> Properties() const = 0;
  /// Servers known on this machine, for the logon dialog; the first is the default.
  virtual std::vector<platform::Text> KnownServers() const = 0;
  /// Opens a session; the settings hold the chosen server, the user and every option in order.
  /// Fails with failure::kNotEncrypted, nothing sent, where a server would have to be sent the
  /// password as it is and the settings do not say that this may be.
  virtual std::unique_ptr<Session> Open(const ConnectionSettings& settings,
                                        const platform::Text& sPassword, std::stop_token stop) = 0;
};

}  // namespace orvane::ado
