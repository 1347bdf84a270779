#include <QByteArray>
#include <algorithm>
#include <limits>
#include <optional>

#include "console/document/document_format.h"
#include "console/document/document_line.h"
#include "console/document/seal_check.h"
#include "platform/failure.h"
#include "platform/one_line.h"

namespace orvane::console {

using platform::Failure;
using platform::Long;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kOldSealStart = R"({"blake2b":")";
/// The version whose one seal, in its last line, was of all lines before.
constexpr std::int64_t kVersionOfOneSeal = 1;
/// The version whose parts had properties of whole names, and all their beginnings in one seal.
constexpr std::int64_t kVersionOfWholeNames = 2;
/// Of snap-ins, which are looked for one by one.
constexpr std::size_t kMostSections = 1000;
/// Bytes of a name that a sentence repeats.
constexpr std::size_t kLongestName = 100;

/// The text of a line of nothing but that member, where the line is as it is written and nothing in
/// the text needs an escape: so are all but the properties, and they are many.
std::optional<std::string_view> PlainTextOf(std::string_view sLine, std::string_view sBegin) {
  constexpr std::string_view kEnd = "\"}";
  if (!sLine.starts_with(sBegin) || !sLine.ends_with(kEnd)) return std::nullopt;
  sLine.remove_prefix(sBegin.size());
  if (sLine.size() < kEnd.size()) return std::nullopt;
  sLine.remove_suffix(kEnd.size());
  const auto isPlain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
  if (!std::ranges::all_of(sLine, isPlain)) return std::nullopt;
  return sLine;
}

class Reader {
 public:
  Reader(std::string_view sBytes, const Text& sName, DocumentContent& content,
         DocumentLines* lines = nullptr)
      : m_sBytes(sBytes), m_sName(sName), m_content(content), m_lines(lines) {}

  void ReadHeader() {
    const std::string_view sLine = NextLine();
    DocumentLine line;
    const bool bRead = !m_bUnended && line.Read(sLine);
    const Text* sFormat = line.Find<Text>("format");
    if (!sFormat || *sFormat != kDocumentFormat) NoDocument();
    const auto* iVersion = line.Find<std::int64_t>("version");
    if (iVersion && *iVersion > kDocumentVersion) {
      throw Failure(failure::kDocument,
                    "The document " + m_sName +
                        " was written by a newer version of ORVANE Console (format " +
                        std::to_string(*iVersion) + ", this one reads " +
                        std::to_string(kDocumentVersion) + "); open it with that version.");
    }
    if (!bRead) Damaged(m_bUnended ? "is cut off" : line.Problem());
    if (!iVersion || *iVersion < kVersionOfOneSeal || line.Count() != 2) {
      Damaged("names no version that this program knows");
    }
    m_bOneSeal = *iVersion == kVersionOfOneSeal;
    m_seals.Header({sLine, m_nLine}, *iVersion <= kVersionOfWholeNames);
  }

  void Read() {
    ReadHeader();
    while (!m_bEnded) {
      SkipEmptyLines();
      m_nLineBegin = m_nPosition;
      const std::string_view sLine = NextLine();
      if (m_bOneSeal && sLine.starts_with(kOldSealStart)) {
        ReadOldSeal(sLine);
      } else {
        ReadLine(sLine);
      }
    }
    SkipEmptyLines();
    if (m_nPosition != m_sBytes.size()) {
      ++m_nLine;
      Damaged("follows the end");
    }
  }
  const SealCheck& Seals() const { return m_seals; }

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

  [[noreturn]] void Unsettled() const {
    throw Failure(failure::kDocument, "The document " + m_sName +
                                          " holds a merge that was not settled, at line " +
                                          std::to_string(m_nLine) +
                                          "; settle it in an editor, or restore it from a copy.");
  }

  // Two people who set the same property, and a merge that kept both lines.
  [[noreturn]] void Twice(const Text& sProperty) const {
    throw Failure(failure::kDocument, "The document " + m_sName + " holds the property " +
                                          Brief(sProperty) + " twice, the second time at line " +
                                          std::to_string(m_nLine) +
                                          "; remove one of the two in an editor, or restore the "
                                          "document from a copy.");
  }

  static Text Brief(std::string_view sName) { return platform::OneLine(sName, kLongestName); }

  /// The next line without its end.
  std::string_view NextLine() {
    ++m_nLine;
    const std::size_t nEnd = m_sBytes.find('\n', m_nPosition);
    m_bUnended = nEnd == std::string_view::npos;
    if (m_bUnended && m_nPosition == m_sBytes.size() && m_nLine > 1) Damaged("is cut off");
    const std::size_t nBegin = m_nPosition;
    m_nPosition = m_bUnended ? m_sBytes.size() : nEnd + 1;
    return m_sBytes.substr(nBegin, m_bUnended ? std::string_view::npos : nEnd - nBegin);
  }

