#include "controls/editing/cell_query_dialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QVBoxLayout>

#include "widgets/drop_down_box.h"

namespace orvane::controls {

CellQueryDialog::CellQueryDialog(const QString& sCell, const QStringList& last, QWidget* parent)
    : QDialog(parent),
      m_last(new widgets::DropDownBox),
      m_statement(new QPlainTextEdit),
      m_sentence(new QLabel) {
  setObjectName("cellQuery");
  setWindowTitle("Fill from a Query");
  setAttribute(Qt::WA_DeleteOnClose);
  auto* what = new QLabel(QStringLiteral("Statement whose first value goes into %1:").arg(sCell));
  what->setTextFormat(Qt::PlainText);
  what->setWordWrap(true);
  what->setBuddy(m_statement);
  m_statement->setObjectName("statement");
  m_statement->setAccessibleName("Statement");
  m_statement->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_statement->setTabChangesFocus(true);
  if (!last.isEmpty()) m_statement->setPlainText(last.first());
  m_statement->selectAll();

  m_last->setObjectName("lastStatements");
  m_last->setAccessibleName("Last statements");
  m_last->setPlaceholderText("Last statements");
  for (const QString& sStatement : last) m_last->addItem(sStatement.simplified(), sStatement);
  m_last->setCurrentIndex(-1);
  m_last->setVisible(!last.isEmpty());
  connect(m_last, &QComboBox::activated, this, [this](int nEntry) {
    m_statement->setPlainText(m_last->itemData(nEntry).toString());
    m_statement->setFocus();
  });

  m_sentence->setObjectName("sentence");
  m_sentence->setTextFormat(Qt::PlainText);
  m_sentence->setWordWrap(true);
  m_sentence->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_sentence->hide();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  m_run = buttons->addButton("&Fill", QDialogButtonBox::ActionRole);
  m_run->setObjectName("run");
  connect(m_run, &QPushButton::clicked, this, &CellQueryDialog::RunAsked);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  const auto follow = [this] { m_run->setEnabled(!Statement().trimmed().isEmpty()); };
  connect(m_statement, &QPlainTextEdit::textChanged, this, follow);
  follow();

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(what);
  layout->addWidget(m_last);
  layout->addWidget(m_statement, 1);
  layout->addWidget(m_sentence);
  layout->addWidget(buttons);
  m_run->setDefault(true);
  resize(fontMetrics().averageCharWidth() * 65, fontMetrics().height() * 16);
}

QString CellQueryDialog::Statement() const {
  return m_statement->toPlainText();
}

void CellQueryDialog::Say(const QString& sSentence) {
  m_sentence->setText(sSentence);
  m_sentence->setVisible(!sSentence.isEmpty());
  m_statement->setFocus();
}

QStringList WithLast(QStringList last, const QString& sStatement) {
  last.removeAll(sStatement);
  last.prepend(sStatement);
  while (last.size() > CellQueryDialog::kMostKept) last.removeLast();
  return last;
}

}  // namespace orvane::controls
