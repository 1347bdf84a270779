// What SQLite's error codes mean to the rest of the system: a number, and a sentence.
// Used by the engine wherever SQLite refuses something. Pure functions, on any thread.
#pragma once

#include <string_view>

#include "platform/failure.h"

namespace orvane::provider::engines {

/// The failure number for a primary or extended result code; 0 for the codes of success.
platform::Long FailureNumberOf(int nCode) noexcept;

/// The sentence for a code. The subject is what the statement worked on, as it stands at the
/// beginning of a sentence ("The catalog \"Machine\""); the detail is SQLite's own message.
platform::Text SentenceOf(int nCode, std::string_view sSubject, std::string_view sDetail);

/// Number, sentence, source and native error in one.
platform::Failure FailureOf(int nCode, std::string_view sSubject, std::string_view sDetail,
                            platform::Text sSql = {});

}  // namespace orvane::provider::engines
