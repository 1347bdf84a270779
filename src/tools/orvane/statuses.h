// How the program orvane ends, so that scripts can tell apart what happened. docs/user-guide.md
// tells what each means.
#pragma once

#include <exception>
#include <utility>

#include "platform/failure.h"

namespace orvane::tools {

enum Status : int {
  kDone = 0,
  kNothingFound = 1,
  kWrongUse = 2,
  kRefused = 3,
  kNoConnection = 4,
  kCut = 5,
  kDocumentUnusable = 6,
  kFailed = 7,
  kOutputClosed = 141,  ///< as a shell tells of a program that the closed pipe has ended
};

/// The same in words, behind the help and in the manual.
constexpr const char* kStatusNotes =
    "The exit status is 0 when it is done, 1 when nothing was found, 2 for a wrong use, 3 when the "
    "server refused it, 4 without a connection, 5 when the row limit cut the rows, 6 for a "
    "document "
    "that cannot be used, 7 when something else failed, 130 behind Ctrl+C, and 141 when nobody "
    "reads "
    "the output any more.";

/// The status for a failure of that number.
inline Status StatusOf(platform::Long lNumber) {
  namespace failure = platform::failure;
  if (failure::IsLostConnection(lNumber)) return kNoConnection;
  switch (lNumber) {
    case failure::kDocument:
      return kDocumentUnusable;
    case failure::kComponent:
    case failure::kProviderNotFound:
    case failure::kObjectNotSet:
      return kFailed;
    default:
      return kRefused;
  }
}

/// Ends the program with that status and, unless it is empty, that sentence.
class Ending : public std::exception {
 public:
  Ending(Status status, platform::Text sSentence)
      : m_status(status), m_sSentence(std::move(sSentence)) {}

  Status ExitStatus() const noexcept { return m_status; }
  const char* what() const noexcept override { return m_sSentence.c_str(); }

 private:
  Status m_status;
  platform::Text m_sSentence;
};

}  // namespace orvane::tools
