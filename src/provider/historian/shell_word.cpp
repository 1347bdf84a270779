#include "provider/historian/shell_word.h"

#include <string_view>

namespace orvane::provider::historian {

using platform::Text;

Text InShell(const Text& sWord) {
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-./+,:@";
  if (!sWord.empty() && sWord.front() != '-' && sWord.find_first_not_of(kPlain) == Text::npos) {
    return sWord;
  }
  Text sQuoted = "'";
  for (const char c : sWord) sQuoted += c == '\'' ? Text("'\\''") : Text(1, c);
  return sQuoted + "'";
}

}  // namespace orvane::provider::historian
