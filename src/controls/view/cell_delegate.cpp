#include "controls/view/cell_delegate.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "controls/values/tip_text.h"
#include "controls/view/cell_editor.h"
#include "controls/view/row_model.h"

namespace orvane::controls {

namespace {

QFont FontOf(const Cell& cell, const QFont& font) {
  QFont cellFont = font;
  cellFont.setItalic(cell.bNull);
  cellFont.setStrikeOut(cell.bDeleted);
  return cellFont;
}

/// What the eye tells from the other cells in light and in dark looks.
QColor EditedBack(const QPalette& palette) {
  constexpr double kShare = 0.22;
  const QColor base = palette.color(QPalette::Base);
  const QColor mark = palette.color(QPalette::Highlight);
  const auto mixed = [](int nBase, int nMark) {
    return static_cast<int>(nBase + (nMark - nBase) * kShare);
  };
  return {mixed(base.red(), mark.red()), mixed(base.green(), mark.green()),
          mixed(base.blue(), mark.blue())};
}

/// The mark of an edited cell for those who see no difference of colour.
void PaintEditedCorner(QPainter& painter, const QRect& rect, const QColor& colour) {
  constexpr int kSize = 6;
  const QPoint corner = rect.topLeft();
  painter.save();
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(QPolygon({corner, corner + QPoint(kSize, 0), corner + QPoint(0, kSize)}));
  painter.restore();
}

QString Fitting(const Cell& cell, const QFontMetrics& metrics, int nWidth) {
  const QString& sText = cell.sText;
  // A number whose end is missing reads as another number.
  if (cell.bNumber && metrics.horizontalAdvance(sText) > nWidth) {
    const int nMark = std::max(1, metrics.horizontalAdvance(u'#'));
    return QString(std::max(1, nWidth / nMark), u'#');
  }
  // Shaping a text costs time for each character, so the part that can never be in sight is left
  // out before the rest is measured. Nothing that is drawn is narrower than two pixels.
  const int nCharacters = std::max(0, nWidth) / 2 + 1;
  if (sText.size() <= nCharacters) return metrics.elidedText(sText, Qt::ElideRight, nWidth);
  return metrics.elidedText(sText.left(nCharacters) + QChar(0x2026), Qt::ElideRight, nWidth);
}

}  // namespace

void DrawFocus(QPainter& painter, const QRect& rect, const QColor& colour) {
  constexpr int kWidth = 2;
  painter.save();
  QPen pen(colour, kWidth);
  pen.setJoinStyle(Qt::MiterJoin);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(rect.adjusted(kWidth / 2, kWidth / 2, -kWidth / 2, -kWidth / 2));
  painter.restore();
}

int CellDelegate::WidthFor(int nText) {
  return nText + 2 * kMargin + 2;
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  if (!CellOf(index).isValid()) return QStyledItemDelegate::paint(painter, option, index);
  const Cell cell = ShownAt(index);
  const bool bSelected = option.state.testFlag(QStyle::State_Selected);
  const auto group =
      option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
  if (bSelected) {
    painter->fillRect(option.rect, option.palette.brush(group, QPalette::Highlight));
  } else if (cell.bEdited) {
    painter->fillRect(option.rect, EditedBack(option.palette));
  }

  const auto role = bSelected    ? QPalette::HighlightedText
                    : cell.bNull ? QPalette::PlaceholderText
                                 : QPalette::Text;
  const QFont font = FontOf(cell, option.font);
  if (cell.bEdited) PaintEditedCorner(*painter, option.rect, option.palette.color(group, role));
  const QRect text = option.rect.adjusted(kMargin, 0, -kMargin, 0);
  painter->setFont(font);
  painter->setPen(option.palette.color(group, role));
  const QFontMetrics metrics(font);
  const QString sFitting = Fitting(cell, metrics, text.width());
  painter->drawText(text, static_cast<int>(cell.alignment) | Qt::TextSingleLine, sFitting);
  if (m_tooNarrow && sFitting != cell.sText) m_tooNarrow(index.column(), cell, metrics);

  if (option.state.testFlag(QStyle::State_HasFocus)) {
    const auto frame = bSelected ? QPalette::HighlightedText : QPalette::Highlight;
    DrawFocus(*painter, option.rect, option.palette.color(group, frame));
  }
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
  const QModelIndex at = CellOf(index);
  if (!at.isValid()) return QStyledItemDelegate::helpEvent(event, view, option, index);
  if (event->type() != QEvent::ToolTip) return false;
  const platform::Value vtValue = m_model.ValueAt(at.row(), at.column());
  const Cell cell = ShownAt(index);
  const int nWidth = QFontMetrics(FontOf(cell, option.font)).horizontalAdvance(cell.sText);
  const CellFormat::Part whole = m_model.Format().Beginning(vtValue, kMostTipCharacters);
  const bool bWholeInSight =
      nWidth <= option.rect.width() - 2 * kMargin && (cell.bNull || cell.sText == whole.sText);
  if (bWholeInSight) {
    QToolTip::hideText();
    return true;
  }
  QToolTip::showText(
      event->globalPos(),
      TipText(whole.sText, "To see it whole, copy the cell with Ctrl+C.", whole.nWhole));
  return true;
}

bool CellDelegate::EditsElsewhere(const QModelIndex& index) const {
  const QModelIndex at = CellOf(index);
  if (!at.isValid() || CellEditor::TakesInLine(m_model.ValueAt(at.row(), at.column()))) {
    return false;
  }
  if (m_tooLong) m_tooLong(at);
  return true;
}

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  const QModelIndex at = CellOf(index);
  if (!at.isValid() || EditsElsewhere(index)) return nullptr;
  auto* editor = new CellEditor(
      {m_model.ValueAt(at.row(), at.column()),
       ColumnTakes(m_model.Recordset()->FieldAt(at.column())), ValueInput(m_model.Format().Zone())},
      parent);
  editor->setFont(option.font);
  // What is typed stands where the value stood; the line keeps two pixels of its own.
  constexpr int kOwnMargin = 2;
  editor->setTextMargins(kMargin - kOwnMargin, 0, kMargin - kOwnMargin, 0);
  editor->setAlignment(ShownAt(index).alignment);
  connect(editor, &QLineEdit::textEdited, this, [this] {
    if (m_typed) m_typed();
  });
  return editor;
}

