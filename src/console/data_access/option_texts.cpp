#include "console/data_access/option_texts.h"

#include <algorithm>

#include "platform/ado/extended_options.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Text;

void OptionTexts::Note(const ado::Session& session) {
  Text sText;
  try {
    sText = platform::ExtendedOptionsText(
        [&](const char* sName) { return session.PropertyValue(sName); });
  } catch (const platform::Failure&) {
    // Such a server cannot be saved while it is connected, so there is no text to know.
    return;
  }
  const std::lock_guard lock(m_mutex);
  if (std::find(m_texts.begin(), m_texts.end(), sText) == m_texts.end()) {
    m_texts.push_back(std::move(sText));
  }
}

std::vector<Text> OptionTexts::All() const {
  const std::lock_guard lock(m_mutex);
  return m_texts;
}

}  // namespace orvane::console
