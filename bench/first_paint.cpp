// From a statement of ten million rows to its first rows on the screen: a grid of the component
// over the connection layer, the provider and its engine, until the first row is painted; beside
// the first sqlite3_step of the same statement in the same run.
#include <sqlite3.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "ado/command.h"
#include "ado/connection.h"
#include "console/waiting/waiting.h"
#include "controls/grid/query_results.h"
#include "platform/services.h"
#include "provider/engines/embedded/embedded_engine.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian_provider.h"

namespace {

using namespace orvane;

constexpr int kRuns = 9;
constexpr double kBudgetMs = 50.0;
constexpr const char* kStatement =
    "WITH RECURSIVE c(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM c LIMIT 10000000) SELECT "
    "'plant.unit' || (i % 20) AS Tag, i AS Number, i / 7.0 AS Value, i % 3 AS Status FROM c";

double Median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

double FirstStep() {
  sqlite3* database = nullptr;
  sqlite3_open(":memory:", &database);
  QElapsedTimer timer;
  timer.start();
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, kStatement, -1, &statement, nullptr);
  sqlite3_step(statement);
  const double time = static_cast<double>(timer.nsecsElapsed()) / 1e6;
  sqlite3_finalize(statement);
  sqlite3_close(database);
  return time;
}

/// The objects of a console, on a historian of this machine's own.
class Objects final : public platform::ObjectFactory {
 public:
  explicit Objects(std::filesystem::path root, std::shared_ptr<platform::LongOperation> waiting)
      : m_root(std::move(root)), m_waiting(std::move(waiting)) {}
  platform::ConnectionPtr CreateConnection() override {
    return std::make_shared<ado::Connection>(
        ado::ConnectionServices{std::make_shared<Providers>(m_root), nullptr, m_waiting});
  }
  platform::CommandPtr CreateCommand() override { return std::make_shared<ado::Command>(); }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }

 private:
  class Providers final : public ado::ProviderSource {
   public:
    explicit Providers(std::filesystem::path root) : m_root(std::move(root)) {}
    std::shared_ptr<ado::Provider> Find(std::string_view) override {
      using provider::engines::EmbeddedEngine;
      using provider::engines::SqliteEngine;
      return std::make_shared<provider::HistorianProvider>(provider::SessionPlace{
          {std::make_shared<EmbeddedEngine>(provider::engines::EmbeddedPlace{
              m_root, std::make_shared<SqliteEngine>(), {}, std::chrono::seconds(2)})},
          [] { return platform::Timestamp(); }});
    }

   private:
    std::filesystem::path m_root;
  };

  std::filesystem::path m_root;
  std::shared_ptr<platform::LongOperation> m_waiting;
};

/// Tells when the rows were painted for the first time with a row among them.
class PaintWatch final : public QObject {
 public:
  PaintWatch(QAbstractItemView& view, QPushButton& stop) : m_view(view), m_stop(stop) {
    m_view.viewport()->installEventFilter(this);
    m_timer.start();
  }
  double Milliseconds() const { return m_time; }

 private:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Paint || m_view.model()->rowCount() == 0) return false;
    watched->removeEventFilter(this);
    QCoreApplication::sendEvent(watched, event);
    m_time = static_cast<double>(m_timer.nsecsElapsed()) / 1e6;
    QTimer::singleShot(0, &m_stop, &QPushButton::click);
    return true;
  }

  QAbstractItemView& m_view;
  QPushButton& m_stop;
  QElapsedTimer m_timer;
  double m_time = -1;
};

double FirstPaint(const std::shared_ptr<Objects>& objects) {
  const auto cn = objects->CreateConnection();
  cn->ConnectionString("Provider = ORVOLEDB; Data Source = localhost");
  cn->Properties().Item("Prompt").Value(platform::Long{4});
  cn->Open({}, {}, {}, platform::kOptionUnspecified);
  controls::QueryResults results({objects, std::make_shared<controls::RowsStates>(), nullptr});
  results.Connection(cn);
  auto* window = static_cast<QWidget*>(results.Window());
  window->resize(1000, 700);
  window->show();
  QCoreApplication::processEvents();
  const PaintWatch watch(*window->findChild<QAbstractItemView*>("rows"),
                         *window->findChild<QPushButton*>("stopFetch"));
  results.SqlText(kStatement);
  results.MaxRows(0);
  results.QueryTimeout(0);
  results.Execute();
  return watch.Milliseconds();
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  std::string sRoot = (std::filesystem::temp_directory_path() / "orvane-bench-XXXXXX").string();
  if (mkdtemp(sRoot.data()) == nullptr) return 1;
  int nStatus = 0;
  {
    const auto objects = std::make_shared<Objects>(sRoot, std::make_shared<console::Waiting>());
    FirstPaint(objects);  // fonts and styles are loaded once
    std::vector<double> ours;
    std::vector<double> raw;
    for (int i = 0; i < kRuns; ++i) {
      raw.push_back(FirstStep());
      ours.push_back(FirstPaint(objects));
    }
    if (std::ranges::any_of(ours, [](double time) { return time < 0; })) nStatus = 1;
    const double more = Median(ours) - Median(raw);
    std::printf("first rows of 10,000,000 painted %.2f ms, first step %.2f ms (medians of %d)\n",
                Median(ours), Median(raw), kRuns);
    std::printf("%.2f ms more, the slowest %.2f ms; budget of %.0f ms: %s\n", more,
                std::ranges::max(ours) - Median(raw), kBudgetMs,
                more < kBudgetMs ? "held" : "missed");
  }
  std::error_code ignored;
  std::filesystem::remove_all(sRoot, ignored);
  return nStatus;
}
