// Database files, each opened by itself or within the reach of another: what engines on files are
// to the historian that keeps its catalogs in them. Calls of one session come one at a time, from
// changing threads; a stop token cancels the call it was given to, from any thread.
#pragma once

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

class FileSession {
 public:
  FileSession() = default;
  FileSession(const FileSession&) = delete;
  FileSession& operator=(const FileSession&) = delete;
  virtual ~FileSession() = default;

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

class FileEngine {
 public:
  FileEngine() = default;
  FileEngine(const FileEngine&) = delete;
  FileEngine& operator=(const FileEngine&) = delete;
  virtual ~FileEngine() = default;

  /// Opens the database file at the place. An empty place is a session without a database of its
  /// own, which reaches the catalogs that its statements name.
  virtual std::unique_ptr<FileSession> Open(const Catalog& main, std::stop_token stop) = 0;
};

}  // namespace orvane::provider::engines
