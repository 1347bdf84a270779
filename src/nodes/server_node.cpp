#include "nodes/server_node.h"

#include <utility>

#include "access/catalog_statements.h"
#include "access/connecting.h"
#include "access/saved_options.h"
#include "nodes/catalog_nodes_collection.h"
#include "nodes/query_nodes_collection.h"
#include "nodes/server_nodes_collection.h"
#include "platform/conversions.h"

namespace orvane::nodes {

using platform::ConnectionPtr;
using platform::Text;

ServerNode::ServerNode(platform::ObjectFactoryPtr objects) : m_objects(std::move(objects)) {}

ServerNodePtr ServerNode::Create(const platform::ObjectFactoryPtr& objects) {
  const ServerNodePtr node(new ServerNode(objects));
  node->m_catalogNodes = node->NewCatalogNodes();
  node->m_queryNodes = node->NewQueryNodes();
  return node;
}

ServerNode::~ServerNode() {
  m_parent.reset();
  m_parentServersNode.reset();
  try {
    Disconnect();
  } catch (...) {
    // Nobody is left to tell, whatever was thrown; the connection goes with the node.
  }
  m_catalogNodes.reset();
  m_queryNodes.reset();
}

std::shared_ptr<CatalogNodesCollection> ServerNode::NewCatalogNodes() {
  auto catalogNodes = std::make_shared<CatalogNodesCollection>(m_objects);
  catalogNodes->Parent(shared_from_this());
  return catalogNodes;
}

std::shared_ptr<QueryNodesCollection> ServerNode::NewQueryNodes() {
  auto queryNodes = std::make_shared<QueryNodesCollection>();
  queryNodes->Parent(shared_from_this());
  return queryNodes;
}

void ServerNode::Changed() {
  if (const auto parent = m_parent.lock()) parent->ServerNodeChanged();
}

void ServerNode::Parent(const std::shared_ptr<ServerNodesCollection>& srvNodes) {
  m_parent = srvNodes;
}

void ServerNode::ParentServersNode(const std::shared_ptr<ServersNode>& srvsNode) {
  m_parentServersNode = srvsNode;
}

void ServerNode::Provider(const Text& sProvider) {
  m_sProvider = sProvider;
  Changed();
}

void ServerNode::Server(const Text& sServer) {
  m_sServer = sServer;
  Changed();
}

void ServerNode::User(const Text& sUser) {
  m_sUser = sUser;
  Changed();
}

void ServerNode::ExtendedOptions(const Text& sExOptions) {
  m_sExOptions = sExOptions;
  Changed();
}

void ServerNode::Connection(const ConnectionPtr& cn) {
  m_connection = cn;
}

void ServerNode::CatalogNodesChanged() {
  Changed();
}

void ServerNode::QueryNodesChanged() {
  Changed();
}

void ServerNode::ConnectEx() {
  const ConnectionPtr cn = access::OpenWithPrompt(
      *m_objects, access::FormConnectExString(m_sProvider, m_sServer), m_sUser);
  Server(access::DataSource(*cn));
  Connection(cn);
}

void ServerNode::Connect() {
  Connection(access::OpenWithPrompt(
      *m_objects, access::FormConnectString(m_sProvider, m_sServer, m_sExOptions), m_sUser));
}

void ServerNode::AddCatalog(platform::UserInterface& ui, const Text& sName, const Text& sPath,
                            platform::Long lSize, Text& sCatalog) {
  sCatalog.clear();
  sCatalog = access::CreateCatalog(*m_objects, ui, m_connection, sName, sPath, lSize);
}

void ServerNode::RemoveCatalog(const Text& sName) {
  access::DropCatalog(*m_objects, m_connection, sName);
}

void ServerNode::Disconnect() {
  if (!m_connection) return;
  m_connection->Close();
  m_connection.reset();
}

void ServerNode::ReleaseCachedRecordsets() {
  for (const auto& ctgNode : m_catalogNodes->NewEnum()) ctgNode->ReleaseCachedRecordsets();
}

void ServerNode::WriteProperties(platform::PropertyBag& pb, const Text& sPrefix) const {
  pb.WriteProperty(sPrefix + "Provider", m_sProvider);
  pb.WriteProperty(sPrefix + "Server", m_sServer);
  pb.WriteProperty(sPrefix + "User", m_sUser);
  // The options of the open connection go behind the stored ones, so that the text grows with
  // every save of a loaded and connected server; the provider lets the last value win.
  pb.WriteProperty(sPrefix + "ExtendedOptions",
                   access::FormExtendedOptions(m_sExOptions, m_connection));
  m_catalogNodes->WriteProperties(pb, sPrefix + "CatalogNodes_");
  m_queryNodes->WriteProperties(pb, sPrefix + "QueryNodes_");
}

void ServerNode::ReadProperties(const platform::PropertyBag& pb, const Text& sPrefix) {
  Disconnect();
  // Absent settings are empty ones, not those of a new server.
  Provider(platform::ToText(pb.ReadProperty(sPrefix + "Provider", "")));
  Server(platform::ToText(pb.ReadProperty(sPrefix + "Server", "")));
  User(platform::ToText(pb.ReadProperty(sPrefix + "User", "")));
  ExtendedOptions(platform::ToText(pb.ReadProperty(sPrefix + "ExtendedOptions", "")));
  const auto catalogNodes = NewCatalogNodes();
  catalogNodes->ReadProperties(pb, sPrefix + "CatalogNodes_");
  m_catalogNodes = catalogNodes;
  const auto queryNodes = NewQueryNodes();
  queryNodes->ReadProperties(pb, sPrefix + "QueryNodes_");
  m_queryNodes = queryNodes;
}

}  // namespace orvane::nodes
