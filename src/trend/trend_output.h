// A trend out of the program: its picture, and the points that are in sight.
// Used by the trend's view; pictures on the user-interface thread, points on any.
#pragma once

#include <QImage>
#include <QString>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "trend/trend_data.h"
#include "zones/time_zone.h"

class QMimeData;

namespace orvane::trend {

class TrendPlot;

using TrendLines = std::vector<TrendLine>;

/// The points between two times, both included, of the lines that are drawn.
struct PointsInSight {
  std::shared_ptr<const TrendLines> lines;
  std::vector<bool> shown;  ///< by line
  double from = 0;
  double to = 0;
  zones::TimeZone zone = zones::TimeZone::Utc();
  /// The rows that the points are those of, where their source has more; else 0.
  platform::RowIndex cutAfter = 0;
};

QImage PictureOf(TrendPlot& plot);
/// The picture in both forms in which it is saved, for the clipboard; the caller's.
QMimeData* CopiedPicture(TrendPlot& plot);
/// One point a line: name, time with its distance from UTC, value, unit. Between tabs for the
/// clipboard; more points than are copied at once give none.
std::optional<platform::Text> CopiedPoints(const PointsInSight& points);

/// True where the name is one for points.
bool IsForPoints(const QString& sPath);
/// Writes the points as comma-separated values, whole or not at all: nothing is left of the file
/// when it is stopped, which fails with failure::kCancelled. Where rows are missing the file's name
/// says so, as that of an export does; gives its path. Fails as files do.
std::filesystem::path SavePoints(const PointsInSight& points, const QString& sPath,
                                 const std::stop_token& stop = {});
/// Writes the picture, whole or not at all, in the form that the end of the name tells (.png,
/// .svg). Fails with failure::kInvalidArgument for any other name, and as files do.
void SavePicture(TrendPlot& plot, const QString& sPath);

}  // namespace orvane::trend
