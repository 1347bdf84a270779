#include "ado/secret.h"

namespace orvane::ado {

void Wipe(platform::Text& sText) noexcept {
  // Growing to the capacity allocates nothing and makes all of the room the text's own.
  sText.resize(sText.capacity());
  // Volatile, because the compiler may drop writes that nobody reads.
  volatile char* byte = sText.data();
  for (std::size_t i = 0; i < sText.size(); ++i) byte[i] = '\0';
  sText.clear();
}

}  // namespace orvane::ado
