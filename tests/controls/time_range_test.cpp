#include "controls/statements/time_range.h"

#include <gtest/gtest.h>

#include <random>

#include "zones/clock_input.h"

namespace orvane::controls {
namespace {

using platform::Text;
using platform::Timestamp;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

class time_range : public testing::Test {
 protected:
  static Timestamp At(int nYear, unsigned nMonth, unsigned nDay, hours h = hours(0),
                      minutes m = minutes(0)) {
    return date::sys_days(date::year{nYear} / date::month{nMonth} / date::day{nDay}) + h + m;
  }
  Text ErrorOf(const TimeRange& range) const {
    const auto read = ReadTimeRange(range, m_clock);
    const auto* error = std::get_if<TimeRangeError>(&read);
    return error ? (error->bTo ? "to: " : "from: ") + error->sSentence : "";
  }
  TimeSpan SpanOf(const TimeRange& range) const {
    return std::get<TimeSpan>(ReadTimeRange(range, m_clock));
  }
  /// "from|to", or "none".
  static Text Told(const std::optional<TimeRange>& range) {
    return range ? range->sFrom + "|" + range->sTo : "none";
  }

  zones::TimeZone m_zone = zones::TimeZone("Europe/Madrid");
  Clock m_clock{m_zone, At(2024, 5, 15, hours(12), minutes(30))};
};

TEST_F(time_range, means_moments_in_the_zone) {
  EXPECT_EQ(SpanOf({"*-1h", "*"}), (TimeSpan{m_clock.now - hours(1), m_clock.now}));
  EXPECT_EQ(SpanOf({"t", "t+1d"}),
            (TimeSpan{At(2024, 5, 14, hours(22)), At(2024, 5, 15, hours(22))}));
  EXPECT_EQ(SpanOf({" ", "*"}), (TimeSpan{std::nullopt, m_clock.now}));
  EXPECT_EQ(SpanOf({"", ""}), TimeSpan());
}

TEST_F(time_range, says_which_end_is_no_time_and_why) {
  EXPECT_EQ(ErrorOf({"*-1h", "*"}), "");
  EXPECT_EQ(ErrorOf({"yesteryear", "*"}), "from: The start is no time: + or - must follow.");
  EXPECT_EQ(ErrorOf({"*-1h", "2024-02-30"}), "to: The end is no time: there is no such date.");
  EXPECT_EQ(ErrorOf({"*", "*-1h"}), "to: The end lies before the start; put the later time last.");
}

TEST_F(time_range, is_a_condition_in_the_form_of_the_default_one) {
  EXPECT_EQ(ConditionOf({"*-1h", "*"}, "Timestamp"), "\"Timestamp\" BETWEEN '*-1h' AND '*'");
  EXPECT_EQ(ConditionOf({"*-1h", ""}, "Timestamp"), "\"Timestamp\" >= '*-1h'");
  EXPECT_EQ(ConditionOf({"", "t"}, "When \"it\""), "\"When \"\"it\"\"\" <= 't'");
  EXPECT_EQ(ConditionOf({"", ""}, "Timestamp"), "");
  EXPECT_EQ(ConditionOf({"' OR '1'='1", "*"}, "T"), "\"T\" BETWEEN ''' OR ''1''=''1' AND '*'");
}

TEST_F(time_range, is_found_in_a_condition_that_is_nothing_else) {
  EXPECT_EQ(Told(RangeIn("Timestamp BETWEEN '*-1h' AND '*'", "Timestamp")), "*-1h|*");
  EXPECT_EQ(Told(RangeIn("  \"Timestamp\"\n>=\t'*-1h' ", "Timestamp")), "*-1h|");
  EXPECT_EQ(Told(RangeIn("Timestamp <= 't'", "Timestamp")), "|t");
  EXPECT_EQ(Told(RangeIn("Timestamp between 'y' and 't'", "Timestamp")), "y|t");
}

TEST_F(time_range, is_not_found_in_any_other_condition) {
  for (const char* sCondition :
       {"", " ", "Value > 1", "Timestamp BETWEEN '*-1h' AND '*' OR 1=1", "Timestamp > '*'",
        "Timestamp BETWEEN '*-1h'", "Timestamp BETWEEN '*-1h' AND", "Timestamp",
        "TimestampX >= '*'", "Timestamp.x >= '*'", "Timestamp >= '*", "Timestamp >= 'it''s'",
        "Timestamp >= * ", "Timestamp2 >= '*'", "timestamp >= '*'", "Timestamp >= '*' -- since",
        "\"Timestamp >= '*'"}) {
    EXPECT_EQ(Told(RangeIn(sCondition, "Timestamp")), "none") << sCondition;
  }
  EXPECT_EQ(Told(RangeIn(" >= '*'", "")), "none");
}

TEST_F(time_range, what_it_writes_is_found_again) {
  for (const TimeRange& range : {TimeRange{"*-1h", "*"}, {"t", ""}, {"", "y+8h"}}) {
    EXPECT_EQ(RangeIn(ConditionOf(range, "a \"b\""), "a \"b\""), range);
  }
}

TEST_F(time_range, goes_back_and_forward_by_its_width) {
  EXPECT_EQ(Told(RangeBefore({"*-10m", "*"}, m_clock)), "2024-05-15 14:10:00|2024-05-15 14:20:00");
  EXPECT_EQ(Told(RangeBehind({"*-10m", "*"}, m_clock)), "2024-05-15 14:30:00|2024-05-15 14:40:00");
  const auto back = RangeBefore({"*-90m", "*"}, m_clock);
  ASSERT_TRUE(back);
  EXPECT_EQ(Told(RangeBehind(*back, m_clock)), "2024-05-15 13:00:00|2024-05-15 14:30:00");
}

TEST_F(time_range, days_stay_days_when_the_clocks_change) {
  EXPECT_EQ(Told(RangeBefore({"2024-04-01", "2024-04-02"}, m_clock)),
            "2024-03-31 00:00:00|2024-04-01 00:00:00");
  EXPECT_EQ(Told(RangeBefore({"2024-03-31", "2024-04-01"}, m_clock)),
            "2024-03-30 00:00:00|2024-03-31 00:00:00");
}

TEST_F(time_range, has_no_neighbours_where_it_has_no_width_or_time_ends) {
  for (const TimeRange& range : {TimeRange{"*", "*"},
                                 {"*", ""},
                                 {"", "*"},
                                 {"", ""},
                                 {"x", "*"},
                                 {"*", "*-1h"},
                                 {"0001-01-02", "0009-01-01"}}) {
    EXPECT_EQ(Told(RangeBefore(range, m_clock)), "none") << Told(range);
  }
  EXPECT_EQ(Told(RangeBehind({"9000-01-01", "9900-01-01"}, m_clock)), "none");
}

TEST_F(time_range, a_moment_as_clocks_show_it_is_an_expression_of_that_moment) {
  std::mt19937_64 random(8);
  // Around the hour that comes twice, and anywhere.
  std::uniform_int_distribution<std::int64_t> twice(-7'200'000'000, 7'200'000'000);
  std::uniform_int_distribution<std::int64_t> anywhere(0, 4'000'000'000'000'000);
  const Timestamp change = At(2024, 10, 27, hours(1));
  for (int n = 0; n < 2000; ++n) {
    const Timestamp time = n % 2 == 0 ? change + microseconds(twice(random))
                                      : Timestamp(microseconds(anywhere(random)));
    const Text sText = zones::ClockText(time, m_zone);
    const auto read = zones::ReadTimeExpression(sText, m_zone, m_clock.now);
    ASSERT_TRUE(std::holds_alternative<Timestamp>(read)) << sText;
    ASSERT_EQ(std::get<Timestamp>(read), time) << sText;
  }
}

}  // namespace
}  // namespace orvane::controls
