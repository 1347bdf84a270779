#include "console/data_access/log_file_consent.h"

#include <algorithm>
#include <optional>

#include "platform/ado/extended_options.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Boolean;
using platform::Text;

namespace {

// A level that is no number keeps the connection from being opened.
Boolean IsWritten(const ado::ConnectionSettings& settings) {
  try {
    return platform::ToLong(settings.Find(platform::kLogLevelOption).value_or("0")) != 0;
  } catch (const platform::Failure&) {
    return false;
  }
}

}  // namespace

void LogFileConsent::DocumentOpened(std::vector<Text> sTexts) {
  const std::lock_guard lock(m_mutex);
  m_sTexts = std::move(sTexts);
  m_answers.clear();
}

void LogFileConsent::Review(const ado::ConnectionSettings& settings) {
  const Text sFile = settings.Find(platform::kLogFileOption).value_or(Text());
  if (sFile.empty() || !IsWritten(settings)) return;
  {
    const std::lock_guard lock(m_mutex);
    if (!CameWithDocument(sFile) || m_answers.contains(sFile)) return;
  }
  const Boolean bAnswer = m_question && m_question(sFile);
  const std::lock_guard lock(m_mutex);
  m_answers[sFile] = bAnswer;
}

Boolean LogFileConsent::IsRefused(const Text& sFile) const {
  const std::lock_guard lock(m_mutex);
  if (sFile.empty() || !CameWithDocument(sFile)) return false;
  const auto answer = m_answers.find(sFile);
  return answer == m_answers.end() || !answer->second;
}

void LogFileConsent::LeftOut(const Text& sFile, const platform::Failure& why) {
  const std::lock_guard lock(m_mutex);
  m_leftOut.insert_or_assign(sFile, why);
}

void LogFileConsent::Opened(const ado::ConnectionSettings& settings) {
  const Text sFile = settings.Find(platform::kLogFileOption).value_or(Text());
  std::optional<platform::Failure> why;
  {
    const std::lock_guard lock(m_mutex);
    if (const auto left = m_leftOut.extract(sFile); !left.empty()) why = left.mapped();
  }
  if (!why || !m_notice) return;
  m_notice({why->Number(),
            why->Description() +
                " The server is connected without a log: put that right, then disconnect the "
                "server and connect it again.",
            why->Source(), why->NativeError()});
}

// The items of a connection string are put side by side as they stand, so the value of one lies
// within one text of the document.
Boolean LogFileConsent::CameWithDocument(const Text& sFile) const {
  return std::ranges::any_of(m_sTexts,
                             [&](const Text& sText) { return sText.find(sFile) != Text::npos; });
}

}  // namespace orvane::console
