#include "controls/view/pasted_page.h"

#include <QHash>
#include <QTextDocumentFragment>
#include <algorithm>
#include <utility>

#include "controls/view/clipboard_text.h"
#include "controls/view/spreadsheet_value.h"

namespace orvane::controls {

namespace {

constexpr int kMostSpan = 20'000;
constexpr int kMostEntityLength = 32;
constexpr qsizetype kMostEntityNames = 300;

struct Tag {
  QString sName;  ///< in small letters
  bool bEnd = false;
  QHash<QString, QString> attributes;
};

bool IsBlank(QChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

class PageReader {
 public:
  explicit PageReader(QStringView sPage) : m_sPage(sPage) {}

  std::optional<CopiedCells> Read() {
    while (m_n < m_sPage.size() && !m_bDone && m_nCells <= kMostReadCells) {
      const QChar c = m_sPage[m_n];
      if (c == u'<' && ReadMarkup()) continue;
      if (c == u'&' && ReadEntity()) continue;
      AppendRaw(c);
      ++m_n;
    }
    EndRow();
    if (m_nCells == 0 || m_nCells > kMostReadCells) return std::nullopt;
    return std::move(m_rows);
  }

 private:
  // ---- markup

  bool ReadMarkup() {
    const QStringView sRest = m_sPage.sliced(m_n);
    if (sRest.startsWith(u"<!--")) return SkipBehind(u"-->");
    if (sRest.startsWith(u"<!") || sRest.startsWith(u"<?")) return SkipBehind(u">");
    const bool bEnd = sRest.startsWith(u"</");
    const qsizetype nName = m_n + (bEnd ? 2 : 1);
    if (nName >= m_sPage.size() || !m_sPage[nName].isLetter()) return false;
    Tag tag;
    tag.bEnd = bEnd;
    m_n = nName;
    tag.sName = ReadWord(u"/>").toString().toLower();
    ReadAttributes(tag);
    const bool bSkipped = tag.sName == u"style" || tag.sName == u"script" || tag.sName == u"title";
    if (bSkipped && !bEnd) {
      const QString sClosing = QStringLiteral("</") + tag.sName;
      const qsizetype nEnd = m_sPage.indexOf(sClosing, m_n, Qt::CaseInsensitive);
      m_n = nEnd < 0 ? m_sPage.size() : nEnd;
      return true;
    }
    Take(tag);
    return true;
  }

  bool SkipBehind(QStringView sEnd) {
    const qsizetype nEnd = m_sPage.indexOf(sEnd, m_n);
    m_n = nEnd < 0 ? m_sPage.size() : nEnd + sEnd.size();
    return true;
  }

  QStringView ReadWord(QStringView sEnds) {
    const qsizetype nFirst = m_n;
    while (m_n < m_sPage.size() && !IsBlank(m_sPage[m_n]) && !sEnds.contains(m_sPage[m_n])) ++m_n;
    return m_sPage.sliced(nFirst, m_n - nFirst);
  }

  void SkipBlanks() {
    while (m_n < m_sPage.size() && IsBlank(m_sPage[m_n])) ++m_n;
  }

  void ReadAttributes(Tag& tag) {
    for (SkipBlanks(); m_n < m_sPage.size(); SkipBlanks()) {
      if (m_sPage[m_n] == u'>') {
        ++m_n;
        return;
      }
      const QString sName = ReadWord(u"=/>").toString().toLower();
      SkipBlanks();
      if (sName.isEmpty() || m_n >= m_sPage.size() || m_sPage[m_n] != u'=') {
        if (sName.isEmpty()) ++m_n;  // a lone sign
        if (!sName.isEmpty()) tag.attributes.insert(sName, {});
        continue;
      }
      ++m_n;
      SkipBlanks();
      const QChar quote = m_n < m_sPage.size() ? m_sPage[m_n] : QChar();
      if (quote != u'"' && quote != u'\'') {
        tag.attributes.insert(sName, ReadWord(u">").toString());
        continue;
      }
      const qsizetype nEnd = m_sPage.indexOf(quote, m_n + 1);
      const qsizetype nStop = nEnd < 0 ? m_sPage.size() : nEnd;
      // Quotes of a format.
      tag.attributes.insert(sName, m_sPage.sliced(m_n + 1, nStop - m_n - 1)
                                       .toString()
                                       .replace(QLatin1String("&quot;"), QLatin1String("\"")));
      m_n = std::min(nStop + 1, m_sPage.size());
    }
  }

  void Take(const Tag& tag) {
    if (tag.sName == u"table") return TakeTable(tag);
    if (m_nDepth == 0) return;
    const bool bCell = tag.sName == u"td" || tag.sName == u"th";
    if (m_nDepth == 1 && tag.sName == u"tr") {
      EndRow();
      m_bRow = !tag.bEnd;
    } else if (m_nDepth == 1 && bCell) {
      EndCell();
      if (!tag.bEnd) BeginCell(tag);
    } else if (!m_bCell || tag.bEnd) {
      return;
    } else if (tag.sName == u"br") {
      AppendFixed(u'\n');
    } else if (tag.sName == u"i") {
      m_bItalic = true;
    } else if ((tag.sName == u"p" || tag.sName == u"div") && !m_sCell.isEmpty()) {
      if (!m_sCell.endsWith(u'\n')) AppendFixed(u'\n');
    }
  }

  void TakeTable(const Tag& tag) {
    if (!tag.bEnd) {
      ++m_nDepth;
      if (m_nDepth == 1) m_bOwn = tag.attributes.contains(QLatin1String(kOwnTableMark));
    } else if (m_nDepth > 0 && --m_nDepth == 0) {
      m_bDone = true;
    }
  }

  // ---- text

  bool ReadEntity() {
    const qsizetype nEnd =
        m_sPage.sliced(m_n, std::min<qsizetype>(kMostEntityLength, m_sPage.size() - m_n))
            .indexOf(u';');
    if (nEnd < 2) return false;
    const QString sCharacter = CharacterOf(m_sPage.sliced(m_n + 1, nEnd - 1));
    if (sCharacter.isEmpty()) return false;
    for (const QChar c : sCharacter) AppendFixed(c);
    m_n += nEnd + 1;
    return true;
  }

  QString CharacterOf(QStringView sName) {
    if (sName.startsWith(u'#')) {
      const bool bHex = sName.size() > 1 && sName[1].toLower() == u'x';
      bool bNumber = false;
      const uint nCode = sName.sliced(bHex ? 2 : 1).toUInt(&bNumber, bHex ? 16 : 10);
      if (!bNumber) return {};
      const bool bCharacter = nCode <= QChar::LastValidCodePoint && !QChar::isSurrogate(nCode);
      const auto character = static_cast<char32_t>(
          bCharacter ? nCode : static_cast<uint>(QChar::ReplacementCharacter));
      return QString::fromUcs4(&character, 1);
    }
    const auto known = m_entities.constFind(sName.toString());
    if (known != m_entities.constEnd()) return *known;
    const bool bName = std::ranges::all_of(
        sName, [](QChar c) { return c.unicode() < 0x80 && c.isLetterOrNumber(); });
    if (!bName || m_entities.size() >= kMostEntityNames) return {};
    const QString sEntity = u'&' + sName.toString() + u';';
    // The toolkit knows the names; there is nothing in these few letters that it could load.
    QString sCharacter = sName == u"nbsp" ? QString(QChar::Nbsp)
                                          : QTextDocumentFragment::fromHtml(sEntity).toPlainText();
    if (sCharacter == sEntity) sCharacter.clear();
    return m_entities.insert(sName.toString(), sCharacter).value();
  }

  /// A character of the source, in which line breaks are there for whoever reads that.
  void AppendRaw(QChar c) {
    if (!m_bCell) return;
    if (c == u'\n' || c == u'\r') {
      while (m_sCell.size() > m_nFixed && IsBlank(m_sCell.back())) m_sCell.chop(1);
      m_bBlankDue = true;
      return;
    }
    if (m_bBlankDue && IsBlank(c)) return;
    GiveBlank();
    m_sCell += c;
  }

  /// A character that is meant as it is.
  void AppendFixed(QChar c) {
    if (!m_bCell) return;
    if (c != u'\n') GiveBlank();
    m_bBlankDue = false;
    m_sCell += c;
    m_nFixed = m_sCell.size();
  }

  void GiveBlank() {
    const bool bWithin = !m_sCell.isEmpty() && !m_sCell.endsWith(u'\n');
    if (std::exchange(m_bBlankDue, false) && bWithin) m_sCell += u' ';
  }

  // ---- cells

  void BeginCell(const Tag& tag) {
    m_bRow = true;
    m_bCell = true;
    m_cell = tag;
    m_sCell.clear();
    m_nFixed = 0;
    m_bBlankDue = false;
    m_bItalic = false;
  }

  /// Whether nothing is seen in the cell; spreadsheets write a line break where nothing is.
  bool IsVoid() const {
    return m_sCell == u"\n" ||
           std::ranges::all_of(m_sCell, [](QChar c) { return c == QChar::Nbsp; });
  }

  CopiedCell ReadCell() const {
    const QString sFormat = m_cell.attributes.value(QStringLiteral("sdnum"));
    if (m_bOwn && m_cell.attributes.contains(QLatin1String(kOwnGapMark))) {
      return {.sText = std::nullopt, .bGap = true};
    }
    if (m_bOwn && m_sCell.isEmpty() && m_bItalic) return {};
    if (!m_bOwn && IsVoid()) {
      CopiedCell cell{.sText = std::nullopt, .bVoid = true};
      // Texts have an empty one among them.
      const bool bText = FormatIn(sFormat) == u"@";
      if (bText) cell.sText = m_sCell == u"\n" ? platform::Text() : m_sCell.toStdString();
      return cell;
    }
    return {HeldValue(m_sCell, m_cell.attributes.value(QStringLiteral("sdval")), sFormat)
                .toStdString()};
  }

  int Span(const char* sName) const {
    return std::clamp(m_cell.attributes.value(QLatin1String(sName)).toInt(), 1, kMostSpan);
  }

  void Push(CopiedCell cell) {
    m_row.push_back(std::move(cell));
    ++m_nCells;
  }

  /// Cells of rows above reach into this one.
  void PushReaching() {
    while (m_row.size() < m_reaching.size() && m_reaching[m_row.size()] > 0) {
      --m_reaching[m_row.size()];
      Push({});
    }
  }

  void EndCell() {
    if (!std::exchange(m_bCell, false)) return;
    PushReaching();
    const int nColumns = Span("colspan");
    const int nRows = Span("rowspan");
    for (int n = 0; n < nColumns && m_nCells <= kMostReadCells; ++n) {
      if (nRows > 1) {
        if (m_reaching.size() <= m_row.size()) m_reaching.resize(m_row.size() + 1);
        m_reaching[m_row.size()] = nRows - 1;
      }
      Push(n > 0 ? CopiedCell() : ReadCell());
    }
  }

  void EndRow() {
    EndCell();
    if (!std::exchange(m_bRow, false)) return;
    for (; m_row.size() < m_reaching.size(); Push({})) {
      int& nLeft = m_reaching[m_row.size()];
      nLeft = std::max(0, nLeft - 1);
    }
    while (!m_reaching.empty() && m_reaching.back() == 0) m_reaching.pop_back();
    if (!m_row.empty()) m_rows.push_back(std::exchange(m_row, {}));
  }

  QStringView m_sPage;
  qsizetype m_n = 0;
  int m_nDepth = 0;  ///< tables within tables are text
  bool m_bDone = false;
  bool m_bOwn = false;
  bool m_bRow = false;
  bool m_bCell = false;
  Tag m_cell;
  QString m_sCell;
  qsizetype m_nFixed = 0;  ///< characters of the cell that are no blanks of the source
  bool m_bBlankDue = false;
  bool m_bItalic = false;
  std::vector<CopiedCell> m_row;
  std::vector<int> m_reaching;  ///< rows to come into which a cell of the column reaches
  std::size_t m_nCells = 0;
  CopiedCells m_rows;
  QHash<QString, QString> m_entities;
};

}  // namespace

std::optional<CopiedCells> CellsOfPage(QStringView sPage) {
  if (sPage.size() > static_cast<qsizetype>(kMostCopiedCharacters)) return std::nullopt;
  return PageReader(sPage).Read();
}

}  // namespace orvane::controls
