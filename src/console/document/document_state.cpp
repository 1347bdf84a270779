#include "console/document/document_state.h"

#include <algorithm>

namespace orvane::console {

using platform::Text;

namespace {

std::string_view WithoutOptions(std::string_view sText, std::span<const Text> optionTexts) {
  const auto isSuffix = [&](const Text& sOptions) {
    return !sOptions.empty() && sText.ends_with(sOptions);
  };
  for (;;) {
    const auto found = std::find_if(optionTexts.begin(), optionTexts.end(), isSuffix);
    if (found == optionTexts.end()) return sText;
    sText.remove_suffix(found->size());
  }
}

bool Equal(const Text& sBase, const Text& sNow, std::span<const Text> optionTexts) {
  return sBase == sNow || WithoutOptions(sBase, optionTexts) == WithoutOptions(sNow, optionTexts);
}

}  // namespace

void DocumentState::Rebase(const SaveSnapshot& snapshot) {
  m_texts = snapshot.Texts();
  m_marks = snapshot.Marks();
}

bool DocumentState::IsModified(const SaveSnapshot& snapshot,
                               std::span<const Text> optionTexts) const {
  const auto isEqual = [&](const auto& base, const auto& now) {
    return base.first == now.first && Equal(base.second, now.second, optionTexts);
  };
  return snapshot.Marks() != m_marks || !std::ranges::equal(m_texts, snapshot.Texts(), isEqual);
}

}  // namespace orvane::console
