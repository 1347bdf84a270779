// What an engine is to the provider: open, run, schema, cancel, close, in plain SQL with
// parameters. It knows nothing of historian SQL. Calls of one session come one at a time, from
// changing threads; a stop token cancels the call it was given to, from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "ado/row_receiver.h"
#include "platform/ado/connection.h"
#include "platform/failure.h"

namespace orvane::provider::engines {

/// A catalog as a statement reaches it: the name that qualifies its tables, and where it is.
struct Catalog {
  platform::Text sName;
  platform::Text sPlace;  ///< for an engine on files the file's path, otherwise unused
  platform::Boolean bReadOnly = false;
  std::int64_t llMaxKilobytes = 0;  ///< limit of the file's size; 0 is none
};

/// A function of one value that a statement may call while it runs. The same value always gives
/// the same; a platform::Failure that is thrown ends the statement and is what its caller gets.
struct StatementFunction {
  platform::Text sName;
  std::function<platform::Value(const platform::Value&)> call;
};

/// One statement in the engine's own SQL.
struct EngineStatement {
  platform::Text sSql;
  /// One for each "?" in order. Timestamps are bound as the engine stores them.
  std::vector<platform::Value> parameters;
  /// The catalogs that the statement names; they are within reach only while it runs.
  std::vector<Catalog> catalogs;
  platform::RowIndex maxRows = 0;       ///< 0 fetches all rows
  platform::Boolean bReadOnly = false;  ///< only reads; see Run
  /// How many rows each run of it must change: another number is undone and fails. What triggers
  /// change for it does not count. None lets it change any number.
  std::optional<platform::RowIndex> rowsExpected{};
  /// Memory that the engine may take while it works, and the rows that it holds itself; 0 is no
  /// limit.
  std::size_t maxBytes = 0;
  /// Takes the rows, the last of them before a change is made for good; what it fails with leaves
  /// nothing changed. Without one they are given in a recordset.
  std::shared_ptr<ado::RowReceiver> rows{};
  /// Asked when all is done, right before a change is made for good; false leaves nothing changed.
  std::function<bool()> mayCommit{};
  std::vector<StatementFunction> functions{};  ///< known to this statement only
  /// With it the statement runs once for each of the rows that it gives, which take the place of
  /// the parameters, all in one transaction; see platform::Command::Batch.
  platform::ParameterRows batch{};
};

/// What a statement that only reads fails with when it would change anything.
inline platform::Failure WouldChange(platform::Text sSql) {
  return platform::Failure(
      platform::failure::kWouldChange,
      "The statement changes data and has not been run, as only reading was asked for: run it as a "
      "change if that is what is wanted.",
      {}, 0, std::move(sSql));
}

/// What a statement fails with that would change another number of rows than it must.
inline platform::Failure UnexpectedRows(platform::RowIndex rows, platform::RowIndex expected,
                                        platform::Text sSql) {
  return platform::Failure(platform::failure::kConflict,
                           "The statement would have changed " + std::to_string(rows) +
                               " rows instead of " + std::to_string(expected) +
                               " and was undone: read the rows again, then repeat the change.",
                           {}, 0, std::move(sSql));
}

struct EngineResult {
  /// Without fields when there is no rowset; null when the rows went to the statement's receiver.
  platform::RecordsetPtr recordset;
  platform::Long lRecordsAffected = 0;
};

struct ColumnSchema {
  platform::Text sName;
  platform::Text sDeclaredType;  ///< as it was written when the table was made, may be empty
  platform::DataType type = platform::DataType::Empty;
  platform::Boolean bNullable = true;
  platform::Long lKeyOrdinal = 0;          ///< place in the primary key from 1, 0 outside of it
  std::optional<platform::Text> sDefault;  ///< the default's SQL text
  platform::Boolean bGenerated = false;    ///< computed from others; takes no value
};

struct IndexSchema {
  platform::Text sName;
  platform::Boolean bPrimaryKey = false;
  platform::Boolean bUnique = false;
  std::optional<platform::Text> sFilter{};  ///< of one that holds only some rows: its definition
  struct Part {
    std::optional<platform::Text> sColumn;  ///< none for an expression
    platform::Boolean bDescending = false;
  };
  std::vector<Part> parts{};  ///< in the index's order
};

struct TableSchema {
  platform::Text sName;
  platform::Boolean bView = false;
  std::vector<ColumnSchema> columns;  ///< in the table's order; empty when not asked for
  /// When columns are asked for, the statement that made it: of a view, and of a table that
  /// computes columns.
  platform::Text sDefinition{};
  std::vector<IndexSchema> indexes{};  ///< in the order of their names; empty when not asked for
};

/// Which tables to describe.
struct SchemaRequest {
  /// Only this one (or none) instead of all; ASCII letters without regard to case.
  std::optional<platform::Text> sTable;
  platform::Boolean bColumns = true;   ///< false describes the tables without their columns
  platform::Boolean bIndexes = false;  ///< with their indexes, which takes one statement more
};

class EngineSession {
 public:
  EngineSession() = default;
  EngineSession(const EngineSession&) = delete;
  EngineSession& operator=(const EngineSession&) = delete;
  virtual ~EngineSession() = default;

  /// Runs exactly one statement; a second one behind it fails with failure::kSqlError. Fails with
  /// kCancelled, kBusy and the other numbers of the database. A statement that fails has changed
  /// nothing; one whose stop was requested while it could still be taken back fails, and so does,
  /// with kConflict, one that would change another number of rows than it must. One that only
  /// reads, but would change anything, fails with kWouldChange before it begins. Attaching,
  /// transactions and settings of the database are refused with kNotSupported.
  virtual EngineResult Run(const EngineStatement& statement, std::stop_token stop) = 0;
  /// Tables and views of a catalog in the order of their names, in one statement however many
  /// there are; where a view cannot be read, in one more and one for each view. Tables of the
  /// engine's own are left out.
  virtual std::vector<TableSchema> Schema(const Catalog& catalog, const SchemaRequest& request,
                                          std::stop_token stop) = 0;
  /// Does the work, which calls Run on this session, in one transaction over the session's own
  /// database and the catalogs: all of it is there afterwards, or, when the work or the end of
  /// the transaction fails, nothing of it.
  virtual void InTransaction(std::span<const Catalog> catalogs, const std::function<void()>& work,
                             std::stop_token stop) = 0;
  /// Ends the session; closing twice does nothing. Recordsets stay usable.
  virtual void Close() = 0;
};

class Engine {
 public:
  Engine() = default;
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  virtual ~Engine() = default;

  /// Opens the database at the place. For an engine on files an empty place is a session without
  /// a database of its own, which reaches the catalogs that its statements name.
  virtual std::unique_ptr<EngineSession> Open(const Catalog& main, std::stop_token stop) = 0;
};

}  // namespace orvane::provider::engines
