#include "provider/engines/embedded/embedded_session.h"

#include "platform/failure.h"
#include "provider/engines/declared_types.h"
#include "provider/engines/statement_thread.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

EmbeddedSession::EmbeddedSession(EmbeddedPlace place, const Text& sServer,
                                 const std::stop_token& stop)
    : m_place(std::move(place)),
      m_historian(std::make_unique<historian::Historian>(m_place.root, sServer, *m_place.files,
                                                         stop, m_place.known)),
      m_files(m_place.files->Open({}, stop)) {}

historian::Historian& EmbeddedSession::Opened() {
  if (m_historian == nullptr) {
    throw Failure(failure::kObjectClosed, "The connection is closed; connect again.");
  }
  return *m_historian;
}

Abilities EmbeddedSession::Can() const {
  static constexpr std::string_view kRefused[] = {"FTS3_TOKENIZER", "LOAD_EXTENSION", "PRAGMA_*",
                                                  "SQLITE_DBPAGE*"};
  return {.bStatementFunctions = true, .refusedNames = kRefused};
}

std::span<const TypeSchema> EmbeddedSession::Types() const {
  return DeclaredTypes();
}

std::vector<Catalog> EmbeddedSession::Catalogs(std::stop_token stop) {
  std::vector<Catalog> catalogs;
  for (const auto& record : Opened().Catalogs(std::move(stop))) {
    catalogs.push_back(historian::EngineCatalog(record, false));
  }
  return catalogs;
}

void EmbeddedSession::CreateCatalog(const NewCatalog& catalog, std::stop_token stop) {
  if (!catalog.sFile.empty()) {
    historian::RequireComplete(catalog.sFile);
    Opened().AttachCatalog(catalog.sName, catalog.sFile, std::move(stop));
    return;
  }
  Opened().CreateCatalog(catalog.sName, catalog.sPath, catalog.llKilobytes, std::move(stop));
}

void EmbeddedSession::DropCatalog(const Text& sName, std::stop_token stop) {
  Opened().DropCatalog(sName, std::move(stop));
}

EngineResult EmbeddedSession::Run(const EngineStatement& statement, std::stop_token stop) {
  Opened();
  auto result = RunPatiently(m_files, statement, std::move(stop), m_place.patience);
  if (result) return *std::move(result);
  // What was left to end by itself keeps the session that it runs on.
  m_files = m_place.files->Open({}, {});
  throw Failure(failure::kCancelled, "The statement was cancelled.");
}

std::vector<TableSchema> EmbeddedSession::Schema(const Catalog& catalog,
                                                 const SchemaRequest& request,
                                                 std::stop_token stop) {
  Opened();
  Catalog toRead = catalog;
  toRead.bReadOnly = true;
  if (request.sTable) return m_files->Schema(toRead, request, std::move(stop));
  // A session on the catalog itself needs fewer statements than one that reaches for it.
  return m_place.files->Open(toRead, stop)->Schema(toRead, request, stop);
}

void EmbeddedSession::Close() {
  m_files.reset();
  m_historian.reset();
}

}  // namespace orvane::provider::engines
