// What a grid does with a million rows, each beside the raw work on a plain vector of the same
// values: sorting by a number and by a text, finding a text, and copying rows as text.
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <random>
#include <string_view>
#include <vector>

#include "ado/recordset_builder.h"
#include "controls/order/sort_keys.h"
#include "controls/view/row_finder.h"
#include "controls/view/row_view.h"

namespace {

using namespace orvane;
using controls::RowOrder;
using platform::DataType;
using platform::RowIndex;

constexpr RowIndex kRows = 1'000'000;
constexpr int kRounds = 5;

/// Milliseconds of the median of some runs.
template <class Work>
double Median(Work work) {
  std::vector<double> times;
  for (int n = 0; n < kRounds; ++n) {
    QElapsedTimer timer;
    timer.start();
    work();
    times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
  }
  std::ranges::sort(times);
  return times[times.size() / 2];
}

void Print(const char* sWhat, double grid, double raw) {
  std::printf("%-44s %9.2f ms   raw %9.2f ms   %.2fx\n", sWhat, grid, raw, grid / raw);
}

double SortColumn(const platform::Recordset& rs, platform::ColumnIndex column) {
  return Median([&] {
    RowOrder::Numbers rows(kRows);
    std::iota(rows.begin(), rows.end(), 0U);
    controls::SortKeys keys(kRows);
    for (RowIndex row = 0; row < kRows; ++row) keys.Append(rs.ValueAt(row, column));
    const std::atomic<bool> bStop = false;
    keys.Sort(rows, true, bStop);
    // As any row is found in its place then.
    RowOrder::Numbers byRow = RowOrder::ByRow(rows, kRows, bStop);
    const RowOrder order(std::move(rows), std::move(byRow), kRows);
  });
}

template <class T>
double SortVector(const std::vector<T>& values) {
  return Median([&] {
    std::vector<T> copy = values;
    std::ranges::stable_sort(copy);
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  std::mt19937_64 random(1);
  std::vector<double> numbers;
  std::vector<platform::Text> texts;
  platform::Text sAll;
  ado::RecordsetBuilder builder({{"Value", DataType::Double}, {"Tag", DataType::WChar}});
  for (RowIndex row = 0; row < kRows; ++row) {
    numbers.push_back(std::uniform_real_distribution<double>(-1e6, 1e6)(random));
    texts.push_back("plant.line" + std::to_string(random() % 100) + ".sensor" +
                    std::to_string(random() % kRows));
    sAll += texts.back();
    builder.AppendRow({numbers.back(), texts.back()});
  }
  const platform::RecordsetPtr rs = builder.Finish();

  Print("sort 1,000,000 rows by a number", SortColumn(*rs, 0), SortVector(numbers));
  Print("sort 1,000,000 rows by a text", SortColumn(*rs, 1), SortVector(texts));

  controls::RowModel model;
  model.Recordset(rs, controls::CellFormat());
  constexpr const char* kNowhere = "nowhere to be found";
  std::size_t found = 0;
  const double find = Median([&] {
    // As the find bar does it: in slices, between which events are handled.
    controls::RowFinder finder(model, nullptr);
    finder.Find(controls::TextSought(QString(kNowhere)), {1}, {0, 1}, true,
                [&](auto cell, bool) { found += cell ? 1U : 0U; });
    while (finder.Busy()) QCoreApplication::processEvents();
  });
  const double raw = Median([&] {
    found += memmem(sAll.data(), sAll.size(), kNowhere, std::strlen(kNowhere)) != nullptr ? 1U : 0U;
  });
  Print("find a text in 1,000,000 rows", find, raw);

  controls::RowView view;
  view.ShowRows(rs, controls::CellFormat());
  view.selectionModel()->select({view.model()->index(0, 0), view.model()->index(99'999, 1)},
                                QItemSelectionModel::ClearAndSelect);
  bool bCopied = false;
  view.Copier().OnCopied([&](const QString&) { bCopied = true; });
  const double copy = Median([&] {
    // As Ctrl+C does it, until the clipboard has it.
    bCopied = false;
    view.Copy(false);
    while (!bCopied) QCoreApplication::processEvents();
  });
  const platform::Text sCopied = QGuiApplication::clipboard()->text().toStdString();
  std::vector<std::string_view> cells;
  for (std::size_t n = 0; n < sCopied.size();) {
    const std::size_t nEnd = sCopied.find_first_of("\t\n", n) + 1;
    cells.push_back(std::string_view(sCopied).substr(n, nEnd - n));
    n = nEnd;
  }
  const double write = Median([&] {
    platform::Text sText;
    for (const std::string_view sCell : cells) sText += sCell;
    found += sText.size() & 1;
  });
  Print("copy 100,000 rows as text", copy, write);
  return found > 100 ? 1 : 0;
}
