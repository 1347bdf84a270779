#include "tools/orvane/document_change.h"

#include "nodes/server_nodes_collection.h"
#include "platform/console/snap_in.h"
#include "tools/orvane/document_commands.h"

namespace orvane::tools {

using console::DocumentBag;
using platform::Text;

namespace {

void Copy(const DocumentBag& from, DocumentBag& to) {
  for (const auto& entry : from.Entries()) to.Add(entry.sName, entry.value);
}

}  // namespace

DocumentChange::DocumentChange(const Text& sDocument, const std::shared_ptr<DataHost>& host)
    : m_document(OpenToChange(sDocument, host)),
      m_root(ModelOf(m_document->Content(), sDocument, host)) {}

void DocumentChange::Save() {
  for (const auto& server : m_root->ServerNodes()->NewEnum()) server->Disconnect();
  const console::DocumentContent& before = m_document->Content();
  auto content = m_document->NewContent();
  const auto* const own = before.FindSnapIn(platform::kSnapInProgId);
  for (const auto& section : before.SnapIns()) {
    auto& bag = content->SnapIn(section.sProgId);
    if (section.bag.get() != own) Copy(*section.bag, bag);
  }
  nodes::ServersNode::WriteDocument(content->SnapIn(platform::kSnapInProgId), m_root.get());
  Copy(before.View(), content->View());
  m_document->Save(std::move(content));
}

}  // namespace orvane::tools
