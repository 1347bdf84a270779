// The work that reading and translating one statement takes: counted, bounded, and ended when the
// command is to end.
// Made by the session for each statement; one thread at a time.
#pragma once

#include "provider/deadline.h"
#include "provider/dialect/statement_depth.h"

namespace orvane::provider::dialect {

class StatementWork {
 public:
  explicit StatementWork(Deadline deadline, std::size_t nMost = kMostSteps)
      : m_deadline(std::move(deadline)), m_nMost(nMost) {}

  /// To be called for whatever may be done very often: a token, an expression, a look at a table.
  /// Fails with failure::kSqlError when it was called too often, and at the deadline, to which it
  /// looks now and then.
  void Step() {
    if (m_nSteps++ % kStepsBetweenLooks == 0) m_deadline.Check();
    if (m_nSteps > m_nMost) FailTooMuch();
  }

 private:
  [[noreturn]] static void FailTooMuch();

  Deadline m_deadline;
  std::size_t m_nMost;
  std::size_t m_nSteps = 0;
};

}  // namespace orvane::provider::dialect
