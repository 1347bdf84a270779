// orvane: works on console documents, and asks their servers, without a window. Results go to the
// standard output, sentences to the standard error; statuses.h has what it ends with.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <system_error>

#include "platform/told_failure.h"
#include "tools/manual/manual.h"
#include "tools/orvane/change_commands.h"
#include "tools/orvane/command_line.h"
#include "tools/orvane/document_commands.h"
#include "tools/orvane/statuses.h"
#include "tools/orvane/tree_commands.h"
#include "tools/terminal/standard_files.h"

namespace {

using namespace orvane;
using tools::Arguments;
using tools::ChangeCommands;
using tools::Command;
using tools::Output;
using tools::ServerAccess;
using HostPtr = std::shared_ptr<tools::DataHost>;

/// The form is that of the line, or else the usual one.
tools::RowWishes Wishes(const Arguments& arguments, exports::Form usual) {
  tools::RowWishes wishes = arguments.rows;
  wishes.writer.form = arguments.form.value_or(usual);
  return wishes;
}

void DoRows(const Arguments& arguments, const HostPtr& host, Output& output) {
  const ServerAccess access(tools::ReadModel(arguments.sDocument, host), host);
  const auto printed = Wishes(arguments, exports::Form::AlignedText);
  const auto subject = [&] {
    return arguments.query ? RowsOfQuery(access, arguments.sServer, *arguments.query)
                           : RowsOfTable(access, arguments.sServer, printed.range);
  };
  switch (arguments.command) {
    case Command::Query:
      return PrintRows(access, RowsOfQuery(access, arguments.sServer, arguments.sName), printed,
                       output);
    case Command::Sql:
      return PrintRows(access, RowsOfStatement(access, arguments.sServer, tools::StandardInput),
                       printed, output);
    case Command::Structure:
      return PrintStructure(access, arguments.sServer, arguments.bJson, output);
    case Command::Watch:
      return WatchRows(access, subject(), printed, arguments.repetition, output);
    case Command::Export: {
      auto wishes = Wishes(arguments, tools::FormOfFile(arguments.sFile));
      // As the grid does: all of them, however long that takes.
      wishes.running.lLimit = wishes.running.lLimit.value_or(0);
      wishes.running.lTimeout = wishes.running.lTimeout.value_or(0);
      return ExportRows(access, subject(), wishes, arguments.sFile, output);
    }
    default:
      return PrintRows(access, subject(), printed, output);
  }
}

void DoChange(const Arguments& arguments, const HostPtr& host, Output& output) {
  // Before anything is held: whoever types it may take long.
  const bool bStatement =
      arguments.command == Command::AddQuery || arguments.command == Command::EditQuery;
  const platform::Text sSql = bStatement ? tools::StatementOfQuery() : platform::Text();
  ChangeCommands change(arguments.sDocument, host, arguments.bConfirmed, output);
  const auto& sServer = arguments.sServer;
  const auto& sName = arguments.sName;
  switch (arguments.command) {
    case Command::AddServer:
      return change.AddServer(sServer);
    case Command::RemoveServer:
      return change.RemoveServer(sServer);
    case Command::CreateCatalog:
      return change.CreateCatalog(sServer, sName, arguments.sPath, arguments.lSize);
    case Command::AttachCatalog:
      return change.AttachCatalog(sServer, sName, arguments.sFile);
    case Command::RemoveCatalog:
      return change.RemoveCatalog(sServer, sName);
    case Command::AddQuery:
      return change.AddQuery(sServer, sName, sSql);
    case Command::EditQuery:
      return change.EditQuery(sServer, sName, sSql);
    case Command::RenameQuery:
      return change.RenameQuery(sServer, sName, arguments.sNewName);
    default:
      return change.RemoveQuery(sServer, sName);
  }
}

void Do(const Arguments& arguments, const HostPtr& host, Output& output) {
  const auto model = [&] { return tools::ReadModel(arguments.sDocument, host); };
  switch (arguments.command) {
    case Command::Check:
      return tools::Check(arguments.sDocument, host, output);
    case Command::Seal:
      return tools::Seal(arguments.sDocument, host, output);
    case Command::Tree:
      return tools::Tree(*model(), arguments.bJson, output);
    case Command::Options:
      return tools::Options(*model(), arguments.bJson, output);
    case Command::Rows:
    case Command::Query:
    case Command::Sql:
    case Command::Structure:
    case Command::Export:
    case Command::Watch:
      return DoRows(arguments, host, output);
    default:
      return DoChange(arguments, host, output);
  }
}

int Tell(const std::exception& exception, const tools::Interruption& interruption) {
  if (const auto* const ending = dynamic_cast<const tools::Ending*>(&exception)) {
    if (*ending->what() != '\0') std::cerr << "orvane: " << ending->what() << '\n';
    return ending->ExitStatus();
  }
  const auto told = platform::ToldFailure(exception, platform::failure::kComponent, "orvane");
  if (told.Number() == platform::failure::kCancelled) {
    if (const int nStatus = interruption.ExitStatus()) return nStatus;
  }
  std::cerr << "orvane: " << told.Description() << '\n';
  return tools::StatusOf(told.Number());
}

/// The line with the verbs of "query" beneath the command of that name.
tools::DescribedProgram Described() {
  Arguments unused;
  CLI::App line("", "orvane");
  tools::Describe(line, unused, false);
  CLI::App verbs("", "orvane");
  tools::Describe(verbs, unused, true);
  tools::DescribedProgram program{tools::CommandOf(line), ORVANE_VERSION, tools::kStatusNotes};
  const auto isQuery = [](const tools::DescribedCommand& command) {
    return command.sName == "query";
  };
  const tools::DescribedCommand withVerbs = tools::CommandOf(verbs);
  std::ranges::find_if(program.line.commands, isQuery)->commands =
      std::ranges::find_if(withVerbs.commands, isQuery)->commands;
  return program;
}

int Main(int argc, char** argv, const std::shared_ptr<tools::Interruption>& interruption) {
  if (const auto nTold = tools::ToldManual(argc, argv, Described)) return *nTold;
  Arguments arguments;
  CLI::App line("", "orvane");
  tools::Describe(line, arguments,
                  tools::HasQueryVerb(std::vector<platform::Text>(argv + 1, argv + argc)));
  try {
    line.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return line.exit(error);
    std::cerr << "orvane: " << error.what() << "; see orvane --help.\n";
    return tools::kWrongUse;
  }
  Output output;
  Do(arguments,
     std::make_shared<tools::DataHost>(arguments.registry, interruption, arguments.logon), output);
  output.Flush();
  return tools::kDone;
}

}  // namespace

int main(int argc, char** argv) {
  tools::HoldStandardFiles();
  // A reader that has gone is told by the write.
  signal(SIGPIPE, SIG_IGN);
  const auto interruption = std::make_shared<tools::Interruption>();
  try {
    return Main(argc, argv, interruption);
  } catch (const std::exception& exception) {
    return Tell(exception, *interruption);
  }
}