  void SkipEmptyLines() {
    while (m_nPosition < m_sBytes.size() && m_sBytes[m_nPosition] == '\n') {
      ++m_nPosition;
      ++m_nLine;
    }
  }

  static bool IsMergeMark(std::string_view sLine) {
    return sLine.starts_with("<<<<<<<") || sLine.starts_with("=======") ||
           sLine.starts_with(">>>>>>>") || sLine.starts_with("|||||||");
  }

  void ReadLine(std::string_view sLine) {
    if (!m_bOneSeal && ReadPlainLine(sLine)) return;
    DocumentLine line;
    if (!line.Read(sLine)) {
      if (IsMergeMark(sLine)) Unsettled();
      Damaged(m_bUnended ? "is cut off" : line.Problem());
    }
    if (line.Has("name")) {
      ReadEntry(line, sLine);
    } else if (line.Has("section")) {
      ReadSection(line, sLine);
    } else if (!m_bOneSeal && line.Has("part")) {
      ReadPart(sLine, TextOf(line, "part"));
    } else if (!m_bOneSeal && line.Has("seal")) {
      m_seals.Seal({sLine, m_nLine}, TextOf(line, "seal"));
    } else if (!m_bOneSeal && line.Has("end")) {
      m_seals.EndPart({sLine, m_nLine}, TextOf(line, "end"));
    } else {
      Damaged("is no property, section, part or seal");
    }
  }

  /// What ReadLine would do, for the lines that can be told without taking them apart.
  bool ReadPlainLine(std::string_view sLine) {
    if (const auto sSeal = PlainTextOf(sLine, R"({"seal":")")) {
      m_seals.Seal({sLine, m_nLine}, *sSeal);
    } else if (const auto sEnd = PlainTextOf(sLine, R"({"end":")")) {
      m_seals.EndPart({sLine, m_nLine}, *sEnd);
    } else if (const auto sPart = PlainTextOf(sLine, R"({"part":")")) {
      ReadPart(sLine, *sPart);
    } else {
      return false;
    }
    return true;
  }

  Text TextOf(const DocumentLine& line, const char* sMember) const {
    const Text* sText = line.Find<Text>(sMember);
    if (!sText || line.Count() != 1) Damaged("is no property, section, part or seal");
    return *sText;
  }

  void ReadSection(const DocumentLine& line, std::string_view sLine) {
    const Text* sSection = line.Find<Text>("section");
    const Text* sClass = line.Find<Text>("class");
    if (sSection && *sSection == "view" && line.Count() == 1) {
      if (m_bViewSeen) Damaged("begins a second view");
      m_bViewSeen = true;
      m_bag = &m_content.View();
      if (!m_bOneSeal) m_seals.BeginSection({sLine, m_nLine}, *sSection, true);
    } else if (sSection && *sSection == "snap-in" && sClass && line.Count() == 2) {
      if (m_content.SnapIns().size() == kMostSections) Damaged("begins one snap-in too many");
      if (m_content.FindSnapIn(*sClass)) Damaged("begins the snap-in " + Brief(*sClass) + " again");
      m_bag = &m_content.SnapIn(*sClass);
      if (!m_bOneSeal) m_seals.BeginSection({sLine, m_nLine}, *sClass, false);
    } else if (!m_bOneSeal && sSection && *sSection == "end" && line.Count() == 1) {
      ReadEnd(sLine);
    } else {
      Damaged("begins an unknown section");
    }
  }

  // ---- seals

  void ReadPart(std::string_view sLine, std::string_view sPart) {
    if (!m_bag) Damaged("holds a part outside of a section");
    m_seals.BeginPart({sLine, m_nLine}, sPart);
  }

  void ReadEnd(std::string_view sLine) {
    m_bEnded = true;
    m_seals.EndSections({sLine, m_nLine});
    SkipEmptyLines();
    if (m_nPosition == m_sBytes.size()) return m_seals.LastSeal({{}, m_nLine}, {});
    DocumentLine line;
    if (!line.Read(NextLine())) Damaged(m_bUnended ? "is cut off" : line.Problem());
    if (!line.Has("seal")) Damaged("follows the end");
    m_seals.LastSeal({{}, m_nLine}, TextOf(line, "seal"));
  }

  void ReadOldSeal(std::string_view sLine) {
    m_bEnded = true;
    DocumentLine line;
    if (!line.Read(sLine)) Damaged(m_bUnended ? "is cut off" : line.Problem());
    if (TextOf(line, "blake2b") != SealOf(m_sBytes.substr(0, m_nLineBegin))) m_seals.Break(m_nLine);
  }

