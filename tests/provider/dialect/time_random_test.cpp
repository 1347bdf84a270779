// Random conditions over stored times, against what they come to on the numbers of microseconds.
#include <functional>
#include <random>

#include "tests/provider/dialect/plant.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;
using Number = std::optional<std::int64_t>;

constexpr std::int64_t kNoon = 1715774400000000;
constexpr std::int64_t kHour = 3600000000;

// A text of SQL and what it comes to in the row of so many hours ago; none is null.
struct Sample {
  Text sSql;
  std::function<Number(int)> value;
};

class time_random : public Plant {
 protected:
  unsigned Below(unsigned nEnd) { return static_cast<unsigned>(m_random()) % nEnd; }

  // The same time in one of the ways in which it can be written.
  Sample Constant() {
    const int nAgo = static_cast<int>(Below(24));
    const Number time = kNoon - nAgo * kHour;
    const int nUtc = 36 - nAgo;  // hours since the day before began in UTC
    const auto clock = [](int nHours) {
      const Text sHour = std::to_string(nHours % 24);
      return Text(nHours < 24   ? "2024-05-14 "
                  : nHours < 48 ? "2024-05-15 "
                                : "2024-05-16 ") +
             (sHour.size() == 1 ? "0" : "") + sHour + ":00";
    };
    const Text sStep = "*-" + std::to_string(nAgo) + "h";
    const Text forms[] = {
        "'" + sStep + "'",
        "('" + sStep + "')",
        "'" + clock(nUtc + 2) + "'",
        "'" + clock(nUtc) + "Z'",
        "datetime('" + clock(nUtc) + "')",
        "strftime('%Y-%m-%d %H:%M', '" + clock(nUtc) + "')",
        "CAST('" + sStep + "' AS TIMESTAMP)",
        "'" + sStep + "' COLLATE NOCASE",
        "(SELECT '" + sStep + "')",
        "(SELECT datetime('" + clock(nUtc) + "'))",
        "printf('%s', '" + sStep + "')",
        "substr('" + sStep + "x', 1, " + std::to_string(sStep.size()) + ")",
        "(WITH w(x) AS (VALUES ('" + sStep + "')) SELECT x FROM w)",
        "(SELECT Timestamp FROM Plant1..Copy WHERE Value = " + std::to_string(nAgo) + ")"};
    return {forms[Below(std::size(forms))], [time](int) { return time; }};
  }
  Sample Column() {
    const char* const forms[] = {"Timestamp", "+d.Timestamp", "(\"timestamp\")", "Timestamp + 0",
                                 "likely(Timestamp)"};
    return {forms[Below(std::size(forms))],
            [](int nAgo) -> Number { return kNoon - nAgo * kHour; }};
  }
  Sample Operand(int nDepth) {
    const auto kind = Below(nDepth > 2 ? 3 : 8);
    if (kind == 0) return Constant();
    if (kind == 1) return Column();
    if (kind == 2) return {"NULL", [](int) { return Number(); }};
    const Sample a = Operand(nDepth + 1);
    const Sample b = Operand(nDepth + 1);
    if (kind == 3) {
      return {"coalesce(" + a.sSql + ", " + b.sSql + ")", [a, b](int nAgo) {
                const Number first = a.value(nAgo);
                return first ? first : b.value(nAgo);
              }};
    }
    if (kind == 4) {
      const int nBelow = static_cast<int>(Below(24));
      return {"CASE WHEN d.Value < " + std::to_string(nBelow) + " THEN " + a.sSql + " ELSE " +
                  b.sSql + " END",
              [a, b, nBelow](int nAgo) { return nAgo < nBelow ? a.value(nAgo) : b.value(nAgo); }};
    }
    if (kind == 5) {
      return {"nullif(" + a.sSql + ", " + b.sSql + ")", [a, b](int nAgo) {
                const Number first = a.value(nAgo);
                return first && first == b.value(nAgo) ? Number() : first;
              }};
    }
    const bool bMax = kind == 6;
    return {(bMax ? "max(" : "min(") + a.sSql + ", " + b.sSql + ")", [a, b, bMax](int nAgo) {
              const Number first = a.value(nAgo);
              const Number second = b.value(nAgo);
              if (!first || !second) return Number();
              return Number(bMax ? std::max(*first, *second) : std::min(*first, *second));
            }};
  }
  // What it comes to is 1, 0 or null. A stored time takes part, so that all are times.
  Sample Condition(int nDepth) {
    const Sample a = Column();
    const Sample b = Operand(0);
    switch (Below(nDepth > 2 ? 4 : 7)) {
      case 0: {
        const char* const operators[] = {"=", "<", "<=", ">", ">=", "<>"};
        const auto n = Below(6);
        const bool bTurned = Below(2) == 0;
        const Sample left = bTurned ? b : a;
        const Sample right = bTurned ? a : b;
        return {left.sSql + " " + operators[n] + " " + right.sSql, [left, right, n](int nAgo) {
                  const Number l = left.value(nAgo);
                  const Number r = right.value(nAgo);
                  if (!l || !r) return Number();
                  const bool results[] = {*l == *r, *l<*r, *l <= *r, *l> * r, *l >= *r, *l != *r};
                  return Number(results[n] ? 1 : 0);
                }};
      }
      case 1: {
        const Sample c = Operand(0);
        return {a.sSql + " BETWEEN " + b.sSql + " AND " + c.sSql, [a, b, c](int nAgo) {
                  const Number x = a.value(nAgo);
                  const Number low = b.value(nAgo);
                  const Number high = c.value(nAgo);
                  if ((low && *x < *low) || (high && *x > *high)) return Number(0);
                  return low && high ? Number(1) : Number();
                }};
      }
      case 2: {
        const Sample c = Constant();
        return {a.sSql + " IN (" + b.sSql + ", " + c.sSql + ")", [a, b, c](int nAgo) {
                  const Number x = a.value(nAgo);
                  if (x == b.value(nAgo) || x == c.value(nAgo)) return Number(1);
                  return b.value(nAgo) ? Number(0) : Number();
                }};
      }
      case 3:
        return {a.sSql + " IS " + b.sSql,
                [a, b](int nAgo) { return Number(a.value(nAgo) == b.value(nAgo) ? 1 : 0); }};
      case 4: {
        const Sample of = Condition(nDepth + 1);
        return {"NOT (" + of.sSql + ")", [of](int nAgo) {
                  const Number x = of.value(nAgo);
                  return x ? Number(1 - *x) : x;
                }};
      }
      default: {
        const bool bAnd = Below(2) == 0;
        const Sample l = Condition(nDepth + 1);
        const Sample r = Condition(nDepth + 1);
        return {"(" + l.sSql + (bAnd ? ") AND (" : ") OR (") + r.sSql + ")", [=](int nAgo) {
                  const Number x = l.value(nAgo);
                  const Number y = r.value(nAgo);
                  const Number decides = bAnd ? 0 : 1;
                  if (x == decides || y == decides) return decides;
                  return x && y ? Number(bAnd ? 1 : 0) : Number();
                }};
      }
    }
  }

  std::mt19937 m_random{20240515};
};

TEST_F(time_random, conditions_choose_what_they_come_to) {
  const char* const sRounds = std::getenv("ORVANE_ROUNDS");
  const int nRounds = sRounds != nullptr ? std::atoi(sRounds) : 300;
  for (int i = 0; i < nRounds; ++i) {
    const Sample condition = Condition(0);
    Text sExpected;
    for (int nAgo = 0; nAgo < 24; ++nAgo) {
      if (condition.value(nAgo) == Number(1)) sExpected += std::to_string(nAgo) + " ";
    }
    try {
      EXPECT_EQ(Hours(condition.sSql), sExpected) << condition.sSql;
    } catch (const platform::Failure& failed) {
      ADD_FAILURE() << condition.sSql << "\n" << failed.Description();
    }
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace orvane::provider::dialect
