// Names and texts as SQL reads them back, whatever they hold: the one rule for whoever composes
// SQL, the provider, the grids and the tools alike. And between quotes in a sentence, where nobody
// reads them back. Pure functions, any thread.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace orvane::platform {

/// Between two of the quotes; a quote inside is doubled.
inline Text WithDoubledQuotes(std::string_view sText, char quote) {
  Text sQuoted(1, quote);
  for (const char character : sText) {
    if (character == quote) sQuoted += quote;
    sQuoted += character;
  }
  return sQuoted += quote;
}

/// The name in double quotes, as every engine reads it.
inline Text QuotedName(std::string_view sName) {
  return WithDoubledQuotes(sName, '"');
}

/// The text in single quotes.
inline Text QuotedText(std::string_view sText) {
  return WithDoubledQuotes(sText, '\'');
}

/// As a sentence names it: as it is, in double quotes.
inline Text InQuotes(std::string_view sText) {
  return '"' + Text(sText) + '"';
}

}  // namespace orvane::platform
