// Follows the parts of a document as their lines are read and tells whether their seals fit, and
// where they stop to. Used by the reader of the format, for one document.
#pragma once

#include <memory>
#include <vector>

#include "console/document/document_seal.h"

namespace orvane::console {

class SealCheck {
 public:
  /// A line as it was read, without its end.
  struct Line {
    std::string_view sText;
    std::size_t nNumber = 0;
  };

  /// The first line. In documents of whole names a part is in no other one, and the last seal is
  /// that of all lines that begin one.
  void Header(const Line& line, bool bWholeNames);
  /// The section's own part ends with that name. The parts of a view are not sealed by others.
  void BeginSection(const Line& line, std::string_view sEnd, bool bView);
  void BeginPart(const Line& line, std::string_view sPart);
  void Property(const Line& line);
  void Seal(const Line& line, std::string_view sSeal);
  void EndPart(const Line& line, std::string_view sEnd);
  /// The line that ends all sections.
  void EndSections(const Line& line);
  /// The last seal; empty when it is missing.
  void LastSeal(const Line& line, std::string_view sSeal);
  /// The line at which something is found that no seal tells.
  void Break(std::size_t nLine);

  /// What the names of properties go on from.
  std::string_view Prefix() const;
  DocumentSeal Result() const noexcept {
    return m_nBroken == 0 ? DocumentSeal::Whole : DocumentSeal::Broken;
  }
  /// The first line that is not as it was sealed, or that begins a part which is not; 0 when all
  /// fits.
  std::size_t BrokenAt() const noexcept { return m_nBroken; }

 private:
  /// A part that has begun and not ended. Those that have ended are used again.
  struct Part {
    platform::Text sName;
    platform::Text sEnd;
    std::size_t nLine = 0;
    bool bSealed = false;
    SealMaker seal;
  };

  Part* Top() const { return m_nOpen == 0 ? nullptr : m_parts[m_nOpen - 1].get(); }
  void Open(const Line& line, std::string_view sName, std::string_view sEnd);
  /// Goes back to the part of that depth; those above it were not ended.
  void BackTo(std::size_t nDepth);
  static void AddLine(SealMaker& seal, const Line& line);

  bool m_bWholeNames = false;
  bool m_bView = false;
  std::vector<std::unique_ptr<Part>> m_parts;
  std::size_t m_nOpen = 0;
  SealMaker m_begins;
  std::size_t m_nBroken = 0;
};

}  // namespace orvane::console
