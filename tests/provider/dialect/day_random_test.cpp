// Random texts that are made of dates, and what they are compared with, against the same texts made
// and compared outside.
#include <algorithm>
#include <functional>
#include <random>

#include "tests/provider/dialect/days.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

// A text of SQL and what it is in a row of that date.
struct Made {
  Text sSql;
  std::function<Text(const Text&)> text;
};

class day_random : public Days {
 protected:
  unsigned Below(unsigned nEnd) { return static_cast<unsigned>(m_random()) % nEnd; }

  // A text that is made of the date, and nothing else.
  Made Longer(const Made& of) {
    const auto in = [&](const Text& sBefore, const Text& sBehind) {
      return Made{sBefore + of.sSql + sBehind, of.text};
    };
    switch (Below(14)) {
      case 0:
        return in("CAST(", " AS TEXT)");
      case 1:
        return in("trim(", ")");
      case 2:
        return in("upper(lower(", "))");
      case 3:
        return in("printf('%s', ", ")");
      case 4:
        return in("json_extract(json_array(", "), '$[0]')");
      case 5:
        return in("(SELECT ", ")");
      case 6:
        return in("(SELECT group_concat(x) FROM (SELECT ", " AS x))");
      case 7:
        return in("(SELECT value FROM json_each(json_array(", ")))");
      case 8:
        return in("(SELECT x FROM (SELECT ", " || '' AS x))");
      case 9:
        return in("(SELECT max(x || '') FROM (SELECT ", " AS x))");
      case 10:
        return in("substr(coalesce(", ", NULL), 1)");
      case 11: {
        const auto n = 4 + Below(7);
        return {"substr(" + of.sSql + ", 1, " + std::to_string(n) + ")",
                [of, n](const Text& sDay) { return of.text(sDay).substr(0, n); }};
      }
      case 12:
        return {"(" + of.sSql + " || ' 12:00')",
                [of](const Text& sDay) { return of.text(sDay) + " 12:00"; }};
      default:
        return {"replace(" + of.sSql + ", '-', '')", [of](const Text& sDay) {
                  Text sText = of.text(sDay);
                  std::erase(sText, '-');
                  return sText;
                }};
    }
  }
  Made OfDay() {
    // A date as it stands is no text.
    Made made{"(Day || '')", [](const Text& sDay) { return sDay; }};
    for (auto n = Below(4); n > 0; --n) made = Longer(made);
    return made;
  }

  // As far as the shorter goes.
  static bool HaveOneFormat(const Text& sOne, const Text& sOther) {
    for (std::size_t i = 0; i < std::min(sOne.size(), sOther.size()); ++i) {
      const bool bDigit = sOne[i] >= '0' && sOne[i] <= '9';
      if (bDigit ? sOther[i] < '0' || sOther[i] > '9' : sOne[i] != sOther[i]) return false;
    }
    return true;
  }

  std::mt19937 m_random{20240515};
};

TEST_F(day_random, texts_of_days_compare_as_texts_or_not_at_all) {
  std::vector<std::pair<Text, Text>> days;
  for (int i = 0; i < 20; ++i) {
    const Text sId = std::to_string(i);
    Text sDay = Run("SELECT CAST(Day AS TEXT) FROM Plant1..Days WHERE Id = " + sId);
    sDay.pop_back();
    days.emplace_back(sId, sDay);
  }
  const char* const texts[] = {"2024-05-10", "2024-05", "2024", "20240510", "2024-05-14 11:00"};
  const char* const sAround[] = {"'{}'",
                                 "('{}')",
                                 "lower('{}')",
                                 "(SELECT '{}')",
                                 "coalesce(NULL, '{}')",
                                 "'{}' COLLATE NOCASE"};
  const char* const wrong[] = {"y",    "*", "*-1d", "t", "soon",   "a",        "31.12.2023",
                               "8:00", "8", "9",    "2", "14.05.", "5/10/2024"};
  int nRefused = 0;
  int nChosen = 0;
  for (int i = 0; i < 150; ++i) {
    const Made made = OfDay();
    const bool bWrong = Below(3) == 0;
    const Text sText = bWrong ? wrong[Below(std::size(wrong))] : texts[Below(std::size(texts))];
    Text sOther = sAround[Below(std::size(sAround))];
    sOther.replace(sOther.find("{}"), 2, sText);
    const bool bLess = Below(2) == 0;
    const Text sCondition = "Day IS NOT NULL AND " + made.sSql + (bLess ? " < " : " >= ") + sOther;
    if (bWrong) {
      ++nRefused;
      EXPECT_NE(Failing("DELETE FROM Plant1..Days WHERE " + sCondition), "no failure")
          << sCondition;
      continue;
    }
    Text sExpected;
    for (const auto& [sId, sDay] : days) {
      if ((made.text(sDay) < sText) == bLess) sExpected += sId + " ";
    }
    const Text sFailure = Failing("SELECT Id FROM Plant1..Days WHERE " + sCondition);
    // Of another format it may be refused, and chooses what is meant where it is not.
    if (!HaveOneFormat(made.text(days[0].second), sText) && sFailure != "no failure") continue;
    ++nChosen;
    EXPECT_EQ(sFailure, "no failure") << sCondition;
    EXPECT_EQ(Ids(sCondition), sExpected) << sCondition;
  }
  EXPECT_GT(nRefused, 30);
  EXPECT_GT(nChosen, 30);
  EXPECT_EQ(Count("Plant1..Days"), "21 ");
}

}  // namespace
}  // namespace orvane::provider::dialect
