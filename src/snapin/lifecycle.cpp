// The snap-in's beginning and end, and its part in saving and loading the document.
#include "snapin/description.h"
#include "snapin/snap_in.h"

namespace orvane::snapin {

using platform::Boolean;

SnapIn::SnapIn(const platform::Services& services) : m_services(services) {
  if (!m_services.console || !m_services.objects || !m_services.forms || !m_services.ui) {
    throw platform::Failure(platform::failure::kComponent,
                            "The snap-in needs a console, data access, forms and a user interface; "
                            "open it in a console that offers them.");
  }
}

SnapIn::~SnapIn() {
  ReleaseObjects();
}

platform::SnapInDescription SnapIn::Description() const {
  return StaticDescription();
}

void SnapIn::SnapIn_Initialize() {
  Guard([this] {
    m_consoleVersion = m_services.fileVersion
                           ? platform::ReadConsoleVersion(*m_services.fileVersion)
                           : platform::ConsoleVersion{};
    m_root.reset();
    m_toolbarKind = ToolbarKind::None;
    TableEditor(nullptr);
    QueryResults(nullptr);
    m_services.console->StaticNodeDisplayName("ORVANE Servers");
  });
}

Boolean SnapIn::SnapIn_ReadProperties(platform::PropertyBag& pb) {
  return Guard([&] {
    if (m_root) return;
    // Read whole before it is installed: a document that fails leaves the snap-in without a root.
    if (const auto root = nodes::ServersNode::OfDocument(pb, m_services.objects)) InstallRoot(root);
  });
}

Boolean SnapIn::SnapIn_WriteProperties(platform::PropertyBag& pb) {
  return Guard([&] { nodes::ServersNode::WriteDocument(pb, m_root.get()); });
}

void SnapIn::SnapIn_Unload() {
  ReleaseObjects();
}

void SnapIn::SnapIn_Terminate() {
  ReleaseObjects();
}

void SnapIn::ServersNodeChanged() {
  // Deliberately nothing: the commands update the scope tree themselves.
}

void SnapIn::ReleaseObjects() {
  if (m_root) {
    m_root->Parent(nullptr);
    m_root.reset();
  }
  TableEditor(nullptr);
  QueryResults(nullptr);
}

nodes::ServersNode& SnapIn::Root() const {
  if (!m_root) {
    throw platform::Failure(platform::failure::kObjectNotSet,
                            "No servers are loaded; open a document or create a new one.");
  }
  return *m_root;
}

void SnapIn::InstallRoot(const nodes::ServersNodePtr& root) {
  m_root = root;
  m_root->Parent(shared_from_this());
}

}  // namespace orvane::snapin
