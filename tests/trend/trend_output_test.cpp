#include "trend/trend_output.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

#include "platform/failure.h"
#include "tests/trend/trend_rows.h"
#include "trend/trend_plot.h"

namespace orvane::trend {
namespace {

class trend_output : public testing::Test {
 protected:
  void SetUp() override {
    const auto rs = TwoTags(3);
    TrendReader reader(rs, *TrendColumns::Of(*rs));
    reader.Read(1'000);
    reader.Finish();
    *m_held = reader.TakeLines();
    m_lines[1].sName = "b, \"second\"";
    m_lines[0].sUnit = "bar";
    m_plot.resize(400, 300);
    m_plot.Lines(m_lines, m_zone);
  }
  PointsInSight Points() const {
    return {m_held,
            {m_plot.LineShown(0), m_plot.LineShown(1)},
            m_plot.Times().lower,
            m_plot.Times().upper,
            m_zone};
  }
  QByteArray Saved(const char* sName) {
    const QString sPath = m_folder.filePath(sName);
    if (IsForPoints(sPath)) {
      SavePoints(Points(), sPath);
    } else {
      SavePicture(m_plot, sPath);
    }
    QFile file(sPath);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
  }
  QTemporaryDir m_folder;
  zones::TimeZone m_zone = zones::TimeZone::Utc();
  std::shared_ptr<TrendLines> m_held = std::make_shared<TrendLines>();
  TrendLines& m_lines = *m_held;
  TrendPlot m_plot;
};

TEST_F(trend_output, the_points_in_sight_are_copied) {
  EXPECT_EQ(CopiedPoints(Points()),
            "Line\tTimestamp\tValue\tUnit\n"
            "a\t2023-11-14 22:13:20+00:00\t0.0\tbar\n"
            "a\t2023-11-14 22:13:21+00:00\t1.0\tbar\n"
            "a\t2023-11-14 22:13:22+00:00\t2.0\tbar\n"
            "\"b, \"\"second\"\"\"\t2023-11-14 22:13:20+00:00\t-0.0\t\n"
            "\"b, \"\"second\"\"\"\t2023-11-14 22:13:21+00:00\t-0.5\t\n"
            "\"b, \"\"second\"\"\"\t2023-11-14 22:13:22+00:00\t-1.0\t\n");
  m_plot.LineShown(1, false);
  m_plot.Times({TrendTime(Second(1)) - 10, TrendTime(Second(1)) + 990});
  EXPECT_EQ(CopiedPoints(Points()),
            "Line\tTimestamp\tValue\tUnit\na\t2023-11-14 22:13:21+00:00\t1.0\tbar\n");
}

TEST_F(trend_output, points_are_written_as_they_are_stored) {
  ado::RecordsetBuilder builder(
      {{"Timestamp", platform::DataType::DBTimeStamp}, {"Count", platform::DataType::BigInt}});
  builder.AppendRow({Second(0), std::int64_t{9'007'199'254'740'993}});
  builder.AppendRow({Second(1), std::int64_t{100'000}});
  const auto rs = builder.Finish();
  TrendReader reader(rs, *TrendColumns::Of(*rs));
  reader.Read(10);
  reader.Finish();
  const auto lines = std::make_shared<TrendLines>(reader.TakeLines());
  EXPECT_EQ(CopiedPoints({lines, {true}, TrendTime(Second(0)), TrendTime(Second(1)), m_zone}),
            "Line\tTimestamp\tValue\tUnit\n"
            "Count\t2023-11-14 22:13:20+00:00\t9007199254740993\t\n"
            "Count\t2023-11-14 22:13:21+00:00\t100000\t\n");
}

TEST_F(trend_output, no_more_points_than_rows_are_copied_at_once) {
  TrendSeries series;
  for (int n = 0; n < 100'001; ++n) series.Append(n, 1);
  series.Finish();
  const auto lines = std::make_shared<TrendLines>();
  lines->push_back({"many", "", "", std::move(series)});
  EXPECT_TRUE(CopiedPoints({lines, {true}, 1, 100'000, m_zone}));
  EXPECT_EQ(CopiedPoints({lines, {true}, 0, 100'000, m_zone}), std::nullopt);
}

TEST_F(trend_output, files_are_pictures_or_data_by_their_names) {
  const QByteArray csv = Saved("t.CSV");
  EXPECT_TRUE(
      csv.startsWith("Line,Timestamp,Value,Unit\r\na,2023-11-14 22:13:20+00:00,0.0,bar\r\n"));
  EXPECT_EQ(csv.count('\n'), 7);
  EXPECT_TRUE(Saved("t.png").startsWith("\x89PNG"));
  const QByteArray svg = Saved("t.svg");
  EXPECT_TRUE(svg.contains("<svg"));
  EXPECT_TRUE(svg.contains("polyline") || svg.contains("path"));
}

TEST_F(trend_output, a_picture_is_copied_in_both_of_its_forms) {
  const std::unique_ptr<QMimeData> copied(CopiedPicture(m_plot));
  EXPECT_TRUE(copied->hasImage());
  EXPECT_EQ(copied->data("image/svg+xml"), Saved("t.svg"));
}

TEST_F(trend_output, a_file_that_cannot_be_written_is_told) {
  EXPECT_THROW(SavePicture(m_plot, m_folder.filePath("t.jpeg")), platform::Failure);
  EXPECT_THROW(SavePicture(m_plot, m_folder.filePath("no/t.png")), platform::Failure);
  EXPECT_THROW(SavePoints(Points(), m_folder.filePath("no/t.csv")), platform::Failure);
  EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files).size(), 0);
}

TEST_F(trend_output, points_that_are_stopped_leave_no_file) {
  std::stop_source stop;
  stop.request_stop();
  EXPECT_THROW(SavePoints(Points(), m_folder.filePath("t.csv"), stop.get_token()),
               platform::Failure);
  EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files).size(), 0);
}

}  // namespace
}  // namespace orvane::trend