  // ---- properties

  void ReadEntry(DocumentLine& line, std::string_view sLine) {
    Text* sName = line.Find<Text>("name");
    if (!sName) Damaged("is no property, section, part or seal");
    if (!m_bag) Damaged("holds a property outside of a section");
    if (!m_bOneSeal) m_seals.Property({sLine, m_nLine});
    const std::string_view sPart = m_seals.Prefix();
    if (sPart.size() > kLongestPart) Damaged("holds a property of a part of too long a name");
    sName->insert(0, sPart);
    StoredValue value = ReadValue(line, *sName);
    // The name is needed for the sentence; the bag takes a copy only when it is refused.
    if (m_bag->Find(*sName)) Twice(*sName);
    const bool bObject = std::holds_alternative<StoredObject>(value);
    m_bag->Add(std::move(*sName), std::move(value));
    if (m_lines && bObject) {
      m_lines->objects.push_back({*m_bag, m_bag->Entries().back().sName, m_nLine});
    }
  }

  StoredValue ReadValue(DocumentLine& line, const Text& sName) {
    if (line.Count() == 2) {
      if (const bool* bValue = line.Find<bool>("boolean")) return *bValue;
      if (const auto* iValue = line.Find<std::int64_t>("integer")) {
        if (*iValue < std::numeric_limits<Long>::min() ||
            *iValue > std::numeric_limits<Long>::max()) {
          Damaged("holds for " + Brief(sName) + " an integer that is out of range");
        }
        return static_cast<Long>(*iValue);
      }
      if (std::optional<Text> sText = ReadText(line, "text", "bytes")) return *std::move(sText);
    } else if (line.Count() == 3) {
      Text* sProgId = line.Find<Text>("object");
      std::optional<Text> sState = ReadText(line, "state", "state-bytes");
      if (sProgId && sState) return StoredObject{std::move(*sProgId), *std::move(sState)};
    }
    Damaged("holds for " + Brief(sName) + " no value of a known type");
  }

  std::optional<Text> ReadText(DocumentLine& line, std::string_view sMember,
                               std::string_view sBytesMember) {
    if (Text* sText = line.Find<Text>(sMember)) return std::move(*sText);
    const Text* sBase64 = line.Find<Text>(sBytesMember);
    if (!sBase64) return std::nullopt;
    const auto decoded = QByteArray::fromBase64Encoding(QByteArray::fromStdString(*sBase64),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) Damaged("holds bytes that are not in base64");
    return decoded.decoded.toStdString();
  }

  std::string_view m_sBytes;
  const Text& m_sName;
  DocumentContent& m_content;
  DocumentLines* m_lines;
  DocumentBag* m_bag = nullptr;
  bool m_bViewSeen = false;
  std::size_t m_nPosition = 0;
  std::size_t m_nLine = 0;
  std::size_t m_nLineBegin = 0;
  bool m_bUnended = false;  // the line is the file's last and has no end
  bool m_bEnded = false;

  bool m_bOneSeal = false;
  SealCheck m_seals;
};

std::string_view WithoutMark(std::string_view sBytes) {
  if (sBytes.starts_with(kByteOrderMark)) sBytes.remove_prefix(kByteOrderMark.size());
  return sBytes;
}

/// Only at the end of a line has a carriage return no meaning.
Text WithoutCarriageReturns(std::string_view sBytes) {
  Text sPlain;
  sPlain.reserve(sBytes.size());
  for (std::size_t n = 0; n < sBytes.size(); ++n) {
    const bool bAtEnd = n + 1 == sBytes.size() || sBytes[n + 1] == '\n';
    if (sBytes[n] != '\r' || !bAtEnd) sPlain += sBytes[n];
  }
  return sPlain;
}

template <class Step>
auto WithPlainLines(std::string_view sBytes, Step&& step) {
  sBytes = WithoutMark(sBytes);
  if (sBytes.find('\r') == std::string_view::npos) return step(sBytes);
  const Text sPlain = WithoutCarriageReturns(sBytes);
  return step(sPlain);
}

}  // namespace

void CheckDocumentStart(std::string_view sBytes, const Text& sName) {
  DocumentContent unused;
  WithPlainLines(sBytes, [&](std::string_view s) { Reader(s, sName, unused).ReadHeader(); });
}

DocumentSeal ReadDocument(std::string_view sBytes, const Text& sName, DocumentContent& content,
                          DocumentLines* lines) {
  return WithPlainLines(sBytes, [&](std::string_view s) {
    Reader reader(s, sName, content, lines);
    reader.Read();
    if (lines) lines->nBroken = reader.Seals().BrokenAt();
    return reader.Seals().Result();
  });
}

}  // namespace orvane::console
