// A text whose content is overwritten when it is no longer needed. Used for passwords.
// Held between the logon dialog and the opening of a session, by one owner at a time.
#pragma once

#include "platform/types.h"

namespace orvane::ado {

/// Overwrites the whole room of the text, also behind its end, and empties it.
void Wipe(platform::Text& sText) noexcept;

/// Wipes a text at the end of the scope, however that is left.
class WipeAtEnd {
 public:
  explicit WipeAtEnd(platform::Text& sText) : m_sText(sText) {}
  WipeAtEnd(const WipeAtEnd&) = delete;
  WipeAtEnd& operator=(const WipeAtEnd&) = delete;
  ~WipeAtEnd() { Wipe(m_sText); }

 private:
  platform::Text& m_sText;
};

}  // namespace orvane::ado
