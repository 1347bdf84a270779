// Historian SQL as a row of tokens, with the places where they stand in the text.
// Used by everything in this folder; what it accepts, the embedded engine reads the same way.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/failure.h"

namespace orvane::provider::dialect {

class StatementWork;

enum class TokenKind : std::uint8_t {
  Word,              ///< keyword or bare name
  QuotedIdentifier,  ///< "name", [name] or `name`
  String,            ///< 'text'
  Blob,              ///< x'00ff'
  Number,
  Parameter,  ///< "?" before its value is known, and one that is null
  Time,       ///< "?" whose value is a point in time
  Symbol,     ///< operator or punctuation
  End,        ///< behind the last token
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::size_t position = 0;  ///< byte in the statement, from 0
  std::size_t length = 0;
  platform::Text sText;   ///< as written; for quoted tokens without quotes, doubled ones single
  platform::Text sUpper;  ///< of words: in ASCII capitals, to compare with keywords
  std::size_t nParameter = 0;  ///< of a "?" whose value is known its number, from 1

  bool IsSymbol(std::string_view sSymbol) const {
    return kind == TokenKind::Symbol && sText == sSymbol;
  }
  bool IsWord(std::string_view sKeyword) const {
    return kind == TokenKind::Word && sUpper == sKeyword;
  }
  bool IsIdentifier() const {
    return kind == TokenKind::Word || kind == TokenKind::QuotedIdentifier;
  }
};

/// Reads a whole statement; the last token is End. Comments are left out. Exactly one statement
/// is let through: ";" may stand at its end only. Fails with failure::kSqlError and the place in
/// the text for an unfinished quote, a character that has no meaning, a parameter mark other than
/// a bare "?", a second statement, and for a text without any statement; and when the work is to
/// end.
std::vector<Token> ReadTokens(std::string_view sStatement, StatementWork& work);

/// The place as a number of characters, not bytes, counted from 1.
platform::Text CharacterNumber(std::string_view sStatement, std::size_t position);

/// failure::kSqlError and "<what> (character N of the statement); <advice>."
platform::Failure FailureAt(std::string_view sStatement, std::size_t position,
                            const platform::Text& sWhat, const platform::Text& sAdvice);
/// Fails with that.
[[noreturn]] void FailAt(std::string_view sStatement, std::size_t position,
                         const platform::Text& sWhat, const platform::Text& sAdvice);

/// The name in ASCII capitals, its other letters as they are.
platform::Text UpperCase(platform::Text sName);

/// True when two names are the same to SQL: ASCII letters compare without regard to case.
bool SameName(std::string_view sLeft, std::string_view sRight);

}  // namespace orvane::provider::dialect
