// What tests do with a session, however it was opened.
#pragma once

#include "tests/provider/temporary_root.h"

namespace orvane::provider {

class SessionActs {
 protected:
  using Text = platform::Text;
  using Value = platform::Value;

  static ado::StatementResult Run(ado::Session& opened, const Text& sText,
                                  platform::Long lMaxRecords = 0) {
    return opened.Execute({sText, lMaxRecords, std::chrono::seconds(0)}, {});
  }
  static ado::StatementResult With(ado::Session& opened, const Text& sText,
                                   std::vector<Value> parameters) {
    ado::Statement statement{sText};
    statement.parameters = std::move(parameters);
    return opened.Execute(statement, {});
  }
  static Text Select(ado::Session& opened, const Text& sText) {
    return Rows(*Run(opened, sText).recordset);
  }
  static Text Failing(ado::Session& opened, const Text& sText) {
    return FailureOf([&] { Run(opened, sText); });
  }
  // A catalog Plant1 with one value each hour of the day before the fixed noon.
  static void FillPlant(ado::Session& opened) {
    Run(opened, "CREATE DATABASE \"Plant1\" ");
    Text sInsert = "INSERT INTO Plant1..Data (Tag, Timestamp, Value) VALUES ";
    for (int i = 0; i < 24; ++i) {
      const Text sHours = std::to_string(i);
      sInsert += (i == 0 ? "" : ", ") + ("('T1', '*-" + sHours + "h', " + sHours + ".5)");
    }
    Run(opened, sInsert);
  }
};

}  // namespace orvane::provider
