#include "provider/dialect/refused_names.h"

#include <algorithm>

namespace orvane::provider::dialect {
namespace {

constexpr std::string_view kOfTheTranslation = "ORVANE_TIME*";

bool IsMeant(std::string_view sRefused, std::string_view sName) {
  if (!sRefused.ends_with('*')) return sName == sRefused;
  return sName.starts_with(sRefused.substr(0, sRefused.size() - 1));
}

}  // namespace

void RefuseNames(std::string_view sStatement, const std::vector<Token>& tokens,
                 std::span<const std::string_view> refused, StatementWork& work) {
  for (const Token& token : tokens) {
    work.Step();
    if (!token.IsIdentifier()) continue;
    const platform::Text sName = UpperCase(token.sText);
    if (IsMeant(kOfTheTranslation, sName) ||
        std::ranges::any_of(refused, [&](const auto& sOne) { return IsMeant(sOne, sName); })) {
      FailAt(sStatement, token.position, token.sText + " is not available to statements",
             "leave it out");
    }
  }
}

}  // namespace orvane::provider::dialect
