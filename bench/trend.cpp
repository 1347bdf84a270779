// How long a trend of many held points takes until it is painted first, and for a frame while it is
// dragged, beside one pass over the same doubles.
#include <QApplication>
#include <QElapsedTimer>
#include <QPixmap>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "trend/trend_output.h"
#include "trend/trend_plot.h"

namespace {

using orvane::trend::TrendLine;
using orvane::trend::TrendPlot;
using orvane::trend::TrendSeries;

constexpr int kPoints = 10'000'000;
constexpr int kFrames = 100;
constexpr double kFirstPaintMs = 100;
constexpr double kFrameMs = 16;

double Milliseconds(const QElapsedTimer& timer) {
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

std::vector<double> Signal() {
  std::vector<double> values(kPoints);
  for (int n = 0; n < kPoints; ++n) {
    values[static_cast<std::size_t>(n)] =
        std::sin(n * 1e-5) * 100 +
        static_cast<double>((static_cast<unsigned>(n) * 2'654'435'761U) % 1000) * 0.01;
  }
  return values;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const std::vector<double> values = Signal();

  QElapsedTimer timer;
  timer.start();
  const auto [lowest, highest] = std::ranges::minmax(values);
  const double pass = Milliseconds(timer);

  std::vector<TrendLine> lines(1);
  lines[0].sName = "signal";
  lines[0].series.Reserve(kPoints);
  for (int n = 0; n < kPoints; ++n) {
    lines[0].series.Append(1.7e15 + n * 1e6, values[static_cast<std::size_t>(n)]);
  }
  TrendPlot plot;
  plot.resize(1000, 600);
  plot.show();
  QCoreApplication::processEvents();
  timer.restart();
  lines[0].series.Finish();
  plot.Lines(lines, orvane::zones::TimeZone::Utc());
  QPixmap first = plot.grab();
  const double firstPaint = Milliseconds(timer);

  plot.Zoom(0.5, plot.Times().center());
  std::vector<double> frames;
  for (int n = 0; n < kFrames; ++n) {
    timer.restart();
    plot.Pan(n < kFrames / 2 ? 0.005 : -0.005);
    first = plot.grab();
    frames.push_back(Milliseconds(timer));
  }
  std::ranges::sort(frames);
  std::printf("trend of %d points, %.1f to %.1f, window of 1000 x 600\n", kPoints, lowest, highest);
  std::printf("one pass over the doubles    %8.2f ms\n", pass);
  std::printf("first paint                  %8.2f ms   %.1f passes   budget of %.0f ms: %s\n",
              firstPaint, firstPaint / pass, kFirstPaintMs,
              firstPaint < kFirstPaintMs ? "held" : "missed");
  std::printf("a frame while dragged        %8.2f ms   worst %.2f ms   budget of %.0f ms: %s\n",
              frames[frames.size() / 2], frames.back(), kFrameMs,
              frames.back() < kFrameMs ? "held" : "missed");
  return 0;
}
