// The trend of a grid's rows: their lines, the values at the cursor, and what can be done with
// both. Shown by a grid in the place of its rows; user-interface thread.
#pragma once

#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "trend/trend_loading.h"
#include "trend/trend_saving.h"
#include "zones/time_zone.h"

class QAction;
class QLabel;
class QTableView;
class QToolBar;

namespace orvane::trend {

class TrendPlot;
class TrendValues;

/// From and to, both included.
struct TrendSpan {
  platform::Timestamp from;
  platform::Timestamp to;
  friend bool operator==(const TrendSpan&, const TrendSpan&) = default;
};

class TrendView : public QWidget {
 public:
  using Units = std::map<platform::Text, platform::Text>;

  explicit TrendView(QWidget* parent = nullptr);
  ~TrendView() override;

  static bool CanShow(const platform::RecordsetPtr& rs);
  /// Shows the rows, or none, in the zone, with the span in sight if there is one; where a filter
  /// leaves some out, `seen` tells which. They are read in slices, and from the moment on that the
  /// view is seen. Rows that follow others of the same lines are looked at as those were: a view to
  /// the last point stays at the last point.
  void ShowRows(platform::RecordsetPtr rs, const zones::TimeZone& zone,
                std::optional<TrendSpan> span = std::nullopt, SeenRows seen = {});
  /// The times that the rows to be shown next are those of: they count as all times, from and up
  /// to where no row may be. None where only the rows tell.
  void Reach(const std::optional<TrendSpan>& times) { m_reach = times; }
  /// Brings the times into sight.
  void ShowSpan(const TrendSpan& span);
  /// Marks times, or none; tells nobody.
  void Mark(const std::optional<TrendSpan>& span);
  /// Called with the times that the user has marked, or with none when he took the mark away.
  void OnMarked(std::function<void(const std::optional<TrendSpan>&)> handler) {
    m_marked = std::move(handler);
  }
  /// True until all rows are read.
  bool IsReading() const { return m_loading->Busy(); }

  /// Asked for the units by tag when there are tags, without a unit of their own, that it was not
  /// asked for yet.
  void AskUnits(std::function<Units()> ask) { m_askUnits = std::move(ask); }
  /// The units are asked for anew with the next rows.
  void ForgetUnits() { m_asked.clear(); }
  /// Called with the times in sight when they are to be the rows' range.
  void OnRange(std::function<void(const TrendSpan&)> handler);
  /// Called with a sentence about what was done, or as a warning what could not be; empty after a
  /// success that shows.
  void OnRemark(std::function<void(const QString& sSentence, bool bWarning)> handler) {
    m_remark = std::move(handler);
  }

  void Copy();
  void CopyPicture();
  /// Writes the file, or says why it could not be written; points beside the window.
  void SaveAs(const QString& sPath);
  /// True until the points are in their file.
  bool IsSaving() const { return m_saving->Busy(); }

 protected:
  void showEvent(QShowEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// How the lines were being looked at.
  struct Look {
    bool bAll = true;
    bool bAtEnd = false;
    double from = 0;
    double to = 0;
    double end = 0;
    std::optional<double> cursor;
    ValueRanges values;
    std::vector<platform::Text> hidden;
  };
  QAction* AddAction(const QString& sText, const QString& sTip, std::function<void()> handler);
  void ChooseFile();
  void SavePointsAs(const QString& sPath);
  void TellOfSaving();
  void Take(TrendLoading::Loaded loaded);
  void DropLines();
  void ShowLines();
  /// May handle events, and one of them may be the end of this.
  void LearnUnits(TrendLines& lines);
  PointsInSight Points() const;
  std::optional<Look> CurrentLook() const;
  void Restore(const Look& look);
  void TellOfCursor();
  QString SpokenMark() const;
  void Say(const QString& sMessage);
  void Remark(const QString& sSentence, bool bWarning = true);

  QToolBar* m_bar;
  QAction* m_asRange;
  QLabel* m_message;
  TrendPlot* m_plot;
  QTableView* m_list;
  TrendValues* m_values;
  QAction* m_save = nullptr;
  TrendLoading* m_loading;
  TrendSaving* m_saving;
  std::shared_ptr<TrendLines> m_lines = std::make_shared<TrendLines>();  ///< never null
  std::size_t m_nTagsLeftOut = 0;
  platform::RowIndex m_cutAfter = 0;  ///< rows, where their source has more
  bool m_bFiltered = false;
  int m_nShown = 0;  ///< how often rows were shown
  zones::TimeZone m_zone = zones::TimeZone::Utc();
  std::optional<TrendSpan> m_span;
  std::optional<TrendSpan> m_reach;
  std::optional<Look> m_look;
  Units m_units;
  std::set<platform::Text> m_asked;  ///< tags whose units were asked for
  std::function<Units()> m_askUnits;
  std::function<void(const TrendSpan&)> m_range;
  std::function<void(const std::optional<TrendSpan>&)> m_marked;
  std::function<void(const QString&, bool)> m_remark;
};

}  // namespace orvane::trend
