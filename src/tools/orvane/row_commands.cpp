#include "tools/orvane/row_commands.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <thread>
#include <utility>

#include "access/schema_browsing.h"
#include "controls/statements/connection_zone.h"
#include "exports/aligned_lines.h"
#include "platform/case_folding.h"
#include "platform/one_line.h"
#include "tools/orvane/progress.h"
#include "tools/orvane/row_file.h"
#include "tools/orvane/row_output.h"
#include "tools/orvane/screen.h"
#include "tools/orvane/statuses.h"
#include "tools/orvane/tree_commands.h"

namespace orvane::tools {

using platform::Text;

namespace {

exports::WriterOptions OptionsFor(const RowSource& source, const RowWishes& wishes) {
  exports::WriterOptions options = wishes.writer;
  options.zone = controls::ZoneOf(source.cn);
  options.sInto = source.sInto;
  return options;
}

}  // namespace

exports::Form FormOfFile(const Text& sFile) {
  const Text sSuffix = platform::FoldCase(std::filesystem::path(sFile).extension().string());
  if (sSuffix == ".jsonl") return exports::Form::JsonLines;
  if (sSuffix == ".sql") return exports::Form::Sql;
  if (sSuffix == ".txt") return exports::Form::AlignedText;
  return exports::Form::Csv;
}

void PrintRows(const ServerAccess& access, const RowSource& source, const RowWishes& wishes,
               Output& output) {
  RowOutput rows(OptionsFor(source, wishes), output);
  Running running = wishes.running;
  // On a screen the rows themselves show how far it is.
  running.bProgress = isatty(STDOUT_FILENO) == 0;
  EndUnlessAll(Fetch(access.Host(), source, running, rows));
}

void WatchRows(const ServerAccess& access, const RowSource& source, const RowWishes& wishes,
               const Repetition& repetition, Output& output) {
  for (platform::Long lTime = 1;; ++lTime) {
    output.Hold(true);
    RowOutput rows(OptionsFor(source, wishes), output);
    const Fetched fetched = Fetch(access.Host(), source, wishes.running, rows);
    if (fetched.bCut) {
      output.Buffer() += "(the first " + RowsInWords(fetched.rows) + " only)\n";
    }
    output.Hold(false);
    if (const auto size = SizeOfScreen(STDOUT_FILENO)) {
      output.Buffer() = ScreenAnew(output.Buffer(), *size);
    } else if (lTime > 1) {
      output.Buffer().insert(0, "\n");
    }
    output.Flush();
    if (lTime == repetition.lTimes) return EndUnlessAll(fetched);
    std::this_thread::sleep_for(repetition.pause);
  }
}

void ExportRows(const ServerAccess& access, const RowSource& source, const RowWishes& wishes,
                const Text& sFile, Output& output) {
  RowFile rows(OptionsFor(source, wishes), sFile);
  Running running = wishes.running;
  running.bProgress = true;
  const Fetched fetched = Fetch(access.Host(), source, running, rows);
  if (!fetched.bRows) {
    throw Ending(kNothingFound, "The statement gives no rows to be exported.");
  }
  const Text sPath = rows.Done()->path.string();
  output.Write("Exported " + RowsInWords(fetched.rows) + " to " + platform::OneLine(sPath) + ".\n");
  output.Flush();
  EndUnlessAll(fetched);
}

void PrintStructure(const ServerAccess& access, const Text& sPath, bool bJson, Output& output) {
  const auto found = access.FindTable(sPath);
  const platform::TableQuery& query = *found.table->Query();
  Text& sOut = output.Buffer();
  exports::AlignedLines lines({false, false, false, false});
  if (bJson) {
    sOut += "{\"columns\":[";
  } else {
    lines.Add({"Column name", "Data type", "Is nullable?", "Key"}, sOut);
  }
  const char* sComma = "";
  access::ForEachStructureRow(
      found.cn, query.Catalog(), query.Table(), [&](const access::TableStructureRow& row) {
        const bool bNullable = row.nullable();
        if (!bJson) {
          return lines.Add({platform::OneLine(row.sColumn), platform::OneLine(row.sTypeName),
                            bNullable ? "yes" : "no", row.bKey ? "yes" : "no"},
                           sOut);
        }
        sOut.append(std::exchange(sComma, ",")).append("{\"column\":");
        AppendJson(sOut, row.sColumn);
        sOut += ",\"type\":";
        AppendJson(sOut, row.sTypeName);
        sOut.append(",\"nullable\":").append(bNullable ? "true" : "false");
        sOut.append(",\"key\":").append(row.bKey ? "true" : "false").append("}");
      });
  if (bJson) sOut += "]}\n";
  lines.End(sOut);
}

}  // namespace orvane::tools
