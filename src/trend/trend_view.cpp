#include "trend/trend_view.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <QSplitter>
#include <QStackedLayout>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "exports/row_export.h"
#include "trend/trend_output.h"
#include "trend/trend_plot.h"
#include "trend/trend_values.h"

namespace orvane::trend {

namespace {

QString SavedText(const QString& sPath) {
  return QStringLiteral("Saved to ") + sPath;
}

}  // namespace

TrendView::TrendView(QWidget* parent)
    : QWidget(parent),
      m_bar(new QToolBar(this)),
      m_message(new QLabel(this)),
      m_plot(new TrendPlot(this)),
      m_list(new QTableView(this)),
      m_values(new TrendValues(this)),
      m_loading(new TrendLoading(
          {[this] { return isVisible(); },
           [this](double part) {
             if (m_look) return;
             Say(QStringLiteral("Reading the rows\u2026 %1 %").arg(static_cast<int>(part * 100)));
           },
           [this](TrendLoading::Loaded loaded) { Take(std::move(loaded)); }},
          this)),
      m_saving(new TrendSaving(this)) {
  setObjectName("trend");
  setAccessibleName("Trend");
  m_bar->setObjectName("trendBar");
  m_bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  auto* steps = AddAction("S&teps", "A value holds until the next one", {});
  steps->setCheckable(true);
  connect(steps, &QAction::toggled, this,
          [this](bool bSteps) { m_plot->Kind(bSteps ? LineKind::Steps : LineKind::Straight); });
  AddAction("&Whole Trend", "Shows all times and values (0, or a double click)",
            [this] { m_plot->ShowAll(); });
  m_asRange = AddAction("As Time &Range", "Fetches the rows of the times in sight", [this] {
    const QCPRange times = m_plot->Times();
    m_range({TimestampOf(times.lower), TimestampOf(times.upper)});
  });
  m_asRange->setVisible(false);
  AddAction("&Copy Data", "Copies the points in sight (Ctrl+C)", [this] { Copy(); });
  AddAction("Copy &Picture", "Copies the trend as it is seen", [this] { CopyPicture(); });
  m_save = AddAction({}, {}, [this] { ChooseFile(); });
  TellOfSaving();

  m_list->setObjectName("trendValues");
  m_list->setAccessibleName("Values at the cursor");
  m_list->setModel(m_values);
  m_list->setFrameShape(QFrame::NoFrame);
  m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_list->setTabKeyNavigation(false);
  m_list->setIconSize({28, 14});
  m_list->verticalHeader()->hide();
  m_list->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  m_list->horizontalHeader()->setStretchLastSection(true);
  // The names, one line and the bar beneath it; the others are scrolled to.
  m_list->setMinimumHeight(m_list->horizontalHeader()->sizeHint().height() +
                           m_list->verticalHeader()->defaultSectionSize() +
                           m_list->horizontalScrollBar()->sizeHint().height());
  m_message->setObjectName("trendMessage");
  m_message->setAlignment(Qt::AlignCenter);
  m_message->setWordWrap(true);

  auto* drawing = new QWidget;
  auto* pages = new QStackedLayout(drawing);
  pages->setContentsMargins(0, 0, 0, 0);
  pages->addWidget(m_message);
  pages->addWidget(m_plot);
  auto* splitter = new QSplitter(Qt::Vertical, this);
  splitter->addWidget(drawing);
  splitter->addWidget(m_list);
  splitter->setStretchFactor(0, 3);
  splitter->setStretchFactor(1, 1);
  splitter->setChildrenCollapsible(false);
  splitter->setSizes({3000, 1000});
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_bar);
  layout->addWidget(splitter, 1);

  m_plot->OnCursor([this] { TellOfCursor(); });
  m_plot->OnMarked([this] {
    TellOfCursor();
    const auto& times = m_plot->Marked();
    if (!m_marked) return;
    m_marked(times ? std::optional(TrendSpan{TimestampOf(times->lower), TimestampOf(times->upper)})
                   : std::nullopt);
  });
  m_values->OnShown([this](std::size_t line, bool bShown) {
    m_plot->LineShown(line, bShown);
    TellOfCursor();
  });
  Say({});
}

TrendView::~TrendView() {
  // The parts outlive the lines, and are hidden before they go.
  m_values->Lines(nullptr, m_zone);
  m_plot->NoLines();
}

QAction* TrendView::AddAction(const QString& sText, const QString& sTip,
                              std::function<void()> handler) {
  QAction* action = m_bar->addAction(sText);
  action->setToolTip(sTip);
  // A bar keeps Tab from its buttons otherwise.
  m_bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
  if (handler) connect(action, &QAction::triggered, this, std::move(handler));
  return action;
}

bool TrendView::CanShow(const platform::RecordsetPtr& rs) {
  return rs && TrendColumns::Of(*rs).has_value();
}

void TrendView::OnRange(std::function<void(const TrendSpan&)> handler) {
  m_range = std::move(handler);
  m_asRange->setVisible(static_cast<bool>(m_range));
}

