// The one failure type of the system. Model and server access let it travel;
// the console's event handlers catch it in one guard and show its description.
#pragma once

#include <exception>
#include <utility>

#include "platform/types.h"

namespace orvane::platform {

/// Numbers a failure can carry. A caller decides by number only where the comment says so;
/// everyone else shows the description.
namespace failure {

constexpr Long kInvalidArgument = 5;  ///< mend the input (also: a key that is not present)
constexpr Long kOverflow = 6;         ///< mend the input: outside the 32-bit range
constexpr Long kOutOfRange = 9;       ///< mend the input: a position outside 1..count
constexpr Long kTypeMismatch = 13;    ///< mend the input: not a value of the wanted kind
constexpr Long kObjectNotSet = 91;    ///< our own state: no connection, no current object
constexpr Long kKeyExists = 457;      ///< mend the input: the key is already in the collection
constexpr Long kItemNotFound = 3265;  ///< a name that the collection of fields or properties lacks
constexpr Long kNoCurrentRow = 3021;  ///< the recordset is before its first or after its last row
constexpr Long kObjectClosed = 3704;  ///< reconnect: the connection or recordset is closed
constexpr Long kObjectOpen = 3705;    ///< the connection is already open
constexpr Long kProviderNotFound = 3706;  ///< mend the connection string or register the provider
constexpr Long kCancelled = 3712;         ///< the user cancelled; nothing is wrong
constexpr Long kServerNotFound = 3800;    ///< mend the data source
constexpr Long kNoRights = 3801;  ///< mend the rights on the server's files, or log on as another
constexpr Long kNotADatabase = 3802;  ///< the catalog's file is damaged or foreign
constexpr Long kBusy = 3803;          ///< retry: another program holds a lock
constexpr Long kTimeout = 3804;       ///< retry with a narrower query or a longer time-out
constexpr Long kSqlError = 3805;      ///< mend the statement
constexpr Long kConstraint = 3806;    ///< mend the row: a rule of the table refused it
constexpr Long kStorage = 3807;       ///< stop: disk full or input/output error
constexpr Long kNotSupported = 3808;  ///< the provider or component cannot do this
constexpr Long kComponent = 3809;     ///< a component cannot be loaded, created or used
constexpr Long kDocument = 3810;      ///< a document cannot be read or written
constexpr Long kWouldChange = 3811;   ///< ask: a statement that was only to read would change data
constexpr Long kConflict = 3812;      ///< ask: the rows to change are not what they were; undone

/// True of a failure that says that the server cannot be reached any more: connecting again may
/// help, and nothing else.
constexpr bool IsLostConnection(Long lNumber) {
  return lNumber == kObjectClosed || lNumber == kServerNotFound;
}

}  // namespace failure

/// A failure with a number, a description fit to be shown, and for the log its source,
/// the native error of whatever raised it and the SQL text that was running.
class Failure : public std::exception {
 public:
  Failure(Long lNumber, Text sDescription, Text sSource = {}, Long lNativeError = 0,
          Text sSqlText = {})
      : m_lNumber(lNumber),
        m_lNativeError(lNativeError),
        m_sDescription(std::move(sDescription)),
        m_sSource(std::move(sSource)),
        m_sSqlText(std::move(sSqlText)) {}

  Long Number() const noexcept { return m_lNumber; }
  /// One clear sentence: what was wrong and what to do.
  const Text& Description() const noexcept { return m_sDescription; }
  const Text& Source() const noexcept { return m_sSource; }
  /// The error number of the database or the operating system, 0 when there is none.
  Long NativeError() const noexcept { return m_lNativeError; }
  const Text& SqlText() const noexcept { return m_sSqlText; }
  const char* what() const noexcept override { return m_sDescription.c_str(); }

 private:
  Long m_lNumber;
  Long m_lNativeError;
  Text m_sDescription;
  Text m_sSource;
  Text m_sSqlText;
};

}  // namespace orvane::platform
