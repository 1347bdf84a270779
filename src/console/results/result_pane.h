// The right side of the window: the selected item's name, the choice between its views, and the
// view itself: a list, a control's window, or a sentence where there is nothing to see.
// User-interface thread.
#pragma once

#include <QPointer>
#include <QWidget>
#include <map>

#include "console/results/result_list.h"

class QLabel;
class QStackedWidget;
class QTabBar;
class QToolButton;
class QVBoxLayout;

namespace orvane::console {

class ConsoleSession;
class ImageList;
class MessagePage;

class ResultPane final : public QWidget {
  Q_OBJECT

 public:
  /// The images outlive the pane.
  explicit ResultPane(const ImageList& images, QWidget* parent = nullptr);
  ~ResultPane() override;

  /// Follows the session until another one, or null, takes its place.
  void Follow(ConsoleSession* session);
  /// Shows a sentence in place of everything, until a view comes.
  void ShowSentence(const QIcon& icon, const QString& sText, const QString& sDetail);

  /// The action of the button beside the tabs, until there is another; outlives the pane.
  void RefreshAction(QAction* action);

  ResultList& List() noexcept { return *m_list; }
  /// True while a list is shown, with rows or without.
  bool IsListShown() const;
  /// The sentence shown in place of contents, or empty.
  QString Sentence() const;
  QTabBar& ViewTabs() noexcept { return *m_tabs; }
  /// Column widths that the user chose, by view name.
  std::map<platform::Text, std::vector<int>> ColumnWidths() const;
  void ColumnWidths(std::map<platform::Text, std::vector<int>> widths);
  /// True when the widget is, or lies in, the window of the control shown.
  bool IsInControl(const QObject* object) const;

 signals:
  void ViewChosen(int iView);
  void ExpandRequested();
  /// The number of rows, or whether there is a list, has changed.
  void RowsChanged();

 private:
  void ShowHead();
  void TakeControl(HostedResultView& view);
  void ShowReady(HostedResultView& view);
  void LetViewGo(HostedResultView& view);
  void ShowListOrSentence();

  const ImageList& m_images;
  ConsoleSession* m_session = nullptr;
  QLabel* m_lblPicture;
  QLabel* m_lblName;
  QTabBar* m_tabs;
  QToolButton* m_refresh;
  QStackedWidget* m_stack;
  ResultList* m_list;
  MessagePage* m_message;
  QPointer<QWidget> m_control;
  std::map<platform::Text, std::vector<int>> m_widths;
  bool m_bListView = false;
};

}  // namespace orvane::console
