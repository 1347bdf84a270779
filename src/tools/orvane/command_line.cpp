#include "tools/orvane/command_line.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <limits>

#include "tools/orvane/statuses.h"

namespace orvane::tools {

namespace {

constexpr int kMostDescriptors = 1'000'000;

CLI::App* AddCommand(CLI::App& line, Arguments& arguments, Command command, const char* sName,
                     const char* sWhat) {
  CLI::App* const added = line.add_subcommand(sName, sWhat);
  added->callback([&arguments, command] { arguments.command = command; });
  added->fallthrough();
  added->add_option("DOCUMENT", arguments.sDocument, "the console document")->required();
  return added;
}

void AddJson(CLI::App* command, Arguments& arguments) {
  command->add_flag("--json", arguments.bJson, "as one JSON object");
}

void AddLogon(CLI::App* command, Arguments& arguments) {
  command
      ->add_option("--user", arguments.logon.sUser, "log on as this user (default: the document's)")
      ->type_name("NAME");
  command
      ->add_option("--password-fd", arguments.logon.nPasswordFile,
                   "read the password from the first line of this file descriptor (default: ask on "
                   "the terminal, where the server wants one)")
      ->type_name("N")
      ->check(CLI::Range(0, kMostDescriptors));
}

void AddRows(CLI::App* command, Arguments& arguments) {
  AddLogon(command, arguments);
  const auto form = [&](const char* sName, RowForm form, const char* sWhat) {
    return command->add_flag_callback(
        sName, [&arguments, form] { arguments.rows.form = form; }, sWhat);
  };
  CLI::Option* const text = form("--text", RowForm::Text, "as aligned text (default)");
  CLI::Option* const csv = form("--csv", RowForm::Csv, "as comma-separated values");
  CLI::Option* const jsonl = form("--jsonl", RowForm::JsonLines, "as JSON, an object a line");
  CLI::Option* const sql = form("--sql", RowForm::Sql, "as SQL statements that insert them");
  text->excludes(csv)->excludes(jsonl)->excludes(sql);
  csv->excludes(jsonl)->excludes(sql);
  jsonl->excludes(sql);
  command
      ->add_option("--limit", arguments.rows.lLimit,
                   "so many rows at most, 0 for all (default: the document's)")
      ->type_name("N")
      ->check(CLI::Range(0, std::numeric_limits<platform::Long>::max()));
  command
      ->add_option("--timeout", arguments.rows.lTimeout,
                   "so many seconds at most, 0 for ever (default: the document's)")
      ->type_name("N")
      ->check(CLI::Range(0, std::numeric_limits<platform::Long>::max()));
}

/// Fails unless the range means something.
void CheckRange(const controls::TimeRange& range) {
  const zones::TimeZone zone;
  const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
  const auto read = controls::ReadTimeRange(range, {zone, now});
  if (const auto* const wrong = std::get_if<controls::TimeRangeError>(&read)) {
    throw Ending(kWrongUse, wrong->sSentence);
  }
}

void AddRange(CLI::App* command, Arguments& arguments) {
  const auto range = [&arguments]() -> controls::TimeRange& {
    auto& wanted = arguments.rows.range;
    return wanted ? *wanted : wanted.emplace();
  };
  const auto set = [range](platform::Text controls::TimeRange::*end) {
    return [range, end](const std::string& sTime) { range().*end = sTime; };
  };
  CLI::Option* const from = command->add_option_function<std::string>(
      "--from", set(&controls::TimeRange::sFrom), "rows of this time and later");
  CLI::Option* const to = command->add_option_function<std::string>(
      "--to", set(&controls::TimeRange::sTo), "rows of this time and before");
  from->type_name("TIME");
  to->type_name("TIME");
  command
      ->add_option_function<std::string>(
          "--last",
          [range](const std::string& sSpan) {
            range() = {"*-" + sSpan, "*"};
          },
          "rows of the last SPAN, such as 1h or 30m")
      ->type_name("SPAN")
      ->excludes(from)
      ->excludes(to);
  command->callback([&arguments] {
    arguments.command = Command::Rows;
    if (arguments.rows.range) CheckRange(*arguments.rows.range);
  });
}

}  // namespace

void Describe(CLI::App& line, Arguments& arguments) {
  line.description("Works on console documents and their servers without a window.");
  line.set_version_flag("--version", ORVANE_VERSION);
  line.require_subcommand(1);
  line.add_option("--registry", arguments.registry,
                  "a folder of registered components to look in first")
      ->type_name("DIR");
  AddCommand(line, arguments, Command::Check, "check",
             "read a document whole and tell the first line that is wrong");
  AddCommand(line, arguments, Command::Seal, "seal",
             "write new seals into a document that was edited or merged by hand");
  AddJson(AddCommand(line, arguments, Command::Tree, "tree",
                     "print the servers, catalogs, tables and queries that a document keeps"),
          arguments);
  AddJson(AddCommand(line, arguments, Command::Options, "options",
                     "print the options that a document keeps"),
          arguments);

  const char* const sPath = "the table, as SERVER/CATALOG/TABLE";
  auto* const rows = AddCommand(line, arguments, Command::Rows, "rows",
                                "print the rows of a table, as its grid would show them");
  rows->add_option("PATH", arguments.sServer, sPath)->required();
  AddRows(rows, arguments);
  AddRange(rows, arguments);
  auto* const query = AddCommand(line, arguments, Command::Query, "query",
                                 "print the rows of one of a server's queries");
  query->add_option("SERVER", arguments.sServer, "the server")->required();
  query->add_option("NAME", arguments.sQuery, "the query")->required();
  auto* const sql = AddCommand(line, arguments, Command::Sql, "sql",
                               "run the SQL statement on the standard input");
  sql->add_option("SERVER", arguments.sServer, "the server")->required();
  sql->add_option("INPUT", arguments.sQuery, "-, for the standard input")
      ->required()
      ->check(CLI::IsMember({"-"}));
  for (auto* const command : {query, sql}) {
    AddRows(command, arguments);
    command->add_flag("--change", arguments.rows.bChange, "let the statement change data");
  }
  auto* const structure =
      AddCommand(line, arguments, Command::Structure, "structure", "print the columns of a table");
  structure->add_option("PATH", arguments.sServer, sPath)->required();
  AddLogon(structure, arguments);
  AddJson(structure, arguments);
}

}  // namespace orvane::tools
