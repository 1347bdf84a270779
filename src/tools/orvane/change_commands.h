// The commands that change what a document keeps, and with catalogs what a server has: by the same
// rules as in the window. Each saves the document and tells what it did.
// Commands of the program orvane; each fails with an Ending, as the document or as the server does.
// One thread.
#pragma once

#include "tools/orvane/document_change.h"
#include "tools/orvane/output.h"
#include "tools/orvane/server_access.h"

namespace orvane::tools {

class ChangeCommands {
 public:
  /// Opens the document. Confirmed changes ask nobody before they remove something.
  ChangeCommands(const platform::Text& sDocument, const std::shared_ptr<DataHost>& host,
                 bool bConfirmed, Output& output);

  /// Connects to the server first, as the window does.
  void AddServer(const platform::Text& sServer);
  void RemoveServer(const platform::Text& sServer);

  /// Made on the server. The size is in kilobytes, none below 1; it takes the place of the path.
  void CreateCatalog(const platform::Text& sServer, const platform::Text& sCatalog,
                     const platform::Text& sPath, platform::Long lSize);
  /// A catalog of that file, which the server takes in where it lies.
  void AttachCatalog(const platform::Text& sServer, const platform::Text& sCatalog,
                     const platform::Text& sFile);
  /// Dropped on the server with all that it holds.
  void RemoveCatalog(const platform::Text& sServer, const platform::Text& sCatalog);

  void AddQuery(const platform::Text& sServer, const platform::Text& sQuery,
                const platform::Text& sSql);
  void EditQuery(const platform::Text& sServer, const platform::Text& sQuery,
                 const platform::Text& sSql);
  void RenameQuery(const platform::Text& sServer, const platform::Text& sQuery,
                   const platform::Text& sNewName);
  void RemoveQuery(const platform::Text& sServer, const platform::Text& sQuery);

 private:
  void KeepCatalog(const nodes::ServerNode& server, const platform::Text& sCatalog) const;
  void Confirm(const platform::Text& sQuestion) const;
  void Done(const platform::Text& sSentence);

  DocumentChange m_change;
  ServerAccess m_access;
  bool m_bConfirmed;
  Output& m_output;
};

/// The statement on the standard input, without the line break behind it.
platform::Text StatementOfQuery();

}  // namespace orvane::tools
