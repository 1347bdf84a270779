// How long a grid takes to scroll to a page of its rows and paint it, with 1,000 rows and with
// 1,000,000, beside a bare table view over a model that makes its texts from the row's number.
#include <QAbstractTableModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QPixmap>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

#include "ado/recordset_builder.h"
#include "controls/grid/table_editor.h"

namespace {

using orvane::platform::DataType;
using orvane::platform::RecordsetPtr;
using orvane::platform::RowIndex;

constexpr QSize kWindow(1000, 700);
constexpr int kPages = 400;
constexpr double kBudgetMs = 4.0;

class BareModel : public QAbstractTableModel {
 public:
  explicit BareModel(int nRows) : m_nRows(nRows) {}
  int rowCount(const QModelIndex& /*parent*/ = {}) const override { return m_nRows; }
  int columnCount(const QModelIndex& /*parent*/ = {}) const override { return 4; }
  QVariant data(const QModelIndex& index, int nRole) const override {
    if (nRole != Qt::DisplayRole) return {};
    return QString::number(index.row() * 4 + index.column());
  }

 private:
  int m_nRows;
};

RecordsetPtr Rows(RowIndex nRows) {
  orvane::ado::RecordsetBuilder builder({{"Tag", DataType::WChar},
                                         {"Timestamp", DataType::DBTimeStamp},
                                         {"Value", DataType::Double},
                                         {"Quality", DataType::Integer}});
  for (RowIndex row = 0; row < nRows; ++row) {
    using orvane::platform::Value;
    const Value number = row % 50 == 49 ? Value() : Value(static_cast<double>(row) * 0.25);
    builder.AppendRow({"cpu." + std::to_string(row % 16) + ".load",
                       orvane::platform::Timestamp(std::chrono::seconds(1'700'000'000 + row)),
                       number, 192});
  }
  return builder.Finish();
}

struct Times {
  double median = 0;
  double worst = 0;
};

/// As many rows as no memory holds, made when they are looked at.
class EndlessRows : public orvane::platform::Recordset {
 public:
  EndlessRows(RecordsetPtr page, RowIndex rows) : m_page(std::move(page)), m_rows(rows) {}
  orvane::platform::Fields& Fields() override { return m_page->Fields(); }
  orvane::platform::Boolean Eof() const override { return false; }
  orvane::platform::Boolean Bof() const override { return false; }
  void MoveNext() override {}
  void MoveFirst() override {}
  void MoveLast() override {}
  RowIndex Position() const override { return 0; }
  void Position(RowIndex /*row*/) override {}
  RowIndex RecordCount() const override { return m_rows; }
  orvane::platform::ColumnIndex FieldCount() const override { return m_page->FieldCount(); }
  const orvane::platform::Field& FieldAt(orvane::platform::ColumnIndex column) const override {
    return m_page->FieldAt(column);
  }
  orvane::platform::Value ValueAt(RowIndex row,
                                  orvane::platform::ColumnIndex column) const override {
    return m_page->ValueAt(row % m_page->RecordCount(), column);
  }
  using orvane::platform::Recordset::ValueAt;
  orvane::platform::Boolean Truncated() const override { return false; }
  std::chrono::microseconds Elapsed() const override { return {}; }

 private:
  RecordsetPtr m_page;
  RowIndex m_rows;
};

/// Scrolls to pages all over the rows and paints the whole window each time; in milliseconds.
Times PaintPages(QWidget& window, QAbstractItemView& view) {
  window.resize(kWindow);
  window.show();
  QCoreApplication::processEvents();
  QPixmap target(kWindow);
  std::mt19937 random(1);
  std::uniform_int_distribution<int> page(0, view.verticalScrollBar()->maximum());
  std::vector<double> times;
  for (int n = 0; n < kPages; ++n) {
    const int nTop = page(random);
    QElapsedTimer timer;
    timer.start();
    view.verticalScrollBar()->setValue(nTop);
    window.render(&target);
    times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    QCoreApplication::processEvents();
  }
  std::ranges::sort(times);
  return {times[times.size() / 2], times.back()};
}

Times PaintGrid(const RecordsetPtr& rs) {
  orvane::controls::TableEditor editor(
      {nullptr, std::make_shared<orvane::controls::RowsStates>(), nullptr});
  editor.AttachRecordset(rs, 0);
  auto* window = static_cast<QWidget*>(editor.Window());
  return PaintPages(*window, *window->findChild<QAbstractItemView*>("rows"));
}

Times PaintBare(int nRows) {
  BareModel model(nRows);
  QTableView view;
  view.setModel(&model);
  return PaintPages(view, view);
}

void Print(const char* sWhat, const Times& times, const Times& bare) {
  std::printf("%-28s median %6.3f ms   worst %6.3f ms   %.2f x bare view\n", sWhat, times.median,
              times.worst, times.median / bare.median);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  PaintGrid(Rows(1'000));  // fonts and styles are loaded once

  const Times bareFew = PaintBare(1'000);
  const Times bareMany = PaintBare(1'000'000);
  const Times few = PaintGrid(Rows(1'000));
  const Times many = PaintGrid(Rows(1'000'000));
  const Times most = PaintGrid(std::make_shared<EndlessRows>(Rows(100'000), 200'000'000));
  std::printf("scroll to a page of 4 columns and paint it, window of %d x %d\n", kWindow.width(),
              kWindow.height());
  Print("bare view, 1,000 rows", bareFew, bareFew);
  Print("bare view, 1,000,000 rows", bareMany, bareMany);
  Print("grid, 1,000 rows", few, bareFew);
  Print("grid, 1,000,000 rows", many, bareMany);
  Print("grid, 200,000,000 rows", most, bareMany);
  std::printf("200,000,000 rows against 1,000: %.2f\n", most.median / few.median);
  std::printf("1,000,000 rows against 1,000: %.2f; budget of %.0f ms a page: %s\n",
              many.median / few.median, kBudgetMs, many.median < kBudgetMs ? "held" : "missed");
  return 0;
}
