// A trend out of the program: its picture, and the points that are in sight.
// Used by the trend's view; user-interface thread.
#pragma once

#include <QImage>
#include <QString>
#include <optional>

#include "trend/trend_data.h"
#include "zones/time_zone.h"

namespace orvane::trend {

class TrendPlot;

QImage PictureOf(TrendPlot& plot);
/// The points in sight of the lines drawn, one a line: name, time with its distance from UTC,
/// value, unit. Between tabs for the clipboard, where more points than are copied at once give
/// none; as comma-separated values for a file.
std::optional<platform::Text> CopiedPoints(const TrendPlot& plot,
                                           const std::vector<TrendLine>& lines,
                                           const zones::TimeZone& zone);

/// Writes the file whole or not at all, by the end of its name as a picture (.png, .svg) or as
/// comma-separated values (.csv). Fails with failure::kInvalidArgument for any other name, and as
/// files do.
void SaveTrend(TrendPlot& plot, const std::vector<TrendLine>& lines, const zones::TimeZone& zone,
               const QString& sPath);

}  // namespace orvane::trend
