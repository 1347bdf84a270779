#include "controls/view/value_dialog.h"

#include <QBuffer>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QImageReader>
#include <QLocale>
#include <QPixmap>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>
#include <vector>

#include "controls/values/cell_format.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/utf8.h"

namespace orvane::controls {

using platform::Bytes;
using platform::Text;
using platform::Value;

namespace {

constexpr qsizetype kBytesOfLine = 16;
/// More than this many bytes are not written as digits: nobody would edit them by hand.
constexpr std::size_t kMostHexBytes = 250'000;

/// A longer text is laid out for seconds, as it may be one line.
constexpr qsizetype kMostTypedCharacters = 250'000;
/// Others take seconds to be read.
constexpr qsizetype kMostPictureBytes = 20'000'000;
constexpr qint64 kMostPixels = 25'000'000;

struct Line {
  QString sText;
  QString sBreak;
};

std::vector<Line> LinesOf(const QString& sText) {
  std::vector<Line> lines(1);
  for (qsizetype n = 0; n < sText.size(); ++n) {
    const QChar c = sText.at(n);
    const bool bPair = c == u'\r' && n + 1 < sText.size() && sText.at(n + 1) == u'\n';
    if (c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator) {
      lines.back().sBreak = bPair ? QStringLiteral("\r\n") : QString(c);
      lines.emplace_back();
      if (bPair) ++n;
    } else {
      lines.back().sText += c;
    }
  }
  return lines;
}

QByteArray Raw(const Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

QString HexLines(const Bytes& bytes) {
  const QByteArray raw = Raw(bytes);
  QStringList lines;
  for (qsizetype n = 0; n < raw.size(); n += kBytesOfLine) {
    lines << QString::fromLatin1(raw.mid(n, kBytesOfLine).toHex(' ').toUpper());
  }
  return lines.join(u'\n');
}

/// The picture that the bytes are, or none with the reason.
std::pair<QPixmap, QString> PictureOf(const QByteArray& raw) {
  QBuffer buffer;
  buffer.setData(raw);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  const QString sNone = "These bytes are no picture.";
  const QSize size = reader.canRead() ? reader.size() : QSize();
  if (!reader.canRead()) return {{}, sNone};
  if (raw.size() > kMostPictureBytes || qint64{size.width()} * size.height() > kMostPixels) {
    return {{}, "This picture is too large to be shown here."};
  }
  const QImage image = reader.read();
  return image.isNull() ? std::pair(QPixmap(), sNone)
                        : std::pair(QPixmap::fromImage(image), QString());
}

/// The characters that mark frames in the toolkit's documents, which makes line breaks of them,
/// each with one that stands in for it; none for a text that has none of them.
std::vector<std::pair<QChar, QChar>> StandInsFor(const QString& sText) {
  constexpr char16_t kFirstPrivate = 0xE000;
  constexpr char16_t kLastPrivate = 0xF8FF;
  std::vector<std::pair<QChar, QChar>> standIns;
  char16_t next = kLastPrivate;
  for (const QChar mark : {QChar(0xFDD0), QChar(0xFDD1)}) {
    if (!sText.contains(mark)) continue;
    while (next > kFirstPrivate && sText.contains(QChar(next))) --next;
    standIns.emplace_back(mark, QChar(next--));
  }
  return standIns;
}

QPlainTextEdit* AddPage(QTabWidget& pages, const QString& sLabel, const char* sName) {
  auto* page = new QPlainTextEdit;
  page->setObjectName(sName);
  page->setAccessibleName(sLabel);
  pages.addTab(page, sLabel);
  return page;
}

}  // namespace

Text WithLineBreaksOf(const Text& sOriginal, const QString& sEdited) {
  const auto before = LinesOf(QString::fromStdString(sOriginal));
  auto now = LinesOf(sEdited);
  const QString sUsual =
      before.front().sBreak.isEmpty() ? QStringLiteral("\n") : before.front().sBreak;
  const std::size_t nLeast = std::min(before.size(), now.size());
  std::size_t nFront = 0;
  while (nFront < nLeast && before[nFront].sText == now[nFront].sText) ++nFront;
  std::size_t nBack = 0;
  while (nBack < nLeast - nFront &&
         before[before.size() - 1 - nBack].sText == now[now.size() - 1 - nBack].sText) {
    ++nBack;
  }
  QString sText;
  for (std::size_t n = 0; n < now.size(); ++n) {
    sText += now[n].sText;
    if (n + 1 == now.size()) break;
    QString sBreak = sUsual;
    if (n < nFront && !before[n].sBreak.isEmpty()) sBreak = before[n].sBreak;
    if (n >= now.size() - nBack) sBreak = before[before.size() - (now.size() - n)].sBreak;
    sText += sBreak;
  }
  return sText.toStdString();
}

ValueDialog::ValueDialog(EditedCell cell, const QString& sColumn, QWidget* parent)
    : QDialog(parent),
      m_cell(std::move(cell)),
      m_pages(new QTabWidget),
      m_sentence(new QLabel),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
  setObjectName("valueDialog");
  setWindowTitle(sColumn);
  setAttribute(Qt::WA_DeleteOnClose);
  m_typed = AddPage(*m_pages, IsBytes() ? "&Hexadecimal" : "&Text", "typed");
  if (IsBytes()) {
    m_typed->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_asText = AddPage(*m_pages, "As &Text", "asText");
    m_asText->setReadOnly(true);
    m_asPicture = new QLabel("These bytes are no picture.");
    m_asPicture->setObjectName("asPicture");
    m_asPicture->setAlignment(Qt::AlignCenter);
    auto* area = new QScrollArea;
    area->setWidget(m_asPicture);
    area->setWidgetResizable(true);
    m_pages->addTab(area, "As &Picture");
    m_length = new QLabel;
    m_length->setObjectName("length");
    connect(m_typed, &QPlainTextEdit::textChanged, this, [this] { ShowBytes(); });
    connect(m_pages, &QTabWidget::currentChanged, this, [this] { ShowPage(); });
    const auto* bytes = m_cell.vtValue.As<Bytes>();
    const bool bTooMany = bytes && bytes->size() > kMostHexBytes;
    m_typed->setReadOnly(bTooMany);
    if (bTooMany) {
      m_typed->setPlaceholderText(
          QStringLiteral("%1 bytes, too many to be typed").arg(bytes->size()));
    } else if (bytes) {
      m_typed->setPlainText(HexLines(*bytes));
    }
    ShowBytes();
  } else if (const auto* text = m_cell.vtValue.As<Text>();
             text && std::ssize(*text) > kMostTypedCharacters) {
    m_typed->setPlainText(CellFormat().Beginning(*text, kMostTypedCharacters).sText);
    m_sentence->setText(
        "This text is too long to be typed here, and only its beginning is shown. Copy the cell to "
        "have it whole; change it by a statement.");
  } else {
    QString sText = QString::fromStdString(Original());
    m_standIns = StandInsFor(sText);
    for (const auto& [mark, standIn] : m_standIns) sText.replace(mark, standIn);
    m_typed->setPlainText(sText);
    m_typed->setPlaceholderText(m_cell.vtValue.IsNull() ? "NULL" : QString());
    if (!platform::IsUtf8(m_cell.input.Shown(m_cell.vtValue))) {
      m_typed->setPlaceholderText(kNoCharacters);
    }
  }
  m_typed->document()->setModified(false);

