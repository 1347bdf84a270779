#include "tools/orvane/line_parts.h"

#include <chrono>
#include <limits>

#include "tools/orvane/statuses.h"

namespace orvane::tools {

namespace {

constexpr int kMostDescriptors = 1'000'000;

/// Fails unless the range means something.
void CheckRange(const controls::TimeRange& range) {
  const zones::TimeZone zone;
  const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
  const auto read = controls::ReadTimeRange(range, {zone, now});
  if (const auto* const wrong = std::get_if<controls::TimeRangeError>(&read)) {
    throw Ending(kWrongUse, wrong->sSentence);
  }
}

void AddForm(CLI::App* command, Arguments& arguments) {
  const auto option = [&](const char* sName, exports::Form form, const char* sWhat) {
    return command->add_flag_callback(
        sName, [&arguments, form] { arguments.form = form; }, sWhat);
  };
  CLI::Option* const text = option("--text", exports::Form::AlignedText, "as aligned text");
  CLI::Option* const csv = option("--csv", exports::Form::Csv, "as comma-separated values");
  CLI::Option* const jsonl =
      option("--jsonl", exports::Form::JsonLines, "as JSON, an object a line");
  CLI::Option* const sql =
      option("--sql", exports::Form::Sql, "as SQL statements that insert them");
  text->excludes(csv)->excludes(jsonl)->excludes(sql);
  csv->excludes(jsonl)->excludes(sql);
  jsonl->excludes(sql);
  command
      ->add_option_function<std::string>(
          "--separator",
          [&arguments](const std::string& sName) {
            arguments.rows.writer.cSeparator = sName == "semicolon" ? ';'
                                               : sName == "tab"     ? '\t'
                                                                    : ',';
          },
          "between comma-separated values: comma (default), semicolon or tab")
      ->type_name("NAME")
      ->check(CLI::IsMember({"comma", "semicolon", "tab"}));
  command->add_flag_callback(
      "--no-names", [&arguments] { arguments.rows.writer.bNames = false; },
      "comma-separated values without the names of the columns");
}

}  // namespace

CLI::Validator NotEmpty() {
  return CLI::Validator(
      [](const std::string& sText) {
        return sText.empty() ? std::string("Nothing stands there") : std::string();
      },
      "");
}

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
  AddForm(command, arguments);
  command
      ->add_option("--limit", arguments.rows.running.lLimit,
                   "so many rows at most, 0 for all (default: the document's; export: all)")
      ->type_name("N")
      ->check(CLI::Range(0, std::numeric_limits<platform::Long>::max()));
  command
      ->add_option("--timeout", arguments.rows.running.lTimeout,
                   "so many seconds at most, 0 for ever (default: the document's; export: for "
                   "ever)")
      ->type_name("N")
      ->check(CLI::Range(0, std::numeric_limits<platform::Long>::max()));
}

void AddChange(CLI::App* command, Arguments& arguments) {
  command->add_flag("--change", arguments.rows.running.bChange, "let the statement change data");
}

void AddRange(CLI::App* app, Arguments& arguments, Command command) {
  const auto range = [&arguments]() -> controls::TimeRange& {
    auto& wanted = arguments.rows.range;
    return wanted ? *wanted : wanted.emplace();
  };
  const auto set = [range](platform::Text controls::TimeRange::*end) {
    return [range, end](const std::string& sTime) { range().*end = sTime; };
  };
  CLI::Option* const from = app->add_option_function<std::string>(
      "--from", set(&controls::TimeRange::sFrom), "rows of this time and later");
  CLI::Option* const to = app->add_option_function<std::string>(
      "--to", set(&controls::TimeRange::sTo), "rows of this time and before");
  from->type_name("TIME");
  to->type_name("TIME");
  app->add_option_function<std::string>(
         "--last",
         [range](const std::string& sSpan) {
           range() = {"*-" + sSpan, "*"};
         },
         "rows of the last SPAN, such as 1h or 30m")
      ->type_name("SPAN")
      ->excludes(from)
      ->excludes(to);
  app->callback([&arguments, command] {
    arguments.command = command;
    if (!arguments.rows.range) return;
    CheckRange(*arguments.rows.range);
    if (arguments.query) {
      throw Ending(kWrongUse,
                   "The statement of a query has its times in it; leave --last, --from and --to "
                   "away.");
    }
  });
}

}  // namespace orvane::tools
