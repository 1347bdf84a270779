// What is beneath the tree: names, and how the historian answers and fails.
#include <algorithm>
#include <utility>

#include "tests/snapin/tree_model_rules.h"

namespace orvane::snapin::model {

Text Folded(const Text& sName) {
  Text sFolded;
  for (std::size_t i = 0; i < sName.size(); ++i) {
    if (sName.compare(i, 2, "Ö") == 0) {
      sFolded += "ö";
      ++i;
    } else if (sName.compare(i, 2, "ß") == 0) {
      sFolded += "ss";
      ++i;
    } else {
      const char c = sName[i];
      sFolded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
  }
  return sFolded;
}

Text DefaultFilter(const Root& root, const Text& sCatalog, const Text& sTable) {
  const bool bTimed = sTable == "Data" || sTable == "Data2" || sTable == "Orv_Data";
  if (!bTimed || sCatalog.empty() || sCatalog == "Orvane" || sCatalog == "Orv_Orvane") return {};
  if (root.sStart.empty() && root.sEnd.empty()) return {};
  if (root.sEnd.empty()) return "Timestamp >= '" + root.sStart + "'";
  if (root.sStart.empty()) return "Timestamp <= '" + root.sEnd + "'";
  return "Timestamp BETWEEN '" + root.sStart + "' AND '" + root.sEnd + "'";
}

bool World::ByGuid() const {
  if (bNoProperties) throw Stop{};
  return historian.options.back().second == platform::Value(true);
}

void World::Show(const Text& sTitle, platform::MsgBoxButtons buttons) {
  boxes.emplace_back(sTitle, buttons);
}

void World::ForEachName(SchemaNumber schema, const LinePtr& line, const Text& sCatalog,
                        const Text& sTable, const std::function<void(const Text&)>& use) const {
  if (!line) throw Stop{};
  if (!line->bOpen) throw Stop{};
  const bool bFault = schemaFault && schemaFault->schema == schema;
  if (bFault && schemaFault->nRow < 0) throw Stop{};
  Texts names;
  if (schema == SchemaNumber::Catalogs) {
    for (const auto& catalog : historian.Server(line->sServer)->catalogs) {
      names.push_back(catalog.sName);
    }
  } else if (schema == SchemaNumber::Columns) {
    if (const auto* table = historian.Table(line->sServer, sCatalog, sTable)) {
      for (const auto& column : table->columns) names.push_back(column.sName);
    }
  } else if (const auto* catalog =
                 fakes::FakeHistorian::Find(historian.Server(line->sServer)->catalogs, sCatalog)) {
    for (const auto& table : catalog->tables) names.push_back(table.sName);
  }
  int nRow = 0;
  for (const Text& sName : names) {
    if (bFault && nRow == schemaFault->nRow) throw Stop{};
    use(sName);
    ++nRow;
  }
}

void World::Run(const LinePtr& line, const Text& sCatalog, const Text& sTable) {
  if (!line) throw Stop{};
  if (!line->bOpen) throw Stop{};
  ++nStatements;
  if (!historian.Table(line->sServer, sCatalog, sTable)) throw Stop{};
}

void World::Close(Line& line) {
  ++nCloses;
  if (historian.bFailClose) throw Stop{};
  line.bOpen = false;
}

Server::~Server() {
  try {
    if (line) world.Close(*line);
  } catch (const Stop&) {
    // Nobody is told.
  }
}

}  // namespace orvane::snapin::model
