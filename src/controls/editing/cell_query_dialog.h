// Asks for one statement whose values go into cells, with the last ones at hand. It runs nothing.
// Shown by the editing of a grid; user-interface thread.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace orvane::controls {

class CellQueryDialog : public QDialog {
  Q_OBJECT

 public:
  /// Statements that are kept, the last one first.
  static constexpr qsizetype kMostKept = 20;

  /// sCell names the cell that is filled.
  CellQueryDialog(const QString& sCell, const QStringList& last, QWidget* parent);

  QString Statement() const;
  /// Says what came of the statement, and waits for another one.
  void Say(const QString& sSentence);

 signals:
  void RunAsked();

 private:
  QComboBox* m_last;
  QPlainTextEdit* m_statement;
  QLabel* m_sentence;
  QPushButton* m_run;
};

/// With the statement in front of the others.
QStringList WithLast(QStringList last, const QString& sStatement);

}  // namespace orvane::controls
