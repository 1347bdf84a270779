#include "console/document/document_format.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <algorithm>
#include <array>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "console/document/utf8.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Long;
using platform::Text;
using Json = nlohmann::json;
namespace failure = platform::failure;

namespace {

constexpr const char* kFormat = "orvane-console";
constexpr std::string_view kDigestStart = R"({"blake2b":")";

QByteArray Bytes(std::string_view sBytes) {
  return QByteArray::fromRawData(sBytes.data(), static_cast<qsizetype>(sBytes.size()));
}

Text Digest(std::string_view sBytes) {
  return QCryptographicHash::hash(Bytes(sBytes), QCryptographicHash::Blake2b_256)
      .toHex()
      .toStdString();
}

// ---- writing

/// Appends the UTF-8 text as a JSON string. A document is mostly names and plain texts, which are
/// copied in runs.
void AppendString(Text& sLine, std::string_view sText) {
  const auto isPlain = [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\';
  };
  sLine += '"';
  for (auto position = sText.begin();;) {
    const auto runEnd = std::find_if_not(position, sText.end(), isPlain);
    sLine.append(position, runEnd);
    if (runEnd == sText.end()) break;
    if (static_cast<unsigned char>(*runEnd) >= 0x20) {
      sLine.append(1, '\\').append(1, *runEnd);
    } else {
      sLine += Json(std::string_view(&*runEnd, 1)).dump().substr(1);
      sLine.pop_back();
    }
    position = runEnd + 1;
  }
  sLine += '"';
}

/// Appends ,"sMember":"text", or for bytes that are not UTF-8 ,"sBytesMember":"base64".
void AppendText(Text& sLine, std::string_view sMember, std::string_view sBytesMember,
                std::string_view sText) {
  if (IsUtf8(sText)) {
    sLine.append(",\"").append(sMember).append("\":");
    AppendString(sLine, sText);
  } else {
    sLine.append(",\"").append(sBytesMember).append("\":\"");
    sLine.append(Bytes(sText).toBase64().toStdString()).append("\"");
  }
}