void TrendView::ShowRows(platform::RecordsetPtr rs, const zones::TimeZone& zone,
                         std::optional<TrendSpan> span, SeenRows seen) {
  ++m_nShown;
  m_bFiltered = static_cast<bool>(seen);
  if (auto look = CurrentLook()) m_look = std::move(look);
  m_span = span;
  m_zone = zone;
  m_loading->Drop();
  auto columns = rs ? TrendColumns::Of(*rs) : std::nullopt;
  if (!columns) {
    DropLines();
    return Say(rs ? QStringLiteral("These rows have no times and numbers to draw.") : QString());
  }
  if (!m_look) Say("Reading the rows\u2026");
  m_loading->Load(std::move(rs), *std::move(columns), zone, std::move(seen));
}

void TrendView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  m_loading->Go();
}

void TrendView::DropLines() {
  m_values->Lines(nullptr, m_zone);
  const auto lines = std::make_shared<TrendLines>();
  m_plot->Lines(*lines, m_zone);
  m_lines = lines;
  m_look.reset();
}

void TrendView::Take(TrendLoading::Loaded loaded) {
  if (!loaded.sWhyNot.isEmpty()) {
    DropLines();
    return Say(loaded.sWhyNot);
  }
  const auto lines = std::make_shared<TrendLines>(std::move(loaded.lines));
  const QPointer<TrendView> self(this);
  const int nShown = m_nShown;
  LearnUnits(*lines);
  if (!self || nShown != m_nShown) return;
  // Nobody draws or lists the lines while they are exchanged.
  m_values->Lines(nullptr, m_zone);
  m_plot->Reach(m_reach ? std::optional(QCPRange(TrendTime(m_reach->from), TrendTime(m_reach->to)))
                        : std::nullopt);
  m_plot->Lines(*lines, m_zone);
  m_lines = lines;
  m_nTagsLeftOut = loaded.nTagsLeftOut;
  m_cutAfter = loaded.cutAfter;
  ShowLines();
}

void TrendView::LearnUnits(TrendLines& lines) {
  std::set<platform::Text> unknown;
  for (const TrendLine& line : lines) {
    if (!line.sTag.empty() && line.sUnit.empty()) unknown.insert(line.sTag);
  }
  if (m_askUnits && !std::ranges::includes(m_asked, unknown)) {
    // The server is waited for, and who waits may be gone then.
    const QPointer<TrendView> self(this);
    Units units = m_askUnits();
    if (!self) return;
    m_units = std::move(units);
    m_asked = std::move(unknown);
  }
  for (TrendLine& line : lines) {
    const auto found = m_units.find(line.sTag);
    if (line.sUnit.empty() && found != m_units.end()) line.sUnit = found->second;
  }
}

void TrendView::ShowLines() {
  m_values->Lines(m_lines.get(), m_zone);
  const bool bPoints =
      std::ranges::any_of(*m_lines, [](const TrendLine& line) { return line.series.Size() > 0; });
  Say(bPoints ? QString()
      : m_bFiltered
          ? QStringLiteral("There is nothing to draw: the filter leaves no row with a time.")
          : QStringLiteral("There is nothing to draw: no row has a time."));
  if (bPoints) {
    static_cast<QStackedLayout*>(m_plot->parentWidget()->layout())->setCurrentWidget(m_plot);
    if (hasFocus()) m_plot->setFocus();
  }
  if (m_look) Restore(*m_look);
  if (m_span) ShowSpan(*m_span);
  m_span.reset();
  m_look.reset();
  for (int column = 0; column < TrendValues::ColumnCount - 1; ++column) {
    m_list->resizeColumnToContents(column);
  }
  m_list->setColumnWidth(TrendValues::Value, std::max(m_list->columnWidth(TrendValues::Value),
                                                      fontMetrics().averageCharWidth() * 42));
  TellOfCursor();
  if (m_nTagsLeftOut > 0) {
    Remark(
        QStringLiteral("The first %1 tags are drawn, %2 more are not; choose fewer with a filter.")
            .arg(m_lines->size())
            .arg(m_nTagsLeftOut));
  }
}

std::optional<TrendView::Look> TrendView::CurrentLook() const {
  if (m_lines->empty()) return std::nullopt;
  Look look;
  const QCPRange all = m_plot->AllTimes();
  look.from = m_plot->Times().lower;
  look.to = m_plot->Times().upper;
  look.end = all.upper;
  look.bAll = look.from <= all.lower && look.to >= all.upper;
  look.bAtEnd = look.to >= all.upper && look.from <= all.upper;
  look.cursor = m_plot->Cursor();
  look.values = m_plot->Values().Chosen();
  for (std::size_t n = 0; n < m_lines->size(); ++n) {
    if (!m_values->IsShown(n)) look.hidden.push_back((*m_lines)[n].sName);
  }
  return look;
}

