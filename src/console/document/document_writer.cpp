#include <QByteArray>
#include <deque>
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

/// The property under what its name adds to that of its part.
void AppendEntry(Text& sFile, const DocumentBag::Entry& entry, std::size_t nPartName) {
  sFile += "{\"name\":";
  platform::AppendJsonString(sFile, std::string_view(entry.sName).substr(nPartName));
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
void AppendLine(Text& sFile, std::string_view sMember, std::string_view sText) {
  sFile.append("{\"").append(sMember).append("\":");
  platform::AppendJsonString(sFile, sText);
  sFile += "}\n";
}

/// The parts of a section with their entries, each beneath the nearest one that there is, and all
/// in the order of their first entries.
class SectionParts {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct Part {
    std::string_view sName;
    std::size_t nFirstEntry = kNone;
    std::size_t nLastEntry = kNone;
    std::size_t nFirstBeneath = kNone;
    std::size_t nLastBeneath = kNone;
    std::size_t nNext = kNone;  // beneath the same one
  };
  struct Entry {
    const DocumentBag::Entry* entry;
    std::size_t nNext = kNone;  // of the same part
  };

  explicit SectionParts(const DocumentBag& bag) {
    entries.reserve(bag.Count());
    std::size_t nPart = 0;
    for (const DocumentBag::Entry& entry : bag.Entries()) {
      const std::string_view sPart = PartOf(entry.sName);
      // The entries of one part mostly come together.
      if (sPart != parts[nPart].sName) {
        nPart = m_places.try_emplace(sPart, parts.size()).first->second;
        if (nPart == parts.size()) parts.push_back({sPart});
      }
      Part& part = parts[nPart];
      if (part.nFirstEntry == kNone) {
        part.nFirstEntry = entries.size();
      } else {
        entries[part.nLastEntry].nNext = entries.size();
      }
      part.nLastEntry = entries.size();
      entries.push_back({&entry});
    }
    for (std::size_t n = 1; n < parts.size(); ++n) {
      Part& above = parts[Above(parts[n].sName)];
      if (above.nFirstBeneath == kNone) {
        above.nFirstBeneath = n;
      } else {
        parts[above.nLastBeneath].nNext = n;
      }
      above.nLastBeneath = n;
    }
  }

  std::vector<Part> parts{Part()};  ///< the section's own first
  std::vector<Entry> entries;

 private:
  std::size_t Above(std::string_view sPart) {
    do {
      sPart = PartAbove(sPart);
      if (sPart == parts[m_nLastAbove].sName) return m_nLastAbove;
      const auto found = m_places.find(sPart);
      if (found != m_places.end()) return m_nLastAbove = found->second;
    } while (!sPart.empty());
    return 0;
  }

  std::unordered_map<std::string_view, std::size_t> m_places{{std::string_view(), 0}};
  std::size_t m_nLastAbove = 0;  // the parts of one list follow each other
};

/// Writes the sections. The lines that begin them have a seal of their own at the end, so that none
/// can be lost.
class Writer {
 public:
  explicit Writer(const Text& sHeader) : m_sFile(sHeader) { m_begins.Add(sHeader); }

  void Section(const Text& sBegin, std::string_view sEnd, const DocumentBag& bag,
               bool bSealBeneath) {
    m_begins.Add(sBegin);
    m_bSealBeneath = bSealBeneath;
    m_sFile += sBegin;
    WritePart(SectionParts(bag), 0, m_sFile.size() - sBegin.size(), sEnd, 0);
  }

  Text Finish() {
    const std::size_t nBegin = m_sFile.size();
    AppendLine(m_sFile, "section", "end");
    m_begins.Add(std::string_view(m_sFile).substr(nBegin));
    AppendLine(m_sFile, "seal", m_begins.Take());
    return std::move(m_sFile);
  }

 private:
  /// The part that begins there in the file, and those beneath it. Names are of a bounded depth.
  void WritePart(const SectionParts& section, std::size_t nPart, std::size_t nBegin,
                 std::string_view sEnd, std::size_t nDepth) {
    if (nDepth == m_seals.size()) m_seals.emplace_back();
    SealMaker& seal = m_seals[nDepth];
    const auto& part = section.parts[nPart];
    for (auto n = part.nFirstEntry; n != SectionParts::kNone; n = section.entries[n].nNext) {
      AppendEntry(m_sFile, *section.entries[n].entry, part.sName.size());
    }
    seal.Add(std::string_view(m_sFile).substr(nBegin));
    for (auto n = part.nFirstBeneath; n != SectionParts::kNone; n = section.parts[n].nNext) {
      const std::string_view sName = section.parts[n].sName;
      const std::size_t nBeneath = m_sFile.size();
      AppendLine(m_sFile, "part", sName);
      if (m_bSealBeneath) seal.Add(std::string_view(m_sFile).substr(nBeneath));
      WritePart(section, n, nBeneath, EndNameOf(sName), nDepth + 1);
    }
    AppendLine(m_sFile, "seal", seal.Take());
    // A line that stays keeps the changes of neighbours apart where documents are merged.
    AppendLine(m_sFile, "end", sEnd);
  }

  Text m_sFile;
  SealMaker m_begins;
  bool m_bSealBeneath = true;
  std::deque<SealMaker> m_seals;  // by depth
};

}  // namespace

Text WriteDocument(const DocumentContent& content) {
  const Text sView = "{\"section\":\"view\"}\n";
  Writer writer(Json{{"format", kDocumentFormat}, {"version", kDocumentVersion}}.dump() + "\n");
  for (const DocumentContent::Section& section : content.SnapIns()) {
    writer.Section(Json{{"class", section.sProgId}, {"section", "snap-in"}}.dump() + "\n",
                   section.sProgId, *section.bag, true);
  }
  // What is lost of a view costs no work, and two who each add to it merge.
  if (content.View().Count() > 0) {
    writer.Section(sView, "view", content.View(), false);
  }
  return writer.Finish();
}

}  // namespace orvane::console
