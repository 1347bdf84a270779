#include "controls/view/status_strip.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLayout>

#include "controls/view/giving_label.h"

namespace orvane::controls {
namespace {

using std::chrono::microseconds;

std::string TextOf(const StatusStrip& strip, const char* sName) {
  const auto* label = strip.findChild<QLabel*>(sName);
  return label->isHidden() ? "(hidden)" : label->text().toStdString();
}

TEST(status_strip, rows_are_counted_in_words) {
  EXPECT_EQ(RowsText(0), "0 rows");
  EXPECT_EQ(RowsText(1), "1 row");
  EXPECT_EQ(RowsText(2), "2 rows");
  EXPECT_EQ(RowsText(1'234'567), "1,234,567 rows");
}

TEST(status_strip, times_are_told_in_the_unit_that_fits) {
  EXPECT_EQ(TimeText(microseconds(0)), "under 1 ms");
  EXPECT_EQ(TimeText(microseconds(999)), "under 1 ms");
  EXPECT_EQ(TimeText(microseconds(1'000)), "1 ms");
  EXPECT_EQ(TimeText(microseconds(999'999)), "999 ms");
  EXPECT_EQ(TimeText(microseconds(1'230'000)), "1.23 s");
  EXPECT_EQ(TimeText(microseconds(125'000'000)), "2 min 5 s");
}

TEST(status_strip, tells_rows_time_and_position) {
  StatusStrip strip;
  strip.Rows(100, microseconds(12'000), {}, {});
  strip.Position(2, 100);
  EXPECT_EQ(TextOf(strip, "rowCount"), "100 rows");
  EXPECT_EQ(TextOf(strip, "elapsed"), "12 ms");
  EXPECT_EQ(TextOf(strip, "notice"), "(hidden)");
  EXPECT_EQ(TextOf(strip, "position"), "Row 3 of 100");
  EXPECT_TRUE(strip.findChild<QLabel*>("warning")->isHidden());
}

TEST(status_strip, tells_of_rows_that_come_how_many_since_when_and_how_fast) {
  StatusStrip strip;
  int nStopped = 0;
  strip.OnCancel([&] { ++nStopped; });
  strip.Coming(70, microseconds(99'999));
  EXPECT_EQ(TextOf(strip, "rowCount"), "70 rows so far\u2026");
  EXPECT_EQ(TextOf(strip, "elapsed"), "99 ms") << "a rate of so little time would be a guess";
  strip.Coming(128'000, microseconds(100'000));
  EXPECT_EQ(TextOf(strip, "rowCount"), "128,000 rows so far\u2026");
  EXPECT_EQ(TextOf(strip, "elapsed"), "100 ms, 1,280,000 a second");
  strip.Coming(1'000'001, microseconds(2'500'000));
  EXPECT_EQ(TextOf(strip, "elapsed"), "2.50 s, 400,000 a second");
  strip.Coming(1, microseconds(125'000'000));
  EXPECT_EQ(TextOf(strip, "rowCount"), "1 row so far\u2026");
  EXPECT_EQ(TextOf(strip, "elapsed"), "2 min 5 s, 0 a second");
  auto* const stop = strip.findChild<QPushButton*>("stopFetch");
  ASSERT_FALSE(stop->isHidden());
  stop->click();
  EXPECT_EQ(nStopped, 1);
  // When all are here, only what they took is told.
  strip.Rows(1'000'001, microseconds(2'600'000), {}, {});
  EXPECT_EQ(TextOf(strip, "elapsed"), "2.60 s");
  EXPECT_TRUE(stop->isHidden());
}

TEST(status_strip, what_matters_least_gives_way_first) {
  StatusStrip strip;
  auto* choice = new QToolButton;
  choice->setText("Trend");
  strip.AddSwitch({choice});
  strip.Rows(100, microseconds(12'000), "at 14:02:11", "First 100 rows only.");
  strip.Position(2, 100);
  strip.show();
  const auto settle = [&](int nWidth) {
    strip.resize(nWidth, strip.height());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  };
  const auto* time = strip.findChild<QLabel*>("elapsed");
  const auto* position = strip.findChild<QLabel*>("position");
  settle(1000);
  EXPECT_GE(time->width(), time->sizeHint().width());
  EXPECT_GE(position->width(), position->sizeHint().width());
  const int nAll = strip.layout()->sizeHint().width();
  settle(nAll - 1);
  EXPECT_EQ(position->width(), 0) << "the current cell is seen anyway";
  EXPECT_GE(time->width(), time->sizeHint().width());
  settle(nAll - position->sizeHint().width() - 1);
  EXPECT_EQ(time->width(), 0);
  EXPECT_GE(choice->width(), choice->sizeHint().width());
  const auto* notice = strip.findChild<QLabel*>("notice");
  EXPECT_GE(notice->width(), notice->sizeHint().width());
  settle(1000);
  EXPECT_GE(time->width(), time->sizeHint().width()) << "it comes back";
}

TEST(status_strip, tells_when_rows_were_fetched_and_the_day_unless_it_is_today) {
  using namespace std::chrono_literals;
  const date::local_days day = date::local_days(date::year{2026} / 11 / 21);
  const zones::LocalTime fetched = day + 14h + 2min + 11s + 999'999us;
  EXPECT_EQ(FetchedText(fetched, fetched), "at 14:02:11");
  EXPECT_EQ(FetchedText(fetched, day + 24h - 1us), "at 14:02:11");
  EXPECT_EQ(FetchedText(fetched, day + 24h), "on 2026-11-21 at 14:02:11");
  StatusStrip strip;
  strip.Rows(1'024, microseconds(12'000), "at 14:02:11", {});
  EXPECT_EQ(TextOf(strip, "rowCount"), "1,024 rows");
  EXPECT_EQ(TextOf(strip, "elapsed"), "12 ms, at 14:02:11");
}

TEST(status_strip, a_notice_is_in_sight_with_a_warning) {
  StatusStrip strip;
  strip.Rows(100, microseconds(12'000), {}, "Cut.");
  EXPECT_EQ(TextOf(strip, "notice"), "Cut.");
  EXPECT_FALSE(strip.findChild<QLabel*>("warning")->isHidden());
  EXPECT_FALSE(strip.findChild<QLabel*>("warning")->pixmap(Qt::ReturnByValue).isNull());
}

TEST(status_strip, a_long_notice_gives_way_before_anything_else) {
  StatusStrip strip;
  strip.Rows(500, microseconds(12'000), {}, QString(300, 'n'));
  strip.Position(0, 500);
  strip.resize(800, strip.height());
  strip.show();
  for (const char* const sName : {"rowCount", "elapsed", "position"}) {
    const auto* label = strip.findChild<QLabel*>(sName);
    EXPECT_GE(label->width(), label->sizeHint().width()) << sName;
  }
  const auto* notice = strip.findChild<QLabel*>("notice");
  EXPECT_LT(notice->width(), notice->sizeHint().width());
  EXPECT_GT(notice->width(), 200);
}

TEST(status_strip, what_the_row_limit_left_out_is_told_whole_before_the_current_row) {
  StatusStrip strip;
  const QString sNotice = "First 100 rows only: the row limit was reached.";
  strip.Rows(100, microseconds(12'000), "at 14:02:11", sNotice);
  strip.Position(0, 100);
  strip.show();
  const auto* notice = strip.findChild<QLabel*>("notice");
  const auto* position = strip.findChild<QLabel*>("position");
  strip.resize(strip.layout()->sizeHint().width() - 1, strip.height());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  EXPECT_EQ(position->width(), 0);
  EXPECT_EQ(static_cast<const GivingLabel*>(notice)->Seen(), sNotice);
}

TEST(status_strip, an_order_or_a_filter_is_in_sight_beside_a_long_notice) {
  StatusStrip strip;
  strip.Rows(500, microseconds(12'000), {}, QString(300, 'n'));
  strip.Arrangement("Filtered here: 24 rows seen");
  strip.resize(400, strip.height());
  strip.show();
  const auto* arrangement = strip.findChild<QLabel*>("arrangement");
  EXPECT_GE(arrangement->width(), 14 * strip.fontMetrics().averageCharWidth());
  strip.Arrangement("Short");
  EXPECT_LE(arrangement->minimumWidth(), arrangement->sizeHint().width());
}

TEST(status_strip, a_remark_stands_in_the_place_of_the_notice) {
  StatusStrip strip;
  strip.Rows(100, microseconds(12'000), {}, "Cut.");
  strip.Remark("Not copied.");
  EXPECT_EQ(TextOf(strip, "notice"), "Not copied.");
  EXPECT_FALSE(strip.findChild<QLabel*>("warning")->isHidden());
  strip.Remark({});
  EXPECT_EQ(TextOf(strip, "notice"), "Cut.");
  strip.Remark("Not copied.");
  strip.Rows(100, microseconds(12'000), {}, {});
  EXPECT_EQ(TextOf(strip, "notice"), "(hidden)");
  strip.Message("No rows");
  strip.Remark({});
  EXPECT_EQ(TextOf(strip, "notice"), "(hidden)");
}

TEST(status_strip, that_rows_can_only_be_looked_at_stands_there_once) {
  StatusStrip strip;
  strip.Rows(3, microseconds(12'000), {}, {});
  strip.ReadOnly("These rows can only be looked at.");
  EXPECT_EQ(TextOf(strip, "readOnly"), "These rows can only be looked at.");
  strip.Remark("These rows can only be looked at.");
  EXPECT_EQ(TextOf(strip, "notice"), "These rows can only be looked at.");
  EXPECT_EQ(TextOf(strip, "readOnly"), "(hidden)");
  strip.Remark({});
  EXPECT_EQ(TextOf(strip, "readOnly"), "These rows can only be looked at.");
}

TEST(status_strip, a_message_stands_alone) {
  StatusStrip strip;
  strip.Rows(100, microseconds(12'000), {}, "Cut.");
  strip.Position(2, 100);
  strip.Message("No rows");
  EXPECT_EQ(TextOf(strip, "rowCount"), "No rows");
  EXPECT_EQ(TextOf(strip, "elapsed"), "(hidden)");
  EXPECT_EQ(TextOf(strip, "notice"), "(hidden)");
  EXPECT_EQ(TextOf(strip, "position"), "");
  strip.Empty();
  EXPECT_EQ(TextOf(strip, "rowCount"), "");
}

TEST(status_strip, gives_way_to_a_narrow_window) {
  StatusStrip strip;
  strip.Rows(1'000'000, microseconds(12'000), {}, QString(500, u'x'));
  EXPECT_LT(strip.minimumSizeHint().width(), 200);
}

}  // namespace
}  // namespace orvane::controls
