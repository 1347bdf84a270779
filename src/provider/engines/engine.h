// What an engine is to the provider: it opens servers, whose catalogs it lists, makes, drops and
// describes, and in which it runs plain SQL with parameters. It knows nothing of historian SQL, and
// nothing above knows which engine it is: what one cannot do is asked of it.
// Calls of one session come one at a time, from changing threads; a stop token cancels the call it
// was given to, from any thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ado/row_receiver.h"
#include "platform/ado/connection.h"
#include "platform/failure.h"
#include "provider/engines/sql_form.h"

namespace orvane::provider::engines {

/// A catalog of a server. A statement is given those that it names as the session listed them.
struct Catalog {
  platform::Text sName;   ///< qualifies its tables
  platform::Text sPlace;  ///< where it is, in the engine's own words; nobody else reads them
  platform::Boolean bReadOnly = false;  ///< the statement only reads in it
  std::int64_t llMaxKilobytes = 0;      ///< limit of its size; 0 is none
  platform::Text sIdentity{};           ///< "{8-4-4-4-12}"; empty for one without
  platform::Text sDescription{};
  platform::Boolean bSystem = false;  ///< the server's own, in which statements only read
};

/// A catalog that is to be made, or taken in.
struct NewCatalog {
  platform::Text sName;
  platform::Text sPath;          ///< where its data is to lie; empty is where the server likes
  std::int64_t llKilobytes = 0;  ///< limit of its size; 0 is none
  platform::Text sFile{};        ///< what it is to be, where it is there already; else empty
};

/// Who opens which server.
struct Logon {
  platform::Text sDataSource;  ///< as it was typed
  platform::Text sUser;        ///< empty for whoever runs the program
  /// The user has said that nothing need be encrypted on the way.
  platform::Boolean bMayGoUnencrypted = false;
};

/// What not every engine can do.
struct Abilities {
  /// Statements may call the functions that they bring along.
  platform::Boolean bStatementFunctions = false;
  /// Names, in capitals, that no statement may hold, as they reach what is no catalog, or run code.
  /// One that ends in "*" means all that begin so. They live as long as the program.
  std::span<const std::string_view> refusedNames{};
  /// How its SQL is written; null where it reads that of the embedded engine.
  const SqlForm* form = nullptr;
};

/// A function of one value that a statement may call while it runs. The same value always gives
/// the same; a platform::Failure that is thrown ends the statement and is what its caller gets.
struct StatementFunction {
  platform::Text sName;
  std::function<platform::Value(const platform::Value&)> call;
};

/// A column that holds times as numbers, or dates or times of day as texts; catalog and table as
/// statements name them.
struct TimeColumn {
  platform::Text sCatalog;
  platform::Text sTable;
  platform::Text sColumn;
  platform::DataType type = platform::DataType::DBTimeStamp;
  bool bComputed = false;  ///< by its table; takes no value
  auto operator<=>(const TimeColumn&) const = default;
};

/// A statement as its user wrote it, for an engine that tells the place of what is wrong.
struct WrittenStatement {
  platform::Text sText{};
  /// By bytes, where the pieces of the engine's text begin, and where in this one.
  std::vector<std::pair<std::size_t, std::size_t>> places{};
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
  /// They are looked at before the statement runs, in one transaction with it: what is no number
  /// among times, or no text among dates and times of day, fails it with failure::kSqlError.
  std::vector<TimeColumn> storedTimes{};
  /// With it the statement runs once for each of the rows that it gives, which take the place of
  /// the parameters, all in one transaction; see platform::Command::Batch.
  platform::ParameterRows batch{};
  WrittenStatement written{};
  /// The caller's time-out, which he keeps by the stop; 0 is none. A server that goes on with the
  /// statement when nobody can tell it any more has to end it by this.
  std::chrono::milliseconds timeout{0};
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
  /// Makes numbers of texts and keeps no more digits than a double or a 64-bit integer has.
  platform::Boolean bRounds = false;
  /// Points in time, whatever type their values come in.
  platform::Boolean bTime = false;
  /// Takes values of its type that are written as texts only; see platform::ReadBeyond.
  platform::Boolean bBeyond = false;
  /// Null stands behind all values, and descending before them.
  platform::Boolean bNullIsLast = false;
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
  /// computes columns or holds times or dates.
  platform::Text sDefinition{};
  std::vector<IndexSchema> indexes{};  ///< in the order of their names; empty when not asked for
  /// The query that stands for a table that the engine works out; empty where there is one.
  platform::Text sQuery{};
  /// When columns are asked for, the statement that made a table with rules of its own for rows
  /// that conflict; empty elsewhere.
  platform::Text sConflictRules{};
};

/// A type that columns can be declared with.
struct TypeSchema {
  const char* sName;
  platform::DataType type;
  platform::Long lSize;  ///< digits of a number, characters or bytes of the rest
  const char* sPrefix;   ///< what stands around a value in a statement; null for nothing
  const char* sSuffix;
  const char* sParameters;       ///< what stands in parentheses behind the name; null for nothing
  platform::Boolean bBestMatch;  ///< the one to declare a column of the type with
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

