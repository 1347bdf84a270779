// What SQLite's error codes mean to the rest of the system: a number, and a sentence.
// Used by the engine wherever SQLite refuses something. Pure functions, on any thread,
// but where a database is given.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/failure.h"

struct sqlite3;

namespace orvane::provider::engines {

/// What of an extended result code is the primary one.
constexpr int kPrimaryCode = 0xFF;

/// True for a result code that says that another connection holds what is needed.
bool IsHeldByOthers(int nCode) noexcept;

/// True for what the system says where there is no room: of the disk, of a quota or of a file.
bool IsNoRoom(int nSystemError) noexcept;

/// The result code with what the system said at the time: where a file could not be read, written
/// or opened because there is no room, that is SQLITE_FULL.
int WithSystemError(int nCode, int nSystemError) noexcept;

/// The same of a code that a call on the database has just given.
int WithSystemError(sqlite3* database, int nCode);

/// The failure number for a primary or extended result code; 0 for the codes of success.
platform::Long FailureNumberOf(int nCode) noexcept;

/// The sentence for a code. The subject is what the statement worked on, as it stands at the
/// beginning of a sentence ("The catalog \"Machine\""); the detail is SQLite's own message, the
/// place that of the character, from 1, which it is about, or 0.
platform::Text SentenceOf(int nCode, std::string_view sSubject, std::string_view sDetail,
                          std::size_t nPlace = 0);

/// Number, sentence, source and native error in one.
platform::Failure FailureOf(int nCode, std::string_view sSubject, std::string_view sDetail,
                            platform::Text sSql = {}, std::size_t nPlace = 0);

}  // namespace orvane::provider::engines
