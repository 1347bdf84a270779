// One session on a PostgreSQL server. Catalogs are the schemas of its database. What only reads
// runs in a transaction that may only read, so that whether a statement changes anything is told
// by the server. Made by the engine; calls come one at a time, from changing threads.
#pragma once

#include <memory>

#include "provider/engines/engine.h"
#include "provider/engines/postgres/postgres_link.h"
#include "provider/engines/postgres/postgres_schema.h"

namespace orvane::provider::engines {

class PostgresFetch;

class PostgresSession final : public EngineSession {
 public:
  /// Looks whether the database has a historian's records; fails as Run does.
  explicit PostgresSession(std::unique_ptr<PostgresLink> link, const std::stop_token& stop = {});
  ~PostgresSession() override = default;

  Abilities Can() const override;
  std::span<const TypeSchema> Types() const override;
  platform::Text Link() const override { return m_sLink; }
  /// The schemas of the database, without those of the server itself, and the historian's own two.
  std::vector<Catalog> Catalogs(std::stop_token stop) override;
  /// A schema with the tables of a catalog. Where it lies and how large it may be is for the
  /// server's administrator: a path or a size is refused.
  void CreateCatalog(const NewCatalog& catalog, std::stop_token stop) override;
  /// Fails with kBusy too when something outside of the schema stands on its tables.
  void DropCatalog(const platform::Text& sName, std::stop_token stop) override;

  /// Fails as the engine's promise says, with kObjectClosed when the link is lost. When it is lost
  /// while a change is made for good, the sentence says that nobody knows whether it was.
  EngineResult Run(const EngineStatement& statement, std::stop_token stop) override;
  std::vector<TableSchema> Schema(const Catalog& catalog, const SchemaRequest& request,
                                  std::stop_token stop) override;
  void Close() override { m_link.reset(); }

 private:
  struct Call;

  void RequireOpen() const;
  // Runs it in a transaction; nothing when it was to read, would change something, and gave no rows
  // yet.
  std::optional<EngineResult> Try(const Call& call, bool bReads);
  void RunIn(const Call& call, bool bReads, EngineResult& result, bool& bWouldChange);
  platform::RowIndex RunBatch(const Call& call);
  void Commit(const Call& call, bool bReads);
  static void RequireFewValues(const Call& call);
  static std::size_t PlaceOf(const Call& call, std::size_t nCharacter);
  [[noreturn]] void Fail(const Call& call, const PGresult* error);

  // Reads with a statement of this program's own.
  platform::RecordsetPtr Ask(const platform::Text& sSql, std::vector<platform::Value> vtParameters,
                             const std::stop_token& stop);
  // Does statements of this program's own, all of them or none.
  void Do(const platform::Text& sStatements, const std::stop_token& stop);

  std::unique_ptr<PostgresLink> m_link;
  platform::Text m_sLink;
  bool m_bRecords = false;       // the database has a historian's table of catalogs
  bool m_bKeepsRecords = false;  // which this user may change
  TableColumns m_columns;
};

}  // namespace orvane::provider::engines
