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
class QStatusBar;
class QTabBar;
class QToolButton;
class QVBoxLayout;

namespace orvane::console {

class ConsoleSession;
class ElidedLabel;
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

  /// Puts the toolbar, which the pane takes over, between its head and what it shows.
  void PlaceToolbar(QWidget* toolbar);
  /// The bar in which a control's status line is shown; without one the control keeps it.
  void StatusBar(QStatusBar* bar);
  /// The action of the button beside the tabs, until there is another; outlives the pane.
  void RefreshAction(QAction* action);

  ResultList& List() noexcept { return *m_list; }
  /// True while a list is shown, with rows or without.
  bool IsListShown() const;
  /// The sentence shown in place of contents, or empty.
  QString Sentence() const;
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

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void SizeImages();
  void ShowHead();
  void TakeControl(HostedResultView& view);
  void ShowReady(HostedResultView& view);
  void TakeStatusLine(const std::shared_ptr<platform::Control>& control);
  void GiveStatusLineBack();
  void LetViewGo(HostedResultView& view);
  void ShowListOrSentence();

  const ImageList& m_images;
  ConsoleSession* m_session = nullptr;
  QLabel* m_lblPicture;
  ElidedLabel* m_lblName;
  QTabBar* m_tabs;
  QToolButton* m_refresh;
  QStackedWidget* m_stack;
  ResultList* m_list;
  MessagePage* m_message;
  QPointer<QWidget> m_control;
  std::shared_ptr<platform::Control> m_lender;  // of the status line in the bar
  QPointer<QWidget> m_statusLine;
  QPointer<QStatusBar> m_statusBar;
  std::map<platform::Text, std::vector<int>> m_widths;
  bool m_bListView = false;
};

}  // namespace orvane::console
