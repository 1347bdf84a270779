#include "console/session/list_texts.h"

#include <algorithm>

#include "platform/failure.h"

namespace orvane::console {

using platform::Long;
using platform::Text;

namespace {

// No list has anything like this many columns; a wild position must not become a wild allocation.
constexpr Long kMaxPosition = 1000;

void CheckPosition(Long lIndex) {
  if (lIndex < 1 || lIndex > kMaxPosition) {
    throw platform::Failure(platform::failure::kOutOfRange,
                            "A list has no column at position " + std::to_string(lIndex) +
                                "; positions are 1 to " + std::to_string(kMaxPosition) + ".",
                            "console");
  }
}

}  // namespace

void HostedColumnHeaders::Clear() {
  m_headers.clear();
  if (m_changed) m_changed();
}

void HostedColumnHeaders::Add(Long lIndex, const Text& sKey, const Text& sText, Long lWidth) {
  CheckPosition(lIndex);
  const auto nAt = std::min(static_cast<std::size_t>(lIndex) - 1, m_headers.size());
  m_headers.insert(m_headers.begin() + static_cast<std::ptrdiff_t>(nAt), {sKey, sText, lWidth});
  if (m_changed) m_changed();
}

void HostedSubItems::Clear() {
  m_texts.clear();
  if (m_changed) m_changed();
}

void HostedSubItems::Add(Long lIndex, const Text& /*sKey*/, const Text& sText) {
  CheckPosition(lIndex);
  const auto nAt = static_cast<std::size_t>(lIndex) - 1;
  if (nAt >= m_texts.size()) m_texts.resize(nAt + 1);
  m_texts[nAt] = sText;
  if (m_changed) m_changed();
}

}  // namespace orvane::console
