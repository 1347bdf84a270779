#include "controls/grid/grid_import.h"

#include <QDir>
#include <QFileDialog>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

#include "controls/grid/grid_core.h"
#include "controls/grid/grid_window.h"
#include "controls/statements/row_key.h"
#include "controls/statements/sql_text.h"
#include "controls/statements/time_column.h"
#include "controls/values/tell_box.h"
#include "controls/view/status_strip.h"
#include "exports/row_import.h"
#include "platform/ado/column_flags.h"
#include "platform/conversions.h"

namespace orvane::controls {

using exports::ImportColumn;
using exports::RowImport;
using platform::DataType;
using platform::Failure;
using platform::Text;
using platform::Value;

namespace {

constexpr std::chrono::milliseconds kBetweenCounts(200);

/// A file that is being read, with the number of rows that were taken from it.
struct ImportSource {
  std::ifstream stream;
  std::optional<RowImport> rows;
  std::atomic<std::int64_t> read{0};
};

QString& LastImportFolder() {
  static QString sFolder = QDir::homePath();
  return sFolder;
}

[[noreturn]] void FailFile(const std::string& sPath, const std::string& sWhy) {
  throw Failure(platform::failure::kInvalidArgument,
                "The file " + sPath + " cannot be read: " + sWhy + "; name another one.");
}

void OpenFile(const std::string& sPath, std::ifstream& stream) {
  // Whoever opens a pipe waits for its other end.
  std::error_code error;
  const auto kind = std::filesystem::status(sPath, error).type();
  if (kind == std::filesystem::file_type::directory) error.assign(EISDIR, std::generic_category());
  if (!error && kind != std::filesystem::file_type::regular) {
    error.assign(EINVAL, std::generic_category());
  }
  if (!error) {
    errno = 0;
    stream.open(sPath, std::ios::binary);
    if (!stream) error.assign(errno, std::generic_category());
  }
  if (error) FailFile(sPath, error.message());
}

bool NextOf(ImportSource& source, std::vector<Value>& values, const std::string& sPath) {
  try {
    return source.rows->Next(values);
  } catch (const std::ios_base::failure& failed) {
    FailFile(sPath, failed.code().message());  // the disk fails in the middle
  }
}

std::vector<ImportColumn> ColumnsOfTable(platform::Connection& cn, const Text& sCatalog,
                                         const Text& sTable) {
  const std::array<Value, 3> restrictions{sCatalog.empty() ? Value() : Value(sCatalog), Value(),
                                          Value(sTable)};
  const platform::RecordsetPtr rs = cn.OpenSchema(platform::SchemaNumber::Columns, restrictions);
  std::vector<ImportColumn> columns;
  for (; rs && !rs->Eof(); rs->MoveNext()) {
    const platform::Long lFlags = FlagsOfColumn(rs).value_or(0);
    columns.push_back(
        {platform::ToText(rs->Fields().Item("COLUMN_NAME").Value()),
         static_cast<DataType>(platform::ToLong(rs->Fields().Item("DATA_TYPE").Value())),
         IsComputed(rs), false, (lFlags & platform::column_flags::kTakesBeyond) != 0});
  }
  return columns;
}

/// A number for a column of numbers could be a time that is shown as one.
void RequireTimes(platform::Connection& cn, const std::vector<ImportColumn>& columns) {
  const bool bDoubles = std::ranges::any_of(
      columns, [](const auto& column) { return column.type == DataType::Double; });
  if (!bDoubles || !GivesTimesAsNumbers(cn)) return;
  throw Failure(platform::failure::kNotSupported,
                "Rows cannot be imported while the server gives times as numbers; set its extended "
                "option \"Time as Double\" to False and connect again.");
}

Text InsertInto(const Text& sInto, const std::vector<ImportColumn>& columns) {
  std::vector<Text> names;
  for (const ImportColumn& column : columns) names.push_back(column.sName);
  return ComposeInsert(sInto, names);
}

}  // namespace

GridImport::GridImport(GridCore& core, Grid grid) : m_core(core), m_grid(std::move(grid)) {
  core.Window().Rows().Commands().Add(
      {CommandGroup::Copy, "&Import Rows\u2026", QKeySequence("Ctrl+Shift+I"), [this] { Run(); },
       [this] { return CanRun(); },
       [this] { return !m_core.Editing().Session().Updatability().bNoTable; }});
}

bool GridImport::CanRun() const {
  return m_grid.query() && m_core.Connection() && m_core.Connection()->IsOpen() &&
         !m_core.Running() && !m_core.Editing().Session().Updatability().bNoTable;
}

void GridImport::Run() {
  if (!CanRun()) {
    return TellInBox(m_core.Window(), "Import Rows",
                     "Rows cannot be imported here: they go into a table of a server that is "
                     "connected, and not into a view; connect the server, or choose a table.");
  }
  // The grid may go while a dialog is open; then nothing of this object is touched any more.
  const std::weak_ptr<void> life = m_life;
  // A dialog that goes with the grid's window must not stand on the stack.
  const QPointer<QFileDialog> dialog =
      new QFileDialog(&m_core.Window(), "Import Rows", LastImportFolder(),
                      "Comma-separated values (*.csv *.txt);;All files (*)");
  dialog->setFileMode(QFileDialog::ExistingFile);
  const bool bAccepted = dialog->exec() == QDialog::Accepted;
  const QString sPath = dialog && bAccepted ? dialog->selectedFiles().value(0) : QString();
  delete dialog.data();
  if (sPath.isEmpty() || life.expired()) return;
  LastImportFolder() = QFileInfo(sPath).absolutePath();
  Import(sPath.toStdString());
}

void GridImport::Import(const std::string& sPath) {
  const std::weak_ptr<void> life = m_life;
  const QPointer<GridWindow> window = &m_core.Window();
  std::int64_t llRows = 0;
  try {
    llRows = Insert(sPath);
  } catch (const std::exception& exception) {
    if (!window) return;
    const auto* const failed = dynamic_cast<const Failure*>(&exception);
    const bool bCancelled = failed != nullptr && failed->Number() == platform::failure::kCancelled;
    window->Remark(bCancelled ? "The import was cancelled; nothing was imported." : QString(),
                   false);
    if (!bCancelled) TellInBox(*window, "Import Rows", SentenceOf(exception));
    return;
  }
  if (life.expired() || !window) return;
  const QString sDone = QStringLiteral("Imported %1").arg(RowsText(llRows));
  if (!m_grid.mayRequery()) {
    window->Remark(sDone + ". They are not shown before the rows are fetched again.", false);
    return;
  }
  ShowRows();
  if (!life.expired() && window) window->Remark(sDone, false);
}

void GridImport::ShowRows() {
  const std::weak_ptr<void> life = m_life;
  try {
    m_grid.requery();
  } catch (const std::exception& exception) {
    // The window shows its sentence; nobody called who could be told.
    if (!life.expired()) m_core.Note(exception);
  }
}

std::int64_t GridImport::Insert(const std::string& sPath) {
  const platform::TableQueryPtr query = m_grid.query();
  const platform::ConnectionPtr cn = m_core.Connection();
  if (!cn || !query) {
    throw Failure(platform::failure::kObjectNotSet,
                  "The grid has no connection to a server; connect the server first.");
  }
  const auto source = std::make_shared<ImportSource>();
  OpenFile(sPath, source->stream);
  const std::weak_ptr<void> life = m_life;
  const QPointer<GridWindow> window = &m_core.Window();
  const zones::TimeZone zone = m_core.Zone();
  const auto columns = ColumnsOfTable(*cn, query->Catalog(), query->Table());
  source->rows.emplace(source->stream, query->Table(), columns, zone);
  RequireTimes(*cn, source->rows->Columns());
  if (life.expired()) {
    throw Failure(platform::failure::kCancelled, "The import was cancelled.");
  }
  QTimer counting;
  QObject::connect(&counting, &QTimer::timeout, &counting, [window, source] {
    if (window) {
      window->Remark(QStringLiteral("Importing: %1 so far\u2026").arg(RowsText(source->read)),
                     false);
    }
  });
  counting.start(kBetweenCounts);
  try {
    m_core.Change(InsertInto(TableInSql(query->Catalog(), query->Table()), source->rows->Columns()),
                  [source, sPath](std::vector<Value>& values) {
                    const bool bRow = NextOf(*source, values, sPath);
                    if (bRow) ++source->read;
                    return bRow;
                  });
  } catch (const Failure& failed) {
    // A statement that was cancelled may still be reading.
    if (failed.Number() == platform::failure::kCancelled) throw;
    source->rows->RethrowOfRow();
  }
  return source->read;
}

}  // namespace orvane::controls