void AppendEntries(Text& sFile, const DocumentBag& bag) {
  for (const DocumentBag::Entry& entry : bag.Entries()) {
    sFile += "{\"name\":";
    AppendString(sFile, entry.sName);
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
}

// ---- reading

/// One member of a line's object.
struct Member {
  Text sName;
  std::variant<std::monostate, bool, std::int64_t, Text> value;
};

/// Takes the members of one line: a flat object of Booleans, integers and texts.
class LineHandler : public nlohmann::json_sax<Json> {
 public:
  static constexpr std::size_t kMaximum = 4;

  bool null() override { return Refuse("holds a null"); }
  bool boolean(bool bValue) override { return Take(bValue); }
  bool number_integer(std::int64_t iValue) override { return Take(iValue); }
  bool number_unsigned(std::uint64_t uValue) override {
    if (uValue > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      return Refuse("holds an integer that is out of range");
    }
    return Take(static_cast<std::int64_t>(uValue));
  }
  bool number_float(double, const Text&) override {
    return Refuse("holds a number that is no integer");
  }
  bool string(Text& sValue) override { return Take(std::move(sValue)); }
  bool binary(Json::binary_t&) override { return Refuse("holds bytes"); }
  bool start_object(std::size_t) override {
    return ++m_nDepth == 1 || Refuse("holds an object inside its object");
  }
  bool end_object() override { return true; }
  bool start_array(std::size_t) override { return Refuse("holds a list"); }
  bool end_array() override { return true; }
  bool key(Text& sName) override {
    if (Find(sName)) return Refuse("names a member twice");
    if (m_nMembers == kMaximum) return Refuse("has too many members");
    m_members[m_nMembers++] = {std::move(sName), {}};
    return true;
  }
  bool parse_error(std::size_t, const Text&, const Json::exception&) override {
    return Refuse("is no JSON object in UTF-8");
  }

  /// The member of that name, or null.
  Member* Find(std::string_view sName) {
    for (std::size_t i = 0; i < m_nMembers; ++i) {
      if (m_members[i].sName == sName) return &m_members[i];
    }
    return nullptr;
  }
  template <class T>
  T* Find(std::string_view sName) {
    Member* member = Find(sName);
    return member ? std::get_if<T>(&member->value) : nullptr;
  }
  std::size_t Count() const { return m_nMembers; }
  const char* Problem() const { return m_sProblem; }

 private:
  template <class T>
  bool Take(T value) {
    if (m_nMembers == 0) return Refuse("is no JSON object in UTF-8");
    m_members[m_nMembers - 1].value = std::move(value);
    return true;
  }
  bool Refuse(const char* sProblem) {
    m_sProblem = sProblem;
    return false;
  }

  std::array<Member, kMaximum> m_members;
  std::size_t m_nMembers = 0;
  int m_nDepth = 0;
  const char* m_sProblem = nullptr;
};

class Reader {
 public:
  Reader(std::string_view sBytes, const Text& sName, DocumentContent& content)
      : m_sBytes(sBytes), m_sName(sName), m_content(content) {}

  void ReadHeader() { ReadHeader(NextLine()); }

  void Read() {
    ReadHeader();
    for (;;) {
      const std::size_t nBefore = m_nPosition;
      const std::string_view sLine = NextLine();
      if (sLine.starts_with(kDigestStart)) {
        CheckDigest(sLine, m_sBytes.substr(0, nBefore));
        return;
      }
      ReadLine(sLine);
    }
  }

 private:
  [[noreturn]] void Damaged(const Text& sProblem) const {
    throw Failure(failure::kDocument, "The document " + m_sName + " is damaged: line " +
                                          std::to_string(m_nLine) + " " + sProblem +
                                          "; restore it from a copy.");
  }

  [[noreturn]] void NoDocument() const {
    throw Failure(failure::kDocument,
                  "The file " + m_sName + " is no document of ORVANE Console; open another one.");
  }

  /// The next line without its end.
  std::string_view NextLine() {
    const std::size_t nEnd = m_sBytes.find('\n', m_nPosition);
    ++m_nLine;
    if (nEnd == std::string_view::npos) {
      if (m_nLine == 1) NoDocument();
      Damaged("is cut off");
    }
    const std::string_view sLine = m_sBytes.substr(m_nPosition, nEnd - m_nPosition);
    m_nPosition = nEnd + 1;
    return sLine;
  }

  static bool Parse(std::string_view sLine, LineHandler& handler) {
    return Json::sax_parse(sLine.begin(), sLine.end(), &handler);
  }

  void ReadHeader(std::string_view sLine) {
    LineHandler line;
    const bool bParsed = Parse(sLine, line);
    const Text* sFormat = line.Find<Text>("format");
    if (!sFormat || *sFormat != kFormat) NoDocument();
    const auto* iVersion = line.Find<std::int64_t>("version");
    if (iVersion && *iVersion > kDocumentVersion) {
      throw Failure(failure::kDocument,
                    "The document " + m_sName +
                        " was written by a newer version of ORVANE Console (format " +
                        std::to_string(*iVersion) + ", this one reads " +
                        std::to_string(kDocumentVersion) + "); open it with that version.");
    }
    if (!bParsed) Damaged(line.Problem());
    if (!iVersion || *iVersion != kDocumentVersion || line.Count() != 2) {
      Damaged("names no version that this program knows");
    }
  }

  void CheckDigest(std::string_view sLine, std::string_view sContent) {
    LineHandler line;
    if (!Parse(sLine, line)) Damaged(line.Problem());
    const Text* sDigest = line.Find<Text>("blake2b");
    if (!sDigest || line.Count() != 1) Damaged("is no digest");
    if (*sDigest != Digest(sContent)) {
      Damaged("holds a digest that does not fit the lines before it");
    }
    if (m_nPosition != m_sBytes.size()) {
      ++m_nLine;
      Damaged("follows the end");
    }
  }

  void ReadLine(std::string_view sLine) {
    LineHandler line;
    if (!Parse(sLine, line)) Damaged(line.Problem());
    if (line.Find("section")) {
      ReadSection(line);
    } else {
      ReadEntry(line);
    }
  }

  void ReadSection(LineHandler& line) {
    const Text* sSection = line.Find<Text>("section");
    const Text* sClass = line.Find<Text>("class");
    if (sSection && *sSection == "view" && line.Count() == 1) {
      if (m_bViewSeen) Damaged("begins a second view");
      m_bViewSeen = true;
      m_bag = &m_content.View();
    } else if (sSection && *sSection == "snap-in" && sClass && line.Count() == 2) {
      if (m_content.FindSnapIn(*sClass)) Damaged("begins the snap-in " + *sClass + " again");
      m_bag = &m_content.SnapIn(*sClass);
    } else {
      Damaged("begins an unknown section");
    }
  }

  void ReadEntry(LineHandler& line) {
    Text* sName = line.Find<Text>("name");
    if (!sName) Damaged("is no property, section or digest");
    if (!m_bag) Damaged("holds a property outside of a section");
    StoredValue value = ReadValue(line, *sName);
    // The name is needed for the sentence; the bag takes a copy only when it is refused.
    if (m_bag->Find(*sName)) Damaged("holds the property " + *sName + " a second time");
    m_bag->Add(std::move(*sName), std::move(value));
  }

  StoredValue ReadValue(LineHandler& line, const Text& sName) {
    if (line.Count() == 2) {
      if (const bool* bValue = line.Find<bool>("boolean")) return *bValue;
      if (const auto* iValue = line.Find<std::int64_t>("integer")) {
        if (*iValue < std::numeric_limits<Long>::min() ||
            *iValue > std::numeric_limits<Long>::max()) {
          Damaged("holds for " + sName + " an integer that is out of range");
        }
        return static_cast<Long>(*iValue);
      }
      if (std::optional<Text> sText = ReadText(line, "text", "bytes")) return *std::move(sText);
    } else if (line.Count() == 3) {
      Text* sProgId = line.Find<Text>("object");
      std::optional<Text> sState = ReadText(line, "state", "state-bytes");
      if (sProgId && sState) return StoredObject{std::move(*sProgId), *std::move(sState)};
    }
    Damaged("holds for " + sName + " no value of a known type");
  }

  std::optional<Text> ReadText(LineHandler& line, std::string_view sMember,
                               std::string_view sBytesMember) {
    if (Text* sText = line.Find<Text>(sMember)) return std::move(*sText);
    const Text* sBase64 = line.Find<Text>(sBytesMember);
    if (!sBase64) return std::nullopt;
    const auto decoded =
        QByteArray::fromBase64Encoding(Bytes(*sBase64), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) Damaged("holds bytes that are not in base64");
    return decoded.decoded.toStdString();
  }

  std::string_view m_sBytes;
  const Text& m_sName;
  DocumentContent& m_content;
  DocumentBag* m_bag = nullptr;
  bool m_bViewSeen = false;
  std::size_t m_nPosition = 0;
  std::size_t m_nLine = 0;
};

}  // namespace

Text WriteDocument(const DocumentContent& content) {
  Text sFile = Json{{"format", kFormat}, {"version", kDocumentVersion}}.dump() + "\n";
  for (const DocumentContent::Section& section : content.SnapIns()) {
    sFile += Json{{"class", section.sProgId}, {"section", "snap-in"}}.dump() + "\n";
    AppendEntries(sFile, *section.bag);
  }
  if (content.View().Count() > 0) {
    sFile += Json{{"section", "view"}}.dump() + "\n";
    AppendEntries(sFile, content.View());
  }
  sFile += Text(kDigestStart) + Digest(sFile) + "\"}\n";
  return sFile;
}

void CheckDocumentStart(std::string_view sBytes, const Text& sName) {
  DocumentContent unused;
  Reader(sBytes, sName, unused).ReadHeader();
}

void ReadDocument(std::string_view sBytes, const Text& sName, DocumentContent& content) {
  Reader(sBytes, sName, content).Read();
}

}  // namespace orvane::console
