// The SQL statement above a grid's rows, coloured, to be read and copied.
// Part of the grid's window; user-interface thread.
#pragma once

#include <Qsci/qsciscintilla.h>

namespace orvane::controls {

class SqlLexer;

class SqlPane : public QsciScintilla {
 public:
  explicit SqlPane(QWidget* parent = nullptr);

  void Sql(const QString& sSql);
  /// As high as the statement, between three lines and eight.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void ApplyPalette();
  int HeightOfLines(int nLines) const;

  SqlLexer* m_lexer;
};

}  // namespace orvane::controls
