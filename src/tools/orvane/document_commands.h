// The documents of the program orvane: read for what is asked about them, opened to be changed,
// checked, and sealed.
// Used by its commands; each fails with an Ending or as the document does.
#pragma once

#include "console/document/document.h"
#include "nodes/servers_node.h"
#include "tools/orvane/data_host.h"
#include "tools/orvane/output.h"

namespace orvane::tools {

/// The model that a document keeps, for commands that read it. Fails with failure::kDocument, also
/// for a document that was changed outside: nobody can be asked whether to go on.
nodes::ServersNodePtr ReadModel(const platform::Text& sDocument,
                                const std::shared_ptr<DataHost>& host);
/// The document, held, for commands that change it. Fails as ReadModel does, and for one that is
/// held by a console or cannot be written.
std::unique_ptr<console::Document> OpenToChange(const platform::Text& sDocument,
                                                const std::shared_ptr<DataHost>& host);
/// The model of a content; an empty one where it keeps none. The name is used in sentences only.
nodes::ServersNodePtr ModelOf(const console::DocumentContent& content,
                              const platform::Text& sDocument,
                              const std::shared_ptr<DataHost>& host);

/// Tells that the document is whole; fails with the first thing that is wrong in it.
void Check(const platform::Text& sDocument, const std::shared_ptr<DataHost>& host, Output& output);
/// Writes new seals where some do not fit.
void Seal(const platform::Text& sDocument, const std::shared_ptr<DataHost>& host, Output& output);

}  // namespace orvane::tools
