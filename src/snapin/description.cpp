#include "snapin/description.h"

#include "platform/grids/grids.h"
#include "snapin/node_types.h"

namespace orvane::snapin {
namespace {

using platform::ResultViewDescription;

constexpr const char* kDisplayName = "ORVANE OLE DB";
constexpr const char* kDescription = "Manages ORVANE System via ORVANE OLE DB";
constexpr const char* kVersion = "1.0";
constexpr const char* kMaker = "ORVANE";
// What the library is registered with, in the words of its neighbours in the registry.
constexpr const char* kLibraryVersion = "1.00.0001";
constexpr const char* kClassGuid = "{0D5C2F4E-7B1A-4C36-9E58-1A64D0B7C3F2}";

ResultViewDescription NameList(const char* sName) {
  return {sName, "", "", "", {{"Name", kNameWidth}}};
}

ResultViewDescription TableStructureList() {
  return {view_name::kTableStructureList,
          "Structure",
          "Displays table structure.",
          "",
          {{"Column name", 200}, {"Data type", 150}, {"Is nullable?", 100}}};
}

ResultViewDescription TableEditor() {
  return {
      view_name::kTableEditor, "Data", "Displays table data.", platform::kTableEditorProgId, {}};
}

ResultViewDescription QueryResults() {
  return {view_name::kQueryResults, "Results", "", platform::kQueryResultsProgId, {}};
}

}  // namespace

platform::SnapInDescription StaticDescription() {
  platform::SnapInDescription description;
  description.sName = "SnapIn";
  description.sDisplayName = kDisplayName;
  description.sDescription = kDescription;
  description.sVersion = kVersion;
  description.sProvider = kMaker;
  description.sStaticNodeType = node_type::kServers;
  description.sSmallFolders = "m_imlSmallFolders";
  description.sSmallOpenFolders = "m_imlSmallOpenFolders";
  description.sLargeFolders = "m_imlLargeFolders";
  description.nodeTypes = {
      {node_type::kServers,
       "{FE004263-8954-4924-B317-B2864CCFBF83}",
       "Servers",
       image::kServers,
       {NameList(view_name::kDefaultList)}},
      {node_type::kServer,
       "{A8CDD122-6FCE-4720-9D63-1456695C0FEF}",
       "Server",
       image::kServer,
       {NameList(view_name::kDefaultList)}},
      {node_type::kCatalogs,
       "{ADA83B10-D8CB-4015-BEBD-DDF986E1F2AB}",
       "Catalogs",
       image::kFolder,
       {NameList(view_name::kDefaultList)},
       true},
      {node_type::kCatalog,
       "{73AEAB66-0A1B-4A96-9436-63CCC9CDDAF6}",
       "Catalog",
       image::kCatalog,
       {NameList(view_name::kDefaultList)},
       true},
      {node_type::kTable,
       "{8963E3FA-FA29-4446-A839-B60469DDCC35}",
       "Table",
       image::kTable,
       {TableEditor(), TableStructureList()}},
      {node_type::kQueries,
       "{D3AAC6A6-CC50-4468-9D0F-E06ECE244750}",
       "Queries",
       image::kFolder,
       {NameList(view_name::kQueriesList)}},
      {node_type::kQuery,
       "{E5AA782A-D69C-40C1-8C8A-3E8CCF371575}",
       "Query",
       image::kQuery,
       {QueryResults()}},
  };
  return description;
}

platform::ComponentDescription RegisteredClass() {
  return {.sProgId = platform::kSnapInProgId,
          .sGuid = kClassGuid,
          .sKind = "SnapIn",
          .sDisplayName = kDisplayName,
          .sDescription = kDescription,
          .sVersion = kLibraryVersion,
          .sProvider = kMaker};
}

}  // namespace orvane::snapin
