// The snap-in's beginning and end, and its part in saving and loading the document.
#include "platform/conversions.h"
#include "snapin/description.h"
#include "snapin/snap_in.h"

namespace orvane::snapin {

using platform::Boolean;

namespace {

constexpr const char* kRootFlag = "ServersNode";
constexpr const char* kRootPrefix = "ServersNode_";

}  // namespace

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
    if (!platform::ToBoolean(pb.ReadProperty(kRootFlag, false)) || m_root) return;
    // Read whole before it is installed: a document that fails leaves the snap-in without a root.
    const auto root = nodes::ServersNode::Create(m_services.objects);
    root->ReadProperties(pb, kRootPrefix);
    InstallRoot(root);
  });
}

Boolean SnapIn::SnapIn_WriteProperties(platform::PropertyBag& pb) {
  return Guard([&] {
    pb.WriteProperty(kRootFlag, m_root != nullptr);
    if (m_root) m_root->WriteProperties(pb, kRootPrefix);
  });
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
