#include "access/default_filter.h"

#include "platform/historian_names.h"

namespace orvane::access {

using platform::Boolean;
using platform::Text;

namespace {

// The system catalog and an unnamed one never get a default filter, whatever the table.
Boolean MayBeTimeStamped(const Text& sCatalog) {
  return !MatchesName(sCatalog, platform::kSystemCatalog) && !sCatalog.empty();
}

}  // namespace

Boolean MatchesName(const Text& sName, const Text& sBaseName) {
  return sName == sBaseName || sName == "Orv_" + sBaseName;
}

Text FormDefaultFilterCondition(const Text& sCatalog, const Text& sTable, const Text& sStartTime,
                                const Text& sEndTime) {
  Text sColumn;
  if (MayBeTimeStamped(sCatalog) && (MatchesName(sTable, "Data2") || MatchesName(sTable, "Data"))) {
    sColumn = "Timestamp";
  }
  if (sColumn.empty() || (sStartTime.empty() && sEndTime.empty())) return {};
  if (!sStartTime.empty() && !sEndTime.empty()) {
    return sColumn + " BETWEEN '" + sStartTime + "' AND '" + sEndTime + "'";
  }
  if (!sStartTime.empty()) return sColumn + " >= '" + sStartTime + "'";
  return sColumn + " <= '" + sEndTime + "'";
}

}  // namespace orvane::access
