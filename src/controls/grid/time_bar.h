// The bar above a grid's rows for the range of time that is shown: some that are often asked for,
// any other between two time expressions, the ones beside it, and following what comes. It tells
// what is chosen; the grid does it. User-interface thread.
#pragma once

#include <QWidget>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <optional>
#include <vector>

#include "controls/statements/time_range.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QToolButton;

namespace orvane::controls {

class FlowLayout;

class TimeBar : public QWidget {
 public:
  using Follow = std::optional<std::chrono::seconds>;

  /// The clock tells what "now" is.
  explicit TimeBar(std::function<platform::Timestamp()> clock, QWidget* parent = nullptr);

  /// The zone in which expressions are read.
  void Zone(const zones::TimeZone& zone);
  /// The range that the query's own filter is; shown where no other is set.
  void OwnRange(const std::optional<TimeRange>& range);
  /// The range that is set, or none. Tells nobody.
  void Range(const std::optional<TimeRange>& range);
  const std::optional<TimeRange>& Range() const { return m_range; }
  /// Whether the range can be kept.
  void OfferKeep(bool bOffered);
  /// Says why no range can be chosen, and offers none; empty when one can.
  void Refuse(const QString& sWhy);
  /// Takes the mark from "Follow". Tells nobody.
  void StopFollowing();

  /// Called when another range, or none, is chosen.
  void OnRange(std::function<void(const std::optional<TimeRange>&)> handler) {
    m_chosen = std::move(handler);
  }
  /// Called when the range is to become the query's own filter.
  void OnKeep(std::function<void()> handler) { m_keep = std::move(handler); }
  /// Called with how often the rows are to be fetched, or with none.
  void OnFollow(std::function<void(Follow)> handler) { m_follow = std::move(handler); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  /// A part of the bar that stays in one line.
  void AddPart(std::initializer_list<QWidget*> widgets);
  /// Leaves the ranges alone in sight where the window has little height for all parts, until the
  /// user wants the others.
  void Fold();
  /// How high all parts are together, in sight or not.
  int WholeHeight() const;
  /// How much of the window the others need at least.
  int HeightOfOthers() const;
  QToolButton* AddButton(QAction*& action, const QString& sText, const char* sName,
                         const QString& sTip, std::function<void()> handler);
  void AddEnd(QLineEdit*& box, const QString& sLabel, const char* sName, const char* sTip);
  void AddRanges();
  void AddEnds();
  void AddFollowing();
  Clock Now() const { return {m_zone, m_now()}; }
  /// What the two boxes say.
  TimeRange Typed() const;
  /// The range that is shown: the one set, or the query's own.
  std::optional<TimeRange> Shown() const;
  void Choose(std::optional<TimeRange> range);
  void ChooseTyped();
  /// Says what is wrong with what is typed, or which moments it means.
  void Check();
  void Show();
  void TellOfFollowing();

  std::function<platform::Timestamp()> m_now;
  zones::TimeZone m_zone = zones::TimeZone::Utc();
  std::optional<TimeRange> m_range;
  std::optional<TimeRange> m_own;
  QString m_sRefused;
  FlowLayout* m_parts = nullptr;
  std::vector<QWidget*> m_inOrder;  ///< the parts
  QToolButton* m_more = nullptr;    ///< shows those that are folded
  QComboBox* m_ranges;
  QLineEdit* m_from;
  QLineEdit* m_to;
  QLabel* m_told;
  QAction* m_back = nullptr;
  QAction* m_forward = nullptr;
  QAction* m_clear = nullptr;
  QAction* m_keepIt = nullptr;
  QToolButton* m_keepButton = nullptr;
  QCheckBox* m_following;
  QSpinBox* m_seconds;
  std::function<void(const std::optional<TimeRange>&)> m_chosen;
  std::function<void()> m_keep;
  std::function<void(Follow)> m_follow;
};

}  // namespace orvane::controls
