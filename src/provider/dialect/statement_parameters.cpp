#include "provider/dialect/statement_parameters.h"

#include <algorithm>
#include <type_traits>

#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::provider::dialect {

using platform::Text;
using platform::Value;

namespace {

void Become(Token& token, TokenKind kind, Text sText) {
  token.kind = kind;
  token.sText = std::move(sText);
}

void BecomeValue(Token& token, const Value& vtValue) {
  std::visit(
      [&](const auto& content) {
        using T = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<T, platform::Null>) {
          // No word: a name could be made of that.
        } else if constexpr (std::is_same_v<T, bool>) {
          Become(token, TokenKind::Number, content ? "1" : "0");
        } else if constexpr (std::is_arithmetic_v<T>) {
          Become(token, TokenKind::Number, platform::ToText(content));
        } else if constexpr (std::is_same_v<T, platform::Timestamp>) {
          Become(token, TokenKind::Time, platform::ToText(content));
        } else if constexpr (std::is_same_v<T, Text>) {
          Become(token, TokenKind::String, content);
        } else if constexpr (std::is_same_v<T, platform::Date> ||
                             std::is_same_v<T, platform::TimeOfDay> ||
                             std::is_same_v<T, platform::WallTime>) {
          Become(token, TokenKind::String, platform::ToText(content));
        } else {
          // Bytes, and texts that no time is written in.
          static_assert(std::is_same_v<T, platform::Bytes> || std::is_same_v<T, platform::Guid> ||
                        std::is_same_v<T, platform::Decimal> ||
                        std::is_same_v<T, platform::ObjectPtr>);
          Become(token, TokenKind::Blob, {});
        }
      },
      vtValue.Content());
}

}  // namespace

std::vector<Value> PlacesOf(std::span<const Token> tokens) {
  const auto nMarks = std::ranges::count(tokens, TokenKind::Parameter, &Token::kind);
  // Of null nothing is made but itself.
  return std::vector<Value>(static_cast<std::size_t>(nMarks));
}

void GiveParameters(std::string_view sStatement, std::vector<Token>& tokens,
                    std::span<const Value> values) {
  std::size_t nMarks = 0;
  for (Token& token : tokens) {
    if (token.kind != TokenKind::Parameter) continue;
    if (values.empty()) {
      FailAt(sStatement, token.position, "There is a parameter mark",
             "write the value itself into the statement");
    }
    if (nMarks < values.size()) BecomeValue(token, values[nMarks]);
    token.nParameter = ++nMarks;
  }
  if (nMarks == values.size()) return;
  throw platform::Failure(platform::failure::kInvalidArgument,
                          "The statement takes " + std::to_string(nMarks) + " parameters, but " +
                              std::to_string(values.size()) +
                              " were given; give one value for each.",
                          "ORVOLEDB", 0, Text(sStatement));
}

void RefuseParameters(std::string_view sStatement, const std::vector<Token>& tokens) {
  for (const Token& token : tokens) {
    if (token.nParameter == 0) continue;
    FailAt(sStatement, token.position, "A parameter stands in a definition",
           "write the value itself into the statement");
  }
}

}  // namespace orvane::provider::dialect
