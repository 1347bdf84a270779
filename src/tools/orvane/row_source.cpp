#include "tools/orvane/row_source.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <system_error>

#include "controls/statements/sql_text.h"
#include "controls/statements/table_statement.h"
#include "controls/statements/time_column.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "tools/orvane/item_path.h"
#include "tools/orvane/progress.h"
#include "tools/orvane/statuses.h"

namespace orvane::tools {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr std::size_t kLongestStatement = std::size_t{1} << 26;

bool IsBlank(const Text& sText) {
  return sText.find_first_not_of(" \t\r\n") == Text::npos;
}

}  // namespace

Text StandardInput() {
  Text sAll;
  char buffer[65536];
  for (;;) {
    const ssize_t n = read(STDIN_FILENO, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      throw Ending(kWrongUse, "The standard input cannot be read: " +
                                  std::generic_category().message(errno) + "; give it another.");
    }
    if (n == 0) return sAll;
    sAll.append(buffer, static_cast<std::size_t>(n));
    if (sAll.size() > kLongestStatement) {
      throw Ending(kWrongUse, "What stands on the standard input is too long for a statement.");
    }
  }
}

RowSource RowsOfTable(const ServerAccess& access, const Text& sPath,
                      const std::optional<controls::TimeRange>& range) {
  const auto found = access.FindTable(sPath);
  platform::TableQuery& query = *found.table->Query();
  controls::Viewing viewing;
  viewing.range = range;
  // As in the grid: with an order of its own the table needs none by its times.
  if (!query.SortCriterion() || range) {
    auto column = controls::TimeColumnOf(*found.cn, query.Catalog(), query.Table());
    viewing.timeColumn = std::move(column.name);
    viewing.bNullIsNewest = column.bNullIsNewest;
  }
  if (range && !viewing.timeColumn) {
    throw Ending(kWrongUse, "The table " + InSentence(query.Table()) +
                                " has no column of times; leave --last, --from and --to away.");
  }
  return {found.cn, controls::StatementOf(query, viewing),
          controls::TableInSql(query.Catalog(), query.Table()), query.MaxRows(),
          query.QueryTimeout()};
}

RowSource RowsOfQuery(const ServerAccess& access, const Text& sServer, const Text& sQuery) {
  const auto server = FindServer(access.Root(), sServer);
  const auto query = FindQuery(*server, sQuery);
  if (IsBlank(query->Query())) {
    throw Ending(kNothingFound, "The query " + InSentence(query->QueryName()) +
                                    " has no SQL statement; write one with \"orvane query edit\".");
  }
  return {access.Connect(*server), query->Query(), platform::QuotedName(query->QueryName()),
          access.Root().MaxRows(), access.Root().QueryTimeout()};
}

RowSource RowsOfStatement(const ServerAccess& access, const Text& sServer,
                          const std::function<Text()>& statement) {
  const auto cn = access.Connect(*FindServer(access.Root(), sServer));
  const Text sSql = statement();
  if (IsBlank(sSql)) {
    throw Ending(kWrongUse, "There is no SQL statement on the standard input; write one there.");
  }
  return {cn, sSql, platform::QuotedName("Rows"), access.Root().MaxRows(),
          access.Root().QueryTimeout()};
}

Fetched Fetch(DataHost& host, const RowSource& source, const Running& running, RowTarget& target) {
  Progress progress(running.bProgress);
  Fetched fetched;
  fetched.lLimit = std::max(0, running.lLimit.value_or(source.lLimit));
  const auto command = host.CreateCommand();
  command->ActiveConnection(source.cn);
  command->CommandText(source.sSql);
  command->MaxRecords(fetched.lLimit);
  command->CommandTimeout(std::max(0, running.lTimeout.value_or(source.lTimeout)));
  command->ReadOnly(!running.bChange);
  command->Sink([&](const platform::RecordsetPtr& rs) {
    target.Rows(*rs);
    progress.Rows(target.Count());
  });
  platform::RecordsetPtr rs;
  try {
    rs = command->Execute(&fetched.lChanged);
  } catch (const Failure& failed) {
    if (failed.Number() != failure::kWouldChange) throw;
    throw Ending(kRefused,
                 "The statement changes data and has not been run; give --change if that is what "
                 "is wanted.");
  }
  fetched.bCut = rs->State() == platform::FetchState::Truncated;
  fetched.bRows = rs->FieldCount() > 0;
  target.End(*rs, fetched.bCut);
  fetched.rows = target.Count();
  return fetched;
}

void EndUnlessAll(const Fetched& fetched) {
  if (!fetched.bRows) {
    std::cerr << "Changed " << RowsInWords(std::max(0, fetched.lChanged)) << ".\n";
  } else if (fetched.bCut) {
    throw Ending(kCut, "These are the first " + RowsInWords(fetched.rows) +
                           " only, as the row limit is " + std::to_string(fetched.lLimit) +
                           "; --limit 0 gives all.");
  } else if (fetched.rows == 0) {
    throw Ending(kNothingFound, "No rows were found.");
  }
}

}  // namespace orvane::tools
