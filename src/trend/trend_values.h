// The lines of a trend as a list: which is which, whether it is drawn, and its value at the cursor.
// Part of the trend's view; user-interface thread.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <optional>
#include <vector>

#include "trend/trend_data.h"
#include "zones/time_zone.h"

namespace orvane::trend {

class TrendValues : public QAbstractTableModel {
 public:
  enum Column { Name, Value, Unit, Time, ColumnCount };

  explicit TrendValues(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  /// The caller keeps the lines as long as they are listed.
  void Lines(const std::vector<TrendLine>* lines, const zones::TimeZone& zone);
  void Cursor(std::optional<double> time);
  /// Called when a line is to be drawn or no more.
  void OnShown(std::function<void(std::size_t line, bool bShown)> handler) {
    m_shown = std::move(handler);
  }
  bool IsShown(std::size_t line) const { return m_lineShown[line]; }
  /// What the list says, in one text: the instant, and the value of each line drawn.
  QString Spoken() const;
  /// The time by the clocks of the zone.
  QString TimeText(double time) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : ColumnCount;
  }
  QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;
  QVariant headerData(int nSection, Qt::Orientation orientation, int nRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int nRole) override;

 private:
  /// The point that holds at the cursor.
  std::optional<std::size_t> PointOf(std::size_t line) const;
  QString ValueText(std::size_t line) const;

  const std::vector<TrendLine>* m_lines = nullptr;
  zones::TimeZone m_zone = zones::TimeZone::Utc();
  std::optional<double> m_cursor;
  std::vector<bool> m_lineShown;
  std::function<void(std::size_t, bool)> m_shown;
};

}  // namespace orvane::trend
