#include <QByteArray>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_map>
#include <vector>

#include "console/document/document_format.h"
#include "platform/json_text.h"
#include "platform/utf8.h"

namespace orvane::console {

using platform::Long;
using platform::Text;
using Json = nlohmann::json;

namespace {

/// Appends ,"sMember":"text", or for bytes that are not UTF-8 ,"sBytesMember":"base64".
void AppendText(Text& sLine, std::string_view sMember, std::string_view sBytesMember,
                std::string_view sText) {
  if (platform::IsUtf8(sText)) {
    sLine.append(",\"").append(sMember).append("\":");
    platform::AppendJsonString(sLine, sText);
  } else {
    const auto bytes = QByteArray::fromRawData(sText.data(), static_cast<qsizetype>(sText.size()));
    sLine.append(",\"").append(sBytesMember).append("\":\"");
    sLine.append(bytes.toBase64().toStdString()).append("\"");
  }
}

void AppendEntry(Text& sFile, const DocumentBag::Entry& entry) {
  sFile += "{\"name\":";
  platform::AppendJsonString(sFile, entry.sName);
  if (const bool* bValue = std::get_if<bool>(&entry.value)) {
    sFile += *bValue ? ",\"boolean\":true" : ",\"boolean\":false";
  } else if (const Long* lValue = std::get_if<Long>(&entry.value)) {
    sFile.append(",\"integer\":").append(std::to_string(*lValue));
  } else if (const Text* sValue = std::get_if<Text>(&entry.value)) {
    AppendText(sFile, "text", "bytes", *sValue);
  } else {
    const auto& object = std::get<StoredObject>(entry.value);
    AppendText(sFile, "object", "", object.sProgId);
    AppendText(sFile, "state", "state-bytes", object.sState);
  }
  sFile += "}\n";
}

/// A line of one member.
Text Line(const char* sMember, std::string_view sText) {
  Text sLine = Text("{\"") + sMember + "\":";
  platform::AppendJsonString(sLine, sText);
  return sLine += "}\n";
}

struct Part {
  std::string_view sName;
  std::vector<const DocumentBag::Entry*> entries;
};

/// The entries by their parts, the section's own first, each in the order of its first entry.
std::vector<Part> PartsOf(const DocumentBag& bag) {
  std::vector<Part> parts(1);
  std::unordered_map<std::string_view, std::size_t> places{{std::string_view(), 0}};
  std::size_t nPlace = 0;
  for (const DocumentBag::Entry& entry : bag.Entries()) {
    const std::string_view sPart = PartOf(entry.sName);
    // The entries of one part mostly come together.
    if (sPart != parts[nPlace].sName) {
      nPlace = places.try_emplace(sPart, parts.size()).first->second;
      if (nPlace == parts.size()) parts.push_back({sPart, {}});
    }
    parts[nPlace].entries.push_back(&entry);
  }
  return parts;
}

/// Writes the parts. The lines that begin them have a seal of their own at the end, so that none
/// can be lost.
class Writer {
 public:
  explicit Writer(Text sHeader) : m_sFile(sHeader), m_sBegins(std::move(sHeader)) {}

  void Section(const Text& sBegin, std::string_view sEnd, const DocumentBag& bag) {
    for (const auto& part : PartsOf(bag)) {
      if (part.sName.empty()) {
        WritePart(sBegin, sEnd, part);
      } else {
        WritePart(Line("part", part.sName), part.sName, part);
      }
    }
  }

  Text Finish() {
    const Text sEnd = Line("section", "end");
    m_sFile += sEnd;
    return std::move(m_sFile += Line("seal", SealOf(m_sBegins + sEnd)));
  }

 private:
  void WritePart(const Text& sBegin, std::string_view sEnd, const Part& part) {
    const std::size_t nBegin = m_sFile.size();
    m_sBegins += sBegin;
    m_sFile += sBegin;
    for (const auto* entry : part.entries) AppendEntry(m_sFile, *entry);
    m_sFile += Line("seal", SealOf(std::string_view(m_sFile).substr(nBegin)));
    // A line that stays keeps the changes of neighbours apart where documents are merged.
    m_sFile += Line("end", sEnd);
  }

  Text m_sFile;
  Text m_sBegins;
};

}  // namespace

Text WriteDocument(const DocumentContent& content) {
  Writer writer(Json{{"format", kDocumentFormat}, {"version", kDocumentVersion}}.dump() + "\n");
  for (const DocumentContent::Section& section : content.SnapIns()) {
    writer.Section(Json{{"class", section.sProgId}, {"section", "snap-in"}}.dump() + "\n",
                   section.sProgId, *section.bag);
  }
  if (content.View().Count() > 0) writer.Section(Line("section", "view"), "view", content.View());
  return writer.Finish();
}

}  // namespace orvane::console
