#include "access/catalog_statements.h"

#include <string>

#include "platform/ado/extended_options.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::access {

using platform::CommandPtr;
using platform::ConnectionPtr;
using platform::Long;
using platform::RecordsetPtr;
using platform::Text;

namespace {

Text StorageClause(const Text& sPath, Long lSize) {
  Text sWork;
  if (!sPath.empty()) sWork = "PATH='" + sPath + "'";
  if (lSize > 0) {
    // The server takes one storage setting: a size replaces the path.
    sWork = "SIZE=" + std::to_string(lSize);
  }
  return sWork.empty() ? Text() : "ON (" + sWork + ")";
}

CommandPtr CommandOn(platform::ObjectFactory& objects, const ConnectionPtr& cn) {
  if (!cn) {
    throw platform::Failure(platform::failure::kObjectNotSet,
                            "The server is not connected; connect it first.");
  }
  const CommandPtr command = objects.CreateCommand();
  command->ActiveConnection(cn);
  return command;
}

}  // namespace

Text FormCreateDatabase(const Text& sName, const Text& sPath, Long lSize) {
  return "CREATE DATABASE \"" + sName + "\" " + StorageClause(sPath, lSize);
}

Text FormIdentityLookup(const Text& sName) {
  return "SELECT Identity FROM Orvane..Historians WHERE Name = '" + sName + "'";
}

Text FormDropDatabase(const Text& sName) {
  return "DROP DATABASE \"" + sName + "\"";
}

Text CreateCatalog(platform::ObjectFactory& objects, platform::UserInterface& ui,
                   const ConnectionPtr& cn, const Text& sName, const Text& sPath, Long lSize) {
  const CommandPtr command = CommandOn(objects, cn);
  command->CommandText(FormCreateDatabase(sName, sPath, lSize));
  ui.MousePointer(platform::kMousePointerHourglass);
  ui.DoEvents();
  // No guard around this: a failed creation leaves the hourglass to whoever resets it next.
  command->Execute(nullptr, platform::kOptionUnspecified);
  ui.MousePointer(platform::kMousePointerDefault);
  ui.DoEvents();
  if (!platform::ToBoolean(cn->Properties().Item(platform::kHistoriansByGuidOption).Value()))
    return sName;
  command->CommandText(FormIdentityLookup(sName));
  const RecordsetPtr rs = command->Execute(nullptr, platform::kOptionUnspecified);
  if (rs->Eof()) {
    ui.MsgBox("Historian GUID not found.", platform::MsgBoxButtons::OkOnly,
              platform::MsgBoxIcon::Critical, Text());
    return {};
  }
  return platform::ToText(rs->Fields().Item("Identity").Value());
}

void DropCatalog(platform::ObjectFactory& objects, const ConnectionPtr& cn, const Text& sName) {
  const CommandPtr command = CommandOn(objects, cn);
  command->CommandText(FormDropDatabase(sName));
  command->Execute(nullptr, platform::kOptionUnspecified);
}

}  // namespace orvane::access
