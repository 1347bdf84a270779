// A document as a console wrote it: the options, and one server with its named queries. For the
// cases that begin with a document; one thread.
#pragma once

#include <utility>
#include <vector>

#include "platform/property_bag.h"

namespace orvane::scenarios {

struct WrittenDocument {
  platform::Text sServer;
  platform::Long lMaxRows = 100;
  platform::Text sExtendedOptions = {};
  /// Names and statements.
  std::vector<std::pair<platform::Text, platform::Text>> queries = {};
};

/// Below this begin the properties of the server.
inline const platform::Text kWrittenServer = "ServersNode_ServerNodes_ServerNode1_";

inline void Write(platform::PropertyBag& pb, const WrittenDocument& document) {
  using platform::Long;
  using platform::Text;
  const Text sRoot = "ServersNode_";
  const Text sQueries = kWrittenServer + "QueryNodes_";
  pb.WriteProperty("ServersNode", true);
  pb.WriteProperty(sRoot + "MaxRows", document.lMaxRows);
  pb.WriteProperty(sRoot + "QueryTimeout", Long{20});
  pb.WriteProperty(sRoot + "DefaultStartTime", "*-2h");
  pb.WriteProperty(sRoot + "DefaultEndTime", "*");
  pb.WriteProperty(sRoot + "SqlStatements", false);
  pb.WriteProperty(sRoot + "ServerNodes_ServerNodeCount", Long{1});
  pb.WriteProperty(kWrittenServer + "Provider", "ORVOLEDB");
  pb.WriteProperty(kWrittenServer + "Server", document.sServer);
  pb.WriteProperty(kWrittenServer + "User", "orvanesnapin");
  pb.WriteProperty(kWrittenServer + "ExtendedOptions", document.sExtendedOptions);
  pb.WriteProperty(sQueries + "QueryNodeCount", static_cast<Long>(document.queries.size()));
  Long lNumber = 0;
  for (const auto& [sName, sStatement] : document.queries) {
    const Text sQuery = sQueries + "QueryNode" + std::to_string(++lNumber) + "_";
    pb.WriteProperty(sQuery + "QueryName", sName);
    pb.WriteProperty(sQuery + "Query", sStatement);
  }
}

}  // namespace orvane::scenarios
