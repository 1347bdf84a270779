#include "tools/orvane/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>

#include "tools/orvane/change_lines.h"
#include "tools/orvane/line_parts.h"
#include "tools/orvane/statuses.h"

namespace orvane::tools {

namespace {

constexpr const char* kTablePath = "the table, as SERVER/CATALOG/TABLE";

/// A table, or with --query one of a server's queries.
void AddSubject(CLI::App* command, Arguments& arguments) {
  command
      ->add_option("PATH", arguments.sServer,
                   "the table, as SERVER/CATALOG/TABLE; with --query the server")
      ->required();
  command->add_option("--query", arguments.query, "the query of that name instead of a table")
      ->type_name("NAME");
}

void DescribeDocuments(CLI::App& line, Arguments& arguments) {
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
}

void DescribeQuery(CLI::App& line, Arguments& arguments) {
  auto* const query = AddCommand(line, arguments, Command::Query, "query",
                                 "print the rows of one of a server's queries; \"query add\", "
                                 "\"edit\", \"rename\" and \"remove\" change queries");
  query->add_option("SERVER", arguments.sServer, "the server")->required();
  query->add_option("NAME", arguments.sName, "the query")->required();
  AddRows(query, arguments);
  AddChange(query, arguments);
}

void DescribeRows(CLI::App& line, Arguments& arguments, bool bQueryVerbs) {
  auto* const rows = AddCommand(line, arguments, Command::Rows, "rows",
                                "print the rows of a table, as its grid would show them");
  rows->add_option("PATH", arguments.sServer, kTablePath)->required();
  AddRows(rows, arguments);
  AddRange(rows, arguments, Command::Rows);
  if (!bQueryVerbs) DescribeQuery(line, arguments);
  auto* const sql = AddCommand(line, arguments, Command::Sql, "sql",
                               "run the SQL statement on the standard input");
  sql->add_option("SERVER", arguments.sServer, "the server")->required();
  sql->add_option("INPUT", arguments.sName, "-, for the standard input")
      ->required()
      ->check(CLI::IsMember({"-"}));
  AddRows(sql, arguments);
  AddChange(sql, arguments);

  auto* const exported = AddCommand(line, arguments, Command::Export, "export",
                                    "write all rows of a table or query into a file");
  AddSubject(exported, arguments);
  exported
      ->add_option("FILE", arguments.sFile,
                   "the file; what it ends in (.csv, .jsonl, .sql, .txt) tells its form")
      ->required()
      ->check(NotEmpty());
  AddRows(exported, arguments);
  AddRange(exported, arguments, Command::Export);

  auto* const watch = AddCommand(line, arguments, Command::Watch, "watch",
                                 "print the rows of a table or query again and again");
  AddSubject(watch, arguments);
  AddRows(watch, arguments);
  AddRange(watch, arguments, Command::Watch);
  constexpr int kLongestPause = 86400;
  watch
      ->add_option_function<int>(
          "--every",
          [&arguments](int nSeconds) {
            arguments.repetition.pause = std::chrono::seconds(nSeconds);
          },
          "seconds between two times (default: 2)")
      ->type_name("N")
      ->check(CLI::Range(0, kLongestPause));
  watch->add_option("--times", arguments.repetition.lTimes, "end after so many times")
      ->type_name("N")
      ->check(CLI::Range(1, std::numeric_limits<platform::Long>::max()));

  auto* const structure =
      AddCommand(line, arguments, Command::Structure, "structure", "print the columns of a table");
  structure->add_option("PATH", arguments.sServer, kTablePath)->required();
  AddLogon(structure, arguments);
  AddJson(structure, arguments);
}

}  // namespace

void Describe(CLI::App& line, Arguments& arguments, bool bQueryVerbs) {
  line.description("Works on console documents and their servers without a window.");
  line.set_version_flag("--version", ORVANE_VERSION);
  line.footer(kStatusNotes);
  line.require_subcommand(1);
  line.add_option("--registry", arguments.registry,
                  "a folder of registered components to look in first")
      ->type_name("DIR");
  DescribeDocuments(line, arguments);
  DescribeRows(line, arguments, bQueryVerbs);
  DescribeChanges(line, arguments, bQueryVerbs);
}

bool HasQueryVerb(const std::vector<platform::Text>& line) {
  auto word = line.begin();
  for (; word != line.end() && word->starts_with("--"); ++word) {
    if (*word == "--registry" && word + 1 != line.end()) ++word;
  }
  if (word == line.end() || *word != "query" || word + 1 == line.end()) return false;
  const auto& verbs = QueryVerbs();
  return std::ranges::find(verbs, *(word + 1)) != verbs.end();
}

}  // namespace orvane::tools
