#include "console/data_access/unlogged_session.h"

#include <utility>

#include "platform/ado/extended_options.h"
#include "platform/case_folding.h"

namespace orvane::console {

using platform::Text;
using platform::Value;

namespace {

bool IsLogFile(const Text& sName) {
  return platform::FoldCase(sName) == platform::FoldCase(platform::kLogFileOption);
}

}  // namespace

ado::StatementResult UnloggedSession::Execute(const ado::Statement& statement,
                                              std::stop_token stop) {
  return m_session->Execute(statement, std::move(stop));
}

platform::RecordsetPtr UnloggedSession::OpenSchema(platform::SchemaNumber schema,
                                                   std::span<const Value> vtRestrictions,
                                                   std::stop_token stop) {
  return m_session->OpenSchema(schema, vtRestrictions, std::move(stop));
}

Value UnloggedSession::PropertyValue(const Text& sName) const {
  return m_sLogFile && IsLogFile(sName) ? Value(*m_sLogFile) : m_session->PropertyValue(sName);
}

void UnloggedSession::PropertyValue(const Text& sName, const Value& vtValue) {
  m_session->PropertyValue(sName, vtValue);
  if (IsLogFile(sName)) m_sLogFile.reset();
}

}  // namespace orvane::console