void TrendView::Restore(const Look& look) {
  for (std::size_t n = 0; n < m_lines->size(); ++n) {
    if (std::ranges::find(look.hidden, (*m_lines)[n].sName) == look.hidden.end()) continue;
    m_values->setData(m_values->index(static_cast<int>(n), TrendValues::Name), Qt::Unchecked,
                      Qt::CheckStateRole);
  }
  if (!look.bAll) {
    const double shift = look.bAtEnd ? m_plot->AllTimes().upper - look.end : 0;
    m_plot->Times({look.from + shift, look.to + shift});
  }
  if (!look.values.empty()) m_plot->ChooseValues(look.values);
  if (look.cursor) m_plot->Cursor(*look.cursor);
}

void TrendView::Mark(const std::optional<TrendSpan>& span) {
  m_plot->Mark(span ? std::optional(QCPRange(TrendTime(span->from), TrendTime(span->to)))
                    : std::nullopt);
}

void TrendView::ShowSpan(const TrendSpan& span) {
  if (IsReading()) {
    m_span = span;
    return;
  }
  m_plot->Times({TrendTime(span.from), TrendTime(span.to)});
}

void TrendView::TellOfCursor() {
  m_values->Cursor(m_plot->Cursor());
  emit m_values->headerDataChanged(Qt::Horizontal, TrendValues::Value, TrendValues::Value);
  m_plot->setAccessibleDescription(m_values->Spoken() + SpokenMark());
  QAccessibleEvent event(m_plot, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&event);
}

QString TrendView::SpokenMark() const {
  const auto& times = m_plot->Marked();
  if (!times) return {};
  return QStringLiteral(" Marked from %1 to %2.")
      .arg(m_values->TimeText(times->lower), m_values->TimeText(times->upper));
}

void TrendView::Say(const QString& sMessage) {
  m_message->setText(sMessage);
  static_cast<QStackedLayout*>(m_plot->parentWidget()->layout())->setCurrentWidget(m_message);
}

void TrendView::Remark(const QString& sSentence, bool bWarning) {
  if (m_remark) m_remark(sSentence, bWarning);
}

PointsInSight TrendView::Points() const {
  std::vector<bool> shown;
  for (std::size_t n = 0; n < m_lines->size(); ++n) shown.push_back(m_plot->LineShown(n));
  return {m_lines, std::move(shown), m_plot->Times().lower, m_plot->Times().upper,
          m_zone,  m_cutAfter};
}

void TrendView::Copy() {
  const auto text = CopiedPoints(Points());
  if (!text) {
    return Remark(
        "Not copied: more than 100,000 points are in sight. Zoom in, or save them to a file.");
  }
  QGuiApplication::clipboard()->setText(QString::fromStdString(*text));
  Remark(m_cutAfter == 0
             ? QString()
             : QStringLiteral("Copied only the points of the %1, as the source has more.")
                   .arg(QString::fromStdString(exports::CutMark(m_cutAfter))));
}

void TrendView::CopyPicture() {
  QGuiApplication::clipboard()->setMimeData(CopiedPicture(*m_plot));
  Remark({});
}

void TrendView::ChooseFile() {
  if (IsSaving()) {
    m_saving->Stop();
    m_save->setEnabled(false);
    return Remark("Stopping\u2026", false);
  }
  // A dialog that goes with the view must not stand on the stack.
  const QPointer<TrendView> self(this);
  const QPointer<QFileDialog> dialog = NewSaveDialog(this);
  const bool bAccepted = dialog->exec() == QDialog::Accepted;
  if (!self) return;
  const QString sPath = dialog && bAccepted ? dialog->selectedFiles().value(0) : QString();
  delete dialog.data();
  if (!sPath.isEmpty()) SaveAs(sPath);
}

void TrendView::TellOfSaving() {
  m_save->setEnabled(true);
  m_save->setText(IsSaving() ? "&Stop Saving" : "&Save As\u2026");
  m_save->setToolTip(IsSaving() ? "Leaves no file"
                                : "Saves a picture (PNG, SVG) or the points in sight (CSV)");
}

void TrendView::SavePointsAs(const QString& sPath) {
  if (IsSaving()) return;
  m_saving->Save(Points(), sPath, [this, cutAfter = m_cutAfter](const TrendSaving::Saved& saved) {
    TellOfSaving();
    if (!saved.sWhyNot.isEmpty()) return Remark(saved.sWhyNot);
    if (saved.sPath.isEmpty()) return Remark("Stopped: the points were not saved.", false);
    if (cutAfter == 0) return Remark(SavedText(saved.sPath), false);
    Remark(QStringLiteral("Saved only the points of the %1, as the source has more: %2")
               .arg(QString::fromStdString(exports::CutMark(cutAfter)), saved.sPath));
  });
  TellOfSaving();
  Remark("Saving the points in sight\u2026", false);
}

void TrendView::SaveAs(const QString& sPath) {
  if (IsForPoints(sPath)) return SavePointsAs(sPath);
  try {
    SavePicture(*m_plot, sPath);
    Remark(SavedText(sPath), false);
  } catch (const std::exception& failed) {
    Remark(SentenceOfTrend(failed));
  }
}

void TrendView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  // Until there is a drawing the keys wait here.
  if (m_plot->isVisible()) m_plot->setFocus(event->reason());
}

void TrendView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return Copy();
  QWidget::keyPressEvent(event);
}

}  // namespace orvane::trend
