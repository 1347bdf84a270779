// What a grid says in the place of rows: a short title, a sentence that tells what to do, and
// where there is a choice a button. Laid over the rows by the grid's window; user-interface thread.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QWidget>
#include <functional>
#include <utility>

namespace orvane::controls {

/// A sentence in the middle that breaks words of any length, and scrolls when it is too long.
class SentenceView : public QTextEdit {
 public:
  explicit SentenceView(QWidget* parent);

  /// Asked when a menu is wanted and nothing is selected: true where what lies beneath has one.
  void OnMenu(std::function<bool()> beneath) { m_menuBeneath = std::move(beneath); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int nWidth) const override;
  void Say(const QString& sSentence);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  std::function<bool()> m_menuBeneath;
};

class EmptyNotice : public QWidget {
 public:
  explicit EmptyNotice(QWidget* parent = nullptr);

  /// Shows the texts, which can be selected and copied; an empty title hides the notice.
  void Say(const QString& sTitle, const QString& sSentence);
  /// The same with a button beneath, which calls the action when it is pressed: once, and only
  /// until something else is said.
  void Ask(const QString& sTitle, const QString& sSentence, const QString& sButton,
           std::function<void()> action);
  /// The menu of what lies beneath is wanted here, too, where it has one.
  void OnMenu(std::function<bool()> beneath) { m_sentence->OnMenu(std::move(beneath)); }

 private:
  void Press();

  QLabel* m_title;
  SentenceView* m_sentence;
  QPushButton* m_button;
  std::function<void()> m_action;
};

}  // namespace orvane::controls
