// Statements of tests as tokens, with all the time that there is.
#pragma once

#include "provider/dialect/lexer.h"
#include "provider/dialect/statement_work.h"

namespace orvane::provider::dialect {

inline std::vector<Token> Tokens(std::string_view sStatement) {
  StatementWork work(Deadline({}, {}));
  return ReadTokens(sStatement, work);
}

}  // namespace orvane::provider::dialect