void CellDelegate::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                const QModelIndex& index) const {
  const auto& line = *static_cast<CellEditor*>(editor);
  const QModelIndex at = CellOf(index);
  if (line.Touched() && at.isValid()) m_model.Edit(at, line.Kept());
}

void CellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex& /*index*/) const {
  editor->setGeometry(option.rect);
}

bool CellDelegate::eventFilter(QObject* watched, QEvent* event) {
  auto* editor = dynamic_cast<CellEditor*>(watched);
  if (!editor || event->type() != QEvent::KeyPress) {
    return QStyledItemDelegate::eventFilter(watched, event);
  }
  const auto& key = *static_cast<QKeyEvent*>(event);
  const bool bShift = key.modifiers().testFlag(Qt::ShiftModifier);
  switch (key.key()) {
    case Qt::Key_Enter:
    case Qt::Key_Return:
      if (key.modifiers().testFlag(Qt::AltModifier)) {
        // The view's own command takes what was typed into a window.
        QCoreApplication::sendEvent(parent(), event);
        return true;
      }
      Leave(*editor, {bShift ? Qt::Key_Up : Qt::Key_Down});
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
      Leave(*editor, {key.key()});
      return true;
    case Qt::Key_Backtab:
      Leave(*editor, {KeyToBeside(Qt::Key_Left)});
      return true;
    case Qt::Key_Tab: {
      Leave(*editor, {KeyToBeside(Qt::Key_Right)});
      return true;
    }
    case Qt::Key_0:
      if (key.modifiers() != Qt::ControlModifier) return false;
      editor->SetNull();
      Leave(*editor, {});
      return true;
    case Qt::Key_Escape:
      emit closeEditor(editor, RevertModelCache);
      return true;
    default:
      return false;
  }
}

void CellDelegate::Leave(CellEditor& editor, std::initializer_list<int> keys) {
  if (editor.Touched() && !editor.Take()) return;  // the line says what is wrong
  emit commitData(&editor);
  emit closeEditor(&editor);
  // The view knows which cell is next to which, also where columns were moved or hidden.
  for (const int nKey : keys) {
    QKeyEvent press(QEvent::KeyPress, nKey, Qt::NoModifier);
    QCoreApplication::sendEvent(parent(), &press);
  }
}

}  // namespace orvane::controls
