// One open embedded historian: its catalogs, and statements over their files.
// Made by the engine; calls come one at a time, from changing threads.
#pragma once

#include "provider/engines/embedded/embedded_engine.h"
#include "provider/historian/historian.h"

namespace orvane::provider::engines {

class EmbeddedSession final : public EngineSession {
 public:
  EmbeddedSession(EmbeddedPlace place, const platform::Text& sServer, const std::stop_token& stop);
  ~EmbeddedSession() override = default;

  Abilities Can() const override;
  std::span<const TypeSchema> Types() const override;
  std::vector<Catalog> Catalogs(std::stop_token stop) override;
  void CreateCatalog(const NewCatalog& catalog, std::stop_token stop) override;
  void DropCatalog(const platform::Text& sName, std::stop_token stop) override;
  EngineResult Run(const EngineStatement& statement, std::stop_token stop) override;
  std::vector<TableSchema> Schema(const Catalog& catalog, const SchemaRequest& request,
                                  std::stop_token stop) override;
  void Close() override;

 private:
  historian::Historian& Opened();

  EmbeddedPlace m_place;
  std::unique_ptr<historian::Historian> m_historian;  ///< null when closed
  std::shared_ptr<FileSession> m_files;               ///< reaches the catalogs of statements
};

}  // namespace orvane::provider::engines
