// Whether a log file that came with a document is written. A document may come from anybody, and
// its options name any file; so the user is asked, once for each file while the document is open.
// What he entered himself since is not asked about. A log that cannot be written is left out and
// told. Reviewed on the user-interface thread; the answers are read on any.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <vector>

#include "ado/connection_review.h"
#include "platform/failure.h"

namespace orvane::console {

class LogFileConsent final : public ado::ConnectionReview {
 public:
  /// Asks the user whether that file may be written.
  using Question = std::function<platform::Boolean(const platform::Text& sFile)>;

  /// Tells the user what became of a log file.
  using Notice = std::function<void(const platform::Failure& failure)>;

  /// Without a question nothing that came with a document is written.
  explicit LogFileConsent(Question question = {}, Notice notice = {})
      : m_question(std::move(question)), m_notice(std::move(notice)) {}

  /// There is another document, with these texts in it as it was read; all answers are forgotten.
  void DocumentOpened(std::vector<platform::Text> sTexts);

  /// Asks about the log file of the settings if it came with the document, would be written, and
  /// was not asked about.
  void Review(const ado::ConnectionSettings& settings) override;
  /// True for a file that came with the document and to which the user has not said yes.
  platform::Boolean IsRefused(const platform::Text& sFile) const;
  /// The connection that is being opened leaves the log out, because it cannot be written.
  void LeftOut(const platform::Text& sFile, const platform::Failure& why);
  /// Tells of a log that was left out, each time that it is.
  void Opened(const ado::ConnectionSettings& settings) override;

 private:
  platform::Boolean CameWithDocument(const platform::Text& sFile) const;

  Question m_question;
  Notice m_notice;
  mutable std::mutex m_mutex;
  std::vector<platform::Text> m_sTexts;
  std::map<platform::Text, platform::Boolean> m_answers;
  std::map<platform::Text, platform::Failure> m_leftOut;
};

}  // namespace orvane::console
