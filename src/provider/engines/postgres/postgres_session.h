// One session on a PostgreSQL server. Catalogs are the schemas of its database. What only reads
// runs in a transaction that may only read, so that whether a statement changes anything is told
// by the server. Made by the engine; calls come one at a time, from changing threads.
#pragma once

#include <memory>

#include "provider/engines/engine.h"
#include "provider/engines/postgres/postgres_link.h"

namespace orvane::provider::engines {

class PostgresFetch;

class PostgresSession final : public EngineSession {
 public:
  explicit PostgresSession(std::unique_ptr<PostgresLink> link);
  ~PostgresSession() override = default;

  /// Fails as the engine's promise says, with kObjectClosed when the link is lost. When it is lost
  /// while a change is made for good, the sentence says that nobody knows whether it was.
  EngineResult Run(const EngineStatement& statement, std::stop_token stop) override;
  std::vector<TableSchema> Schema(const Catalog& catalog, const SchemaRequest& request,
                                  std::stop_token stop) override;
  void InTransaction(std::span<const Catalog> catalogs, const std::function<void()>& work,
                     std::stop_token stop) override;
  void Close() override { m_link.reset(); }

 private:
  struct Call;

  void RequireOpen() const;
  // Runs it in a transaction of its own, or in the one that is open; nothing when it would change
  // something, must not be read only, and gave no rows yet.
  std::optional<EngineResult> Try(const Call& call, bool bReads);
  void RunIn(const Call& call, bool bReads, EngineResult& result, bool& bWouldChange);
  platform::RowIndex RunBatch(const Call& call);
  void Commit(const Call& call, bool bReads);
  [[noreturn]] void Fail(const Call& call, const PGresult* error);

  std::unique_ptr<PostgresLink> m_link;
  bool m_bInTransaction = false;
};

}  // namespace orvane::provider::engines
