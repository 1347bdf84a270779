// Servers with queries, and the dialog in which queries are typed.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {

inline constexpr const char* kNameTaken = "Query with the specified name already exists.";

struct Typed {
  platform::Text sName;
  platform::Text sSql;
};

class QueryTest : public SnapInTest {
 protected:
  /// Types each pair in turn and presses OK; when none is left, presses Cancel.
  void AnswerWith(std::vector<Typed> answers) {
    shown.clear();
    driver.forms->WhenShown("QueryDlg", [this, answers = std::move(answers),
                                         n = std::size_t{0}](fakes::FakeForm& form) mutable {
      shown.push_back({form.TextBox("m_txtName").Text(), form.TextBox("m_txtSqlStatement").Text()});
      if (n == answers.size()) return form.PressEscape();
      form.TextBox("m_txtName").Text(answers[n].sName);
      form.TextBox("m_txtSqlStatement").Text(answers[n].sSql);
      ++n;
      form.Button("m_btnOk").Click();
    });
  }
  void New(std::vector<Typed> answers) {
    AnswerWith(std::move(answers));
    driver.Click("m_mnuNewQuery", "S1.Queries");
  }
  void Edit(const Text& sQuery, std::vector<Typed> answers) {
    AnswerWith(std::move(answers));
    driver.Click("m_mnuEdit", "S1.Queries." + sQuery);
  }
  static std::vector<Text> Names(nodes::ServerNode& server) {
    std::vector<Text> names;
    for (const auto& query : server.QueryNodes()->NewEnum()) names.push_back(query->QueryName());
    return names;
  }
  std::vector<Typed> shown;  ///< what the dialog held each time it came up
};

}  // namespace orvane::snapin
