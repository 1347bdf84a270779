#include "provider/dialect/conflict_rules.h"

#include "platform/failure.h"
#include "provider/dialect/lexer.h"

namespace orvane::provider::dialect {
namespace {

bool HasSuchRule(const std::vector<Token>& tokens) {
  for (std::size_t i = 1; i + 2 < tokens.size(); ++i) {
    if (!tokens[i].IsWord("ON") || !tokens[i + 1].IsWord("CONFLICT")) continue;
    if (tokens[i + 2].IsWord("IGNORE")) return true;
    if (tokens[i + 2].IsWord("REPLACE") && !tokens[i - 1].IsWord("NULL")) return true;
  }
  return false;
}

}  // namespace

bool GivesRowsUp(std::string_view sDefinition, StatementWork& work) {
  if (sDefinition.empty()) return false;
  try {
    return HasSuchRule(ReadTokens(sDefinition, work));
  } catch (const platform::Failure& failed) {
    if (failed.Number() != platform::failure::kSqlError) throw;
    return true;
  }
}

}  // namespace orvane::provider::dialect
