// The SQL statement above a grid's rows, coloured, to be read and copied.
// Part of the grid's window; user-interface thread.
#pragma once

#include <Qsci/qsciscintilla.h>

#include <functional>
#include <utility>

namespace orvane::sql_look {
class SqlWords;
}

namespace orvane::controls {

class SqlPane : public QsciScintilla {
 public:
  explicit SqlPane(QWidget* parent = nullptr);

  /// A statement, of which nothing is known yet.
  void Sql(const QString& sSql);
  /// Tells beneath the statement how long it took and when; no part of its text.
  void Took(const QString& sTime);
  /// Called when the statement may take another number of lines, as the pane is as wide as it is.
  void OnRewrapped(std::function<void()> handler) { m_rewrapped = std::move(handler); }
  /// As high as the statement's lines in the pane as wide as it is, between three lines and eight.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  /// Copies the whole statement where nothing of it is selected.
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ApplyPalette();
  void ShowTime();
  int HeightOfLines(int nLines) const;
  /// Lines as they are seen: a long one takes several.
  int SeenLines() const;

  sql_look::SqlWords* m_lexer;
  QString m_sTime;
  std::function<void()> m_rewrapped;
};

}  // namespace orvane::controls
