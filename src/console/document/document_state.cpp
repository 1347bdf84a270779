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

bool Equal(const StoredValue& base, const StoredValue& now, std::span<const Text> optionTexts) {
  if (base == now) return true;
  const Text* sBase = std::get_if<Text>(&base);
  const Text* sNow = std::get_if<Text>(&now);
  return sBase && sNow && WithoutOptions(*sBase, optionTexts) == WithoutOptions(*sNow, optionTexts);
}

}  // namespace

void DocumentState::Rebase(const DocumentBag& bag) {
  m_base.clear();
  m_base.reserve(bag.Count());
  for (const DocumentBag::Entry& entry : bag.Entries()) m_base.emplace(entry.sName, entry.value);
}

bool DocumentState::IsModified(const DocumentBag& bag, std::span<const Text> optionTexts) const {
  if (bag.Count() != m_base.size()) return true;
  return !std::all_of(bag.Entries().begin(), bag.Entries().end(), [&](const auto& entry) {
    const auto found = m_base.find(entry.sName);
    return found != m_base.end() && Equal(found->second, entry.value, optionTexts);
  });
}

}  // namespace orvane::console
