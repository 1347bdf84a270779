#include "tests/console/whole_job/saved_document.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace orvane::console {

std::map<std::string, std::string> ReadSavedProperties(const std::filesystem::path& file) {
  using nlohmann::json;
  std::ifstream stream(file);
  std::map<std::string, std::string> properties;
  std::string sSection;
  std::string sPart;
  for (std::string sLine; std::getline(stream, sLine);) {
    const auto line = json::parse(sLine);
    if (line.contains("section")) {
      sSection = line["section"].get<std::string>() + " " + line.value("class", "");
      sPart.clear();
    }
    sPart = line.value("part", sPart);
    if (sSection != "snap-in ORVOLEDBSnapIn" || !line.contains("name")) continue;
    std::string sValue;
    if (line.contains("object")) {
      // Parsed and written again, so that the order of members does not count.
      sValue = line["object"].get<std::string>() + " " +
               json::parse(line["state"].get<std::string>()).dump();
    } else {
      for (const char* sKind : {"boolean", "integer", "text"}) {
        if (line.contains(sKind)) sValue = line[sKind].dump();
      }
    }
    const std::string sName = sPart + line["name"].get<std::string>();
    if (!properties.emplace(sName, sValue).second) {
      throw std::runtime_error("Twice in the document: " + sName);
    }
  }
  return properties;
}

}  // namespace orvane::console
