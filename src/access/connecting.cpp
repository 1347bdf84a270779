#include "access/connecting.h"

#include "platform/conversions.h"

namespace orvane::access {

using platform::Text;

Text FormConnectExString(const Text& sProvider, const Text& sServer) {
  return "Provider = " + sProvider + "; " + platform::kDataSource + " = " + sServer + ";";
}

Text FormConnectString(const Text& sProvider, const Text& sServer, const Text& sExOptions) {
  return FormConnectExString(sProvider, sServer) + "Disable Server Selection = True;" + sExOptions;
}

platform::ConnectionPtr OpenWithPrompt(platform::ObjectFactory& objects,
                                       const Text& sConnectionString, const Text& sUser) {
  const platform::ConnectionPtr cn = objects.CreateConnection();
  cn->ConnectionString(sConnectionString);
  cn->Properties().Item("Prompt").Value(platform::kPromptAlways);
  cn->Open(sConnectionString, sUser, Text(), platform::kOptionUnspecified);
  return cn;
}

Text DataSource(platform::Connection& cn) {
  return platform::ToText(cn.Properties().Item(platform::kDataSource).Value());
}

}  // namespace orvane::access