  /// The same for as long as the session is open.
  virtual Abilities Can() const = 0;
  /// The types of columns in their published order. Each type that a column can have is the best
  /// match of exactly one. They live as long as the program.
  virtual std::span<const TypeSchema> Types() const = 0;

  /// In a few words whether what is sent is encrypted and to whom; empty where nothing leaves this
  /// machine. The same for as long as the session is open.
  virtual platform::Text Link() const { return {}; }

  /// All catalogs, the server's own included, in the order of their case-folded names, ties by
  /// bytes. In one statement.
  virtual std::vector<Catalog> Catalogs(std::stop_token stop) = 0;
  /// Makes a catalog with its first tables, all of it or nothing. Fails with kInvalidArgument for a
  /// bad name, path or size, with kKeyExists, kNoRights or kStorage, and with kNotSupported for
  /// what the server cannot be asked for.
  virtual void CreateCatalog(const NewCatalog& catalog, std::stop_token stop) = 0;
  /// Drops the catalog of that name. What fails or is stopped has changed nothing. Fails with
  /// kInvalidArgument for one that is not there or is the server's own, and with kBusy while others
  /// work in it.
  virtual void DropCatalog(const platform::Text& sName, std::stop_token stop) = 0;

  /// Runs exactly one statement; a second one behind it fails with failure::kSqlError. Fails with
  /// kCancelled, kBusy and the other numbers of the database. A statement that fails has changed
  /// nothing; one whose stop was requested while it could still be taken back fails, and so does,
  /// with kConflict, one that would change another number of rows than it must. One that only
  /// reads, but would change anything, fails with kWouldChange before it begins. Transactions,
  /// settings of the database and what reaches beyond the catalogs of the statement are refused
  /// with kNotSupported. A stop is answered within seconds, whatever the database is at.
  virtual EngineResult Run(const EngineStatement& statement, std::stop_token stop) = 0;
  /// Tables and views of a catalog in the order of their names, in one statement however many
  /// there are; where a view cannot be read, in one more and one for each view. Tables of the
  /// engine's own are left out.
  virtual std::vector<TableSchema> Schema(const Catalog& catalog, const SchemaRequest& request,
                                          std::stop_token stop) = 0;
  /// Ends the session; closing twice does nothing. Recordsets stay usable. Every other call but Can
  /// and Types fails with kObjectClosed from then on.
  virtual void Close() = 0;
};

class Engine {
 public:
  Engine() = default;
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  virtual ~Engine() = default;

  /// Whether a data source means a server of this engine, by its form alone.
  virtual platform::Boolean Serves(const platform::Text& sDataSource) const = 0;
  /// Servers known on this machine, to be offered at a logon; fails with nothing.
  virtual std::vector<platform::Text> KnownServers() const = 0;
  /// Opens the server. The password is the caller's, who overwrites it afterwards: an engine copies
  /// it into nothing that outlives the call but what it overwrites itself. Fails with
  /// kServerNotFound, kNoRights, kNotADatabase, kBusy, kStorage or kCancelled; with kNotEncrypted,
  /// nothing sent, for a server on another machine that does not encrypt, unless the user has said
  /// that it need not.
  virtual std::unique_ptr<EngineSession> Open(const Logon& logon, const platform::Text& sPassword,
                                              std::stop_token stop) = 0;
};

}  // namespace orvane::provider::engines
