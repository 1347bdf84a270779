// Connection, command and properties, in the terms of ActiveX Data Objects.
// Implemented by the connection layer; one thread at a time.
#pragma once

#include <memory>
#include <span>

#include "platform/ado/recordset.h"

namespace orvane::platform {

/// Schema rowsets by the numbers that data access publishes for them.
enum class SchemaNumber : std::int32_t {
  Catalogs = 1,
  Columns = 4,
  Tables = 20,
  ProviderTypes = 22,
  PrimaryKeys = 28,
};

constexpr Long kOptionUnspecified = -1;
/// Value of the connection property "Prompt": the provider always shows its logon dialog.
constexpr Long kPromptAlways = 1;
/// The connection property, and the item of a connection string, that names the server.
constexpr const char* kDataSource = "Data Source";

class Property {
 public:
  Property() = default;
  Property(const Property&) = delete;
  Property& operator=(const Property&) = delete;
  virtual ~Property() = default;

  virtual const Text& Name() const = 0;
  virtual platform::Value Value() const = 0;
  /// Fails with failure::kTypeMismatch for a value that the property cannot take.
  virtual void Value(const platform::Value& vtValue) = 0;
};

class Properties {
 public:
  Properties() = default;
  Properties(const Properties&) = delete;
  Properties& operator=(const Properties&) = delete;
  virtual ~Properties() = default;

  virtual Long Count() const = 0;
  /// By position from 0 or by name without regard to case; fails with failure::kItemNotFound.
  /// The reference lives as long as the connection.
  virtual Property& Item(const platform::Value& vtIndexName) = 0;
};

class Connection : public Object {
 public:
  virtual Text ConnectionString() const = 0;
  virtual void ConnectionString(const Text& sConnectionString) = 0;
  /// Before Open: "Prompt" and "Data Source"; the provider's own join them once it is named.
  virtual platform::Properties& Properties() = 0;
  /// Opens with the string, asking through the logon prompt when "Prompt" says so. On failure,
  /// also the user's Cancel (failure::kCancelled), the connection stays closed.
  virtual void Open(const Text& sConnectionString, const Text& sUserId, const Text& sPassword,
                    Long lOptions) = 0;
  virtual void Close() = 0;
  virtual Boolean IsOpen() const = 0;
  /// A null restriction is an unset one; missing ones at the end are unset too.
  virtual RecordsetPtr OpenSchema(SchemaNumber schema,
                                  std::span<const platform::Value> vtRestrictions = {}) = 0;
};

using ConnectionPtr = std::shared_ptr<Connection>;

class Command : public Object {
 public:
  virtual void ActiveConnection(const ConnectionPtr& cn) = 0;
  virtual Text CommandText() const = 0;
  virtual void CommandText(const Text& sCommandText) = 0;
  /// Time-out in seconds; 0 waits for ever. 30 when never set.
  virtual Long CommandTimeout() const = 0;
  virtual void CommandTimeout(Long lSeconds) = 0;
  /// Row limit; 0 fetches all rows, which is also the initial value.
  virtual Long MaxRecords() const = 0;
  virtual void MaxRecords(Long lMaxRecords) = 0;
  /// Whether the command only reads: a statement that would change anything then fails with
  /// failure::kWouldChange, and nothing was changed. False when never set.
  virtual Boolean ReadOnly() const = 0;
  virtual void ReadOnly(Boolean bReadOnly) = 0;
  /// Runs one statement and fetches its rows. A statement without rows gives an empty recordset
  /// without fields; the rows it changed are told through lRecordsAffected.
  virtual RecordsetPtr Execute(Long* lRecordsAffected = nullptr,
                               Long lOptions = kOptionUnspecified) = 0;
};

using CommandPtr = std::shared_ptr<Command>;

}  // namespace orvane::platform
