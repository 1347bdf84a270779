// The values that a caller gives for the "?" of a statement. For the dialect each is what it would
// be if it had been written out: a text may be a time expression, a number a number of days. The
// engine gets it as a parameter, never as text.
// Used by the session right behind the lexer. Pure functions, any thread.
#pragma once

#include <span>
#include <vector>

#include "platform/value.h"
#include "provider/dialect/lexer.h"

namespace orvane::provider::dialect {

/// Stands for a value that is not known yet, for each "?" among the tokens.
std::vector<platform::Value> PlacesOf(std::span<const Token> tokens);

/// Makes each "?" among the tokens the kind of token that its value is, and numbers it; null stays
/// one of kind Parameter. Fails with
/// failure::kSqlError and the place of the first "?" when there are no values at all, and with
/// kInvalidArgument when there is not one value for each.
void GiveParameters(std::string_view sStatement, std::vector<Token>& tokens,
                    std::span<const platform::Value> values);

/// Fails with failure::kSqlError at the first parameter: what is kept is read without them.
void RefuseParameters(std::string_view sStatement, const std::vector<Token>& tokens);

}  // namespace orvane::provider::dialect
