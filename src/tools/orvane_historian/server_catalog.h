// A catalog of a server that is reached by its address, for what is written there from the command
// line. The password is asked for on the terminal, when the server wants one that is not found
// otherwise; it is kept for coming back to the server, and overwritten at the end.
// Used by the subcommands of orvane-historian; one thread.
#pragma once

#include <memory>
#include <span>

#include "provider/engines/engine.h"

namespace orvane::tools {

/// True for the address of a server, false for the name of a historian on this machine.
bool IsServerAddress(const platform::Text& sServer);

/// Makes a historian's table of catalogs in the database of the address, or finds it there.
void MakeServerHistorian(const platform::Text& sServer);

class ServerCatalog {
 public:
  /// Opens the server and finds the catalog; makes it where that is asked for. Fails as opening
  /// does, and with failure::kInvalidArgument when there is none or it is the historian's own.
  ServerCatalog(platform::Text sServer, platform::Text sCatalog, bool bMake);
  ServerCatalog(const ServerCatalog&) = delete;
  ServerCatalog& operator=(const ServerCatalog&) = delete;
  ~ServerCatalog();

  const platform::Text& Name() const { return m_catalog.sName; }
  /// True when it was made now.
  bool IsNew() const { return m_bNew; }
  /// After a failure with kObjectClosed: opens the server once more.
  void Reopen();
  bool Has(const platform::Text& sTable);
  /// Fails with failure::kInvalidArgument when there is none.
  provider::engines::TableSchema Table(const platform::Text& sTable);
  /// The table as statements name it.
  platform::Text Named(const platform::Text& sTable) const;
  platform::RecordsetPtr Ask(const platform::Text& sSql, std::vector<platform::Value> parameters);
  /// Runs it once for each row, all in one transaction; gives how many rows it changed.
  std::int64_t Run(const platform::Text& sSql, platform::ParameterRows rows);

 private:
  void Open();
  provider::engines::EngineStatement Statement(const platform::Text& sSql) const;

  platform::Text m_sServer;
  platform::Text m_sName;
  platform::Text m_sPassword;
  bool m_bMake;
  bool m_bNew = false;
  provider::engines::Catalog m_catalog;
  std::unique_ptr<provider::engines::EngineSession> m_session;
};

}  // namespace orvane::tools
