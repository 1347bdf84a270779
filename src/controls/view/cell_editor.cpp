#include "controls/view/cell_editor.h"

#include <QAccessible>
#include <QCompleter>
#include <QPainter>
#include <algorithm>
#include <limits>
#include <utility>

#include "controls/view/cell_delegate.h"
#include "platform/failure.h"
#include "platform/utf8.h"

namespace orvane::controls {

using platform::Text;
using platform::Value;
using platform::ValueKind;

namespace {

/// In characters.
constexpr int kProblemWidth = 52;
constexpr int kProblemMargin = 4;
constexpr std::size_t kMostCharactersOfLine = 10'000;

bool TakesEmptyText(platform::DataType type) {
  return KindOf(type) == ValueKind::Text || KindOf(type) == ValueKind::Null;
}

}  // namespace

bool CellEditor::TakesInLine(const Value& vtValue) {
  if (const auto* text = vtValue.As<Text>()) return text->size() <= kMostCharactersOfLine;
  const auto* bytes = vtValue.As<platform::Bytes>();
  return !bytes || bytes->size() <= kMostCharactersOfLine / 2;  // two digits each
}

CellEditor::CellEditor(EditedCell cell, QWidget* parent)
    : QLineEdit(parent), m_cell(std::move(cell)), m_bNull(m_cell.vtValue.IsNull()) {
  setObjectName("cellEditor");
  setAccessibleName("Value");
  setFrame(false);
  setAutoFillBackground(true);
  setMaxLength(std::numeric_limits<int>::max());  // a cell holds more than a line of a form
  const Text sShown = m_cell.input.Shown(m_cell.vtValue);
  if (platform::IsUtf8(sShown)) {
    setText(QString::fromStdString(sShown));
    setPlaceholderText(m_bNull ? "NULL" : QString());
  } else {
    setPlaceholderText(kNoCharacters);
  }
  if (m_cell.takes.type == platform::DataType::Boolean) {
    auto* words = new QCompleter(QStringList{"True", "False"}, this);
    words->setCompletionMode(QCompleter::InlineCompletion);
    words->setCaseSensitivity(Qt::CaseInsensitive);
    setCompleter(words);
  }
  connect(this, &QLineEdit::textEdited, this, [this] { Edited(); });
}

CellEditor::~CellEditor() {
  delete m_problem.data();
}

void CellEditor::Edited() {
  m_bTouched = true;
  m_bNull = text().isEmpty() && !TakesEmptyText(m_cell.takes.type);
  setPlaceholderText(m_bNull ? "NULL" : "empty text");
  ShowProblem({});
}

void CellEditor::SetNull() {
  m_bTouched = true;
  m_bNull = true;
  clear();
  setPlaceholderText("NULL");
  ShowProblem({});
}

Value CellEditor::Read() const {
  if (!m_bTouched) return m_cell.vtValue;
  if (m_bNull) return {};
  const Text sText = text().toStdString();
  // Of null and of the empty text the same is shown; this is what was typed.
  if (sText.empty() && TakesEmptyText(m_cell.takes.type)) return sText;
  return m_cell.input.Read(sText, m_cell.takes, m_cell.vtValue);
}

std::optional<Value> CellEditor::Take() {
  try {
    return Read();
  } catch (const platform::Failure& failure) {
    ShowProblem(QString::fromStdString(failure.Description()));
    return std::nullopt;
  }
}

Value CellEditor::Kept() const {
  try {
    return Read();
  } catch (const platform::Failure&) {
    return text().toStdString();
  }
}

QString CellEditor::Problem() const {
  return m_problem ? m_problem->text() : QString();
}

void CellEditor::ShowProblem(const QString& sSentence) {
  if (sSentence == Problem()) return;
  setAccessibleDescription(sSentence);
  QAccessibleEvent told(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&told);
  delete m_problem.data();
  if (sSentence.isEmpty() || !parentWidget()) return;
  m_problem = new QLabel(sSentence, parentWidget());
  m_problem->setObjectName("cellProblem");
  m_problem->setTextFormat(Qt::PlainText);
  m_problem->setWordWrap(true);
  m_problem->setMargin(kProblemMargin);
  m_problem->setFrameShape(QFrame::Box);
  m_problem->setAutoFillBackground(true);
  m_problem->setBackgroundRole(QPalette::ToolTipBase);
  m_problem->setForegroundRole(QPalette::ToolTipText);
  PlaceProblem();
  m_problem->show();
}

void CellEditor::PlaceProblem() {
  if (!m_problem) return;
  const QRect room = parentWidget()->rect();
  const int nWidth =
      std::min(kProblemWidth * m_problem->fontMetrics().averageCharWidth(), room.width());
  m_problem->resize(nWidth, m_problem->heightForWidth(nWidth));
  // Above the line where there is no room beneath it.
  const bool bBeneath = geometry().bottom() + m_problem->height() <= room.bottom();
  const int y = bBeneath ? geometry().bottom() + 1 : geometry().top() - m_problem->height();
  m_problem->move(std::clamp(geometry().left(), 0, std::max(0, room.width() - nWidth)),
                  std::max(0, y));
  m_problem->raise();
}

void CellEditor::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  // Beside values that only stand there, what is typed into would be told by its cursor alone.
  QPainter painter(this);
  DrawFocus(painter, rect(), palette().color(QPalette::Highlight));
}

void CellEditor::moveEvent(QMoveEvent* event) {
  QLineEdit::moveEvent(event);
  PlaceProblem();
}

void CellEditor::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  PlaceProblem();
}

}  // namespace orvane::controls
