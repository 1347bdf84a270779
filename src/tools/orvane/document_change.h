// A document that a command changes: held as a console holds it, its model changed by the rules of
// the snap-in, and saved with all else that it keeps as it was.
// Used by the commands that change a document; fails with failure::kDocument. One thread.
#pragma once

#include "console/document/document.h"
#include "nodes/servers_node.h"
#include "tools/orvane/data_host.h"

namespace orvane::tools {

class DocumentChange {
 public:
  /// Fails also where the document is held by a console or cannot be written, before anything was
  /// done to it or on a server.
  DocumentChange(const platform::Text& sDocument, const std::shared_ptr<DataHost>& host);

  const nodes::ServersNodePtr& Root() const { return m_root; }
  /// Lets go of the connections, whose options are none of the document's, and saves.
  void Save();

 private:
  std::unique_ptr<console::Document> m_document;
  nodes::ServersNodePtr m_root;
};

}  // namespace orvane::tools
