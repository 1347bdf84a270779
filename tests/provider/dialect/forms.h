// Conditions over the hours of a plant with what is expected of them: the rows that they choose, or
// how they are refused.
#pragma once

#include "tests/provider/dialect/plant.h"

namespace orvane::provider::dialect {

struct Form {
  const char* sCondition;
  const char* sHours;  ///< such as "0-4" or "0,5"
};

inline platform::Text Expanded(const platform::Text& sHours) {
  platform::Text sAll;
  for (std::size_t i = 0; i < sHours.size();) {
    std::size_t nRead = 0;
    const int nFirst = std::stoi(sHours.substr(i), &nRead);
    i += nRead;
    int nLast = nFirst;
    if (i < sHours.size() && sHours[i] == '-') {
      nLast = std::stoi(sHours.substr(i + 1), &nRead);
      i += nRead + 1;
    }
    for (int n = nFirst; n <= nLast; ++n) sAll += std::to_string(n) + " ";
    if (i < sHours.size()) ++i;
  }
  return sAll;
}

class Forms : public Plant {
 protected:
  // The same condition chooses the same rows to be read, changed and deleted.
  void Check(const Form& form) {
    const platform::Text sCondition = form.sCondition;
    const platform::Text sExpected = Expanded(form.sHours);
    try {
      EXPECT_EQ(Hours(sCondition), sExpected) << sCondition;
      Run("UPDATE Plant1..Data AS d SET Status = 'Hit' WHERE " + sCondition);
      EXPECT_EQ(Hours("Status = 'Hit'"), sExpected) << "UPDATE " << sCondition;
      Run("DELETE FROM Plant1..Data AS d WHERE " + sCondition);
      EXPECT_EQ(OnOneLine(Run("SELECT CAST(Value AS INTEGER) FROM Plant1..Copy WHERE Timestamp NOT "
                              "IN (SELECT Timestamp FROM Plant1..Data) ORDER BY Value")),
                sExpected)
          << "DELETE " << sCondition;
      // What was changed was deleted, so all are as they were.
      Run("INSERT OR IGNORE INTO Plant1..Data SELECT * FROM Plant1..Copy");
    } catch (const platform::Failure& failed) {
      ADD_FAILURE() << sCondition << ": " << failed.Description();
    }
  }
  void CheckRefused(const Form& form) {
    const platform::Text sCondition = form.sCondition;
    for (const platform::Text& sHead :
         {platform::Text("SELECT * FROM Plant1..Data AS d WHERE "),
          platform::Text("UPDATE Plant1..Data AS d SET Status = 'Hit' WHERE "),
          platform::Text("DELETE FROM Plant1..Data AS d WHERE ")}) {
      const platform::Text sFailure = Failing(sHead + sCondition);
      EXPECT_EQ(sFailure.substr(0, std::strlen(form.sHours)), form.sHours)
          << sHead << sCondition << "\n"
          << sFailure;
    }
    EXPECT_EQ(Hours("Status = 'Good'"), Expanded("0-23")) << sCondition;
  }
};

}  // namespace orvane::provider::dialect
