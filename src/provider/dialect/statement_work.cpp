#include "provider/dialect/statement_work.h"

#include "platform/failure.h"

namespace orvane::provider::dialect {

void StatementWork::FailTooMuch() {
  throw platform::Failure(platform::failure::kSqlError,
                          "The statement takes too much work to read; send it in parts.",
                          "ORVOLEDB");
}

}  // namespace orvane::provider::dialect
