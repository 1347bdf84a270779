// Names and texts as SQL reads them back, whatever they hold.
// Used wherever the provider composes SQL of its own. Pure functions, any thread.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace orvane::provider::engines {

/// Between two of the quotes; a quote inside is doubled.
inline platform::Text Quoted(std::string_view sText, char quote) {
  platform::Text sQuoted(1, quote);
  for (const char character : sText) {
    if (character == quote) sQuoted += quote;
    sQuoted += character;
  }
  return sQuoted += quote;
}

/// The name in double quotes, as every engine reads it.
inline platform::Text QuotedName(std::string_view sName) {
  return Quoted(sName, '"');
}

/// The text in single quotes.
inline platform::Text QuotedText(std::string_view sText) {
  return Quoted(sText, '\'');
}

}  // namespace orvane::provider::engines