  m_sentence->setObjectName("sentence");
  m_sentence->setTextFormat(Qt::PlainText);
  m_sentence->setWordWrap(true);
  if (m_sentence->text().isEmpty()) m_sentence->hide();
  connect(m_buttons, &QDialogButtonBox::accepted, this, &ValueDialog::accept);
  connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(m_pages, 1);
  if (m_length) layout->addWidget(m_length);
  layout->addWidget(m_sentence);
  layout->addWidget(m_buttons);
  resize(fontMetrics().averageCharWidth() * 78, fontMetrics().height() * 26);
  if (!m_sentence->text().isEmpty()) OnlyShow();
  // Otherwise the tabs would have the keys, and what is typed would be lost.
  m_typed->setFocus();
}

void ValueDialog::OnlyShow() {
  m_typed->setReadOnly(true);
  m_buttons->setStandardButtons(QDialogButtonBox::Close);
}

bool ValueDialog::IsBytes() const {
  return KindOf(m_cell.takes.type) == platform::ValueKind::Bytes ||
         m_cell.vtValue.Kind() == platform::ValueKind::Bytes;
}

Text ValueDialog::Original() const {
  const Text sShown = m_cell.input.Shown(m_cell.vtValue);
  return platform::IsUtf8(sShown) ? sShown : Text();
}

Value ValueDialog::Read() const {
  // The document's own text: the plain one has blanks for those that do not break.
  QString sRaw = m_typed->document()->toRawText();
  for (const auto& [mark, standIn] : m_standIns) sRaw.replace(standIn, mark);
  if (!IsBytes()) {
    const Text sText = WithLineBreaksOf(Original(), sRaw);
    if (sText.empty() && KindOf(m_cell.takes.type) == platform::ValueKind::Text) return sText;
    return m_cell.input.Read(sText, m_cell.takes, m_cell.vtValue);
  }
  QString sDigits = m_typed->toPlainText();
  return m_cell.input.Read("0x" + sDigits.simplified().remove(u' ').toStdString(),
                           platform::DataType::Binary);
}

void ValueDialog::ShowBytes() {
  Bytes bytes;
  if (m_typed->isReadOnly()) {
    if (const auto* whole = m_cell.vtValue.As<Bytes>()) bytes = *whole;
  } else {
    try {
      const Value vtTyped = Read();
      if (const auto* typed = vtTyped.As<Bytes>()) bytes = *typed;
    } catch (const platform::Failure&) {
      return;  // in the middle of a byte
    }
  }
  const QString sNumber = QLocale(QLocale::English).toString(static_cast<qlonglong>(bytes.size()));
  m_length->setText(bytes.size() == 1 ? QStringLiteral("1 byte")
                                      : QStringLiteral("%1 bytes").arg(sNumber));
  m_bytes = Raw(bytes);
  m_bTextShown = m_bPictureShown = false;
  ShowPage();
}

void ValueDialog::ShowPage() {
  if (m_pages->currentIndex() == kTextPage && !m_bTextShown) {
    const qsizetype nShown = std::min(m_bytes.size(), kMostTypedCharacters);
    m_asText->setPlainText(QString::fromUtf8(m_bytes.constData(), nShown));
    m_pages->setTabToolTip(kTextPage, nShown < m_bytes.size()
                                          ? QStringLiteral("The first 250,000 bytes as text")
                                          : QString());
    m_bTextShown = true;
  } else if (m_pages->currentIndex() == kPicturePage && !m_bPictureShown) {
    const auto [picture, sWhyNone] = PictureOf(m_bytes);
    m_asPicture->setText(sWhyNone);
    if (!picture.isNull()) m_asPicture->setPixmap(picture);
    m_bPictureShown = true;
  }
}

void ValueDialog::accept() {
  if (m_typed->document()->isModified()) {
    try {
      m_taken = Read();
    } catch (const platform::Failure& failure) {
      m_sentence->setText(QString::fromStdString(failure.Description()));
      m_sentence->show();
      return;
    }
  }
  QDialog::accept();
}

}  // namespace orvane::controls
