// What the files of the random commands have in common: the names that they choose from, which
// collide in letter case, beyond ASCII, and by the dots that join a key; a table of such a name.
#pragma once

#include "tests/scenarios/driver.h"
#include "tests/snapin/random_console.h"

namespace orvane::snapin {

using fakes::FakeForm;
using fakes::FakeHistorian;
using fakes::FakeRecordset;
using model::ItemPtr;
using platform::Long;
using platform::RecordsetPtr;
using platform::SchemaNumber;
using platform::Text;

inline constexpr const char* kServers[] = {"S1",   "S2",          "s2",     "Öfen",
                                           "öfen", "S1.Catalogs", "nowhere"};
inline constexpr const char* kCatalogs[] = {"Plant", "PLANT", "Lab",       "Lab.A",  "Orvane",
                                            "New",   "new",   "Functions", "Straße", "STRASSE"};
inline constexpr const char* kTables[] = {"Data", "Pumps", "A.B", "B", "data", "Orv_Data"};
inline constexpr const char* kColumns[] = {"Tag", "Timestamp", "Value", "Status", "value"};
inline constexpr const char* kQueryNames[] = {"Q", "q", "R", "Q.1", "Ö", "ö", "", "S"};
inline constexpr const char* kSql[] = {"SELECT * FROM Plant..Data", "SELECT * FROM Plant..Pumps",
                                       "SELECT * FROM Lab..Data", "nonsense"};

inline scenarios::TableSetup NewTable(const platform::Text& sName) {
  scenarios::TableSetup table{sName, {}, {{"a", "b"}, {"c", "d"}}};
  for (const char* const sColumn : {"Tag", "Value"}) table.columns.push_back({sColumn});
  return table;
}

}  // namespace orvane::snapin
