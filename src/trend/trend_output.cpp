#include "trend/trend_output.h"

#include <QBuffer>
#include <QFileInfo>
#include <QMimeData>
#include <QSvgGenerator>
#include <cmath>

#include "exports/export_file.h"
#include "exports/row_export.h"
#include "exports/value_text.h"
#include "platform/failure.h"
#include "trend/trend_plot.h"

namespace orvane::trend {

using platform::Text;

namespace {

/// As many as rows are copied at once.
constexpr std::size_t kMostCopiedPoints = 100'000;
constexpr std::size_t kBytesWritten = 1 << 16;

enum class Separator : char { Tab = '\t', Comma = ',' };

/// A text that a reader of such lines takes for one field.
void AppendField(Text& sOut, const Text& sText) {
  if (sText.find_first_of("\t,\"\r\n;") == Text::npos) {
    sOut += sText;
    return;
  }
  sOut += '"';
  for (const char c : sText) {
    if (c == '"') sOut += '"';
    sOut += c;
  }
  sOut += '"';
}

void AppendHeader(Text& sOut, Separator separator, const char* sEnd) {
  const char c = static_cast<char>(separator);
  sOut.append("Line").append(1, c).append("Timestamp").append(1, c).append("Value");
  sOut.append(1, c).append("Unit").append(sEnd);
}

void AppendPoint(Text& sOut, const TrendLine& line, std::size_t point, const zones::TimeZone& zone,
                 Separator separator, const char* sEnd) {
  const char c = static_cast<char>(separator);
  AppendField(sOut, line.sName);
  sOut += c;
  exports::AppendTime(sOut, TimestampOf(line.series.TimeAt(point)), zone);
  sOut += c;
  const Text sStored = line.StoredText(point);
  if (const double value = line.series.ValueAt(point); !sStored.empty()) {
    sOut += sStored;
  } else if (!std::isnan(value)) {
    exports::AppendDouble(sOut, value);
  }
  sOut += c;
  AppendField(sOut, line.sUnit);
  sOut += sEnd;
}

/// Calls for each of the points, until told to stop.
template <class Take>
void ForEachPoint(const PointsInSight& points, Take&& take) {
  for (std::size_t n = 0; n < points.lines->size(); ++n) {
    if (!points.shown[n]) continue;
    const TrendLine& line = (*points.lines)[n];
    for (std::size_t point = line.series.From(points.from);
         point < line.series.Size() && line.series.TimeAt(point) <= points.to; ++point) {
      if (!take(line, point)) return;
    }
  }
}

QByteArray VectorPicture(TrendPlot& plot) {
  QBuffer buffer;
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(plot.size());
  generator.setViewBox(QRect(QPoint(0, 0), plot.size()));
  generator.setTitle("Trend");
  QCPPainter painter;
  painter.begin(&generator);
  painter.fillRect(plot.rect(), plot.palette().color(QPalette::Base));
  plot.toPainter(&painter, plot.width(), plot.height());
  painter.end();
  return buffer.data();
}

void WriteBytes(const std::filesystem::path& path, const QByteArray& bytes) {
  exports::ExportFile file(path);
  file.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())});
  file.Finish();
}

}  // namespace

QImage PictureOf(TrendPlot& plot) {
  return plot.toPixmap(plot.width(), plot.height(), plot.devicePixelRatioF()).toImage();
}

QMimeData* CopiedPicture(TrendPlot& plot) {
  auto* picture = new QMimeData;
  picture->setImageData(PictureOf(plot));
  picture->setData("image/svg+xml", VectorPicture(plot));
  return picture;
}

std::optional<Text> CopiedPoints(const PointsInSight& points) {
  Text sOut;
  AppendHeader(sOut, Separator::Tab, "\n");
  std::size_t nPoints = 0;
  ForEachPoint(points, [&](const TrendLine& line, std::size_t point) {
    if (++nPoints > kMostCopiedPoints) return false;
    AppendPoint(sOut, line, point, points.zone, Separator::Tab, "\n");
    return true;
  });
  if (nPoints > kMostCopiedPoints) return std::nullopt;
  return sOut;
}

bool IsForPoints(const QString& sPath) {
  return QFileInfo(sPath).suffix().compare(u"csv", Qt::CaseInsensitive) == 0;
}

std::filesystem::path SavePoints(const PointsInSight& points, const QString& sPath,
                                 const std::stop_token& stop) {
  std::filesystem::path path(sPath.toStdString());
  exports::ExportFile file(path);
  Text sOut;
  AppendHeader(sOut, Separator::Comma, "\r\n");
  ForEachPoint(points, [&](const TrendLine& line, std::size_t point) {
    AppendPoint(sOut, line, point, points.zone, Separator::Comma, "\r\n");
    if (sOut.size() < kBytesWritten) return true;
    file.Write(sOut);
    sOut.clear();
    return !stop.stop_requested();
  });
  if (stop.stop_requested()) {
    throw platform::Failure(platform::failure::kCancelled, "The export was cancelled.");
  }
  file.Write(sOut);
  if (points.cutAfter > 0) {
    return file.FinishMarked(" (" + exports::CutMark(points.cutAfter) + ")", stop);
  }
  file.Finish(stop);
  return path;
}

void SavePicture(TrendPlot& plot, const QString& sPath) {
  const std::filesystem::path path(sPath.toStdString());
  const QString sEnd = QFileInfo(sPath).suffix().toLower();
  if (sEnd == "svg") return WriteBytes(path, VectorPicture(plot));
  if (sEnd != "png") {
    throw platform::Failure(platform::failure::kInvalidArgument,
                            "A trend is saved as a picture or as data; let the file's name end in "
                            ".png, .svg or .csv.");
  }
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  PictureOf(plot).save(&buffer, "PNG");
  WriteBytes(path, buffer.data());
}

}  // namespace orvane::trend
