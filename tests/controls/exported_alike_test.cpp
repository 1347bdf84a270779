// An export of a grid and one of the program orvane: the same rows, the same bytes.
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include "ado/command.h"
#include "ado/connection.h"
#include "controls/grid/export_dialog.h"
#include "controls/grid/query_results.h"
#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "provider/historian_provider.h"
#include "tests/provider/temporary_root.h"
#include "tests/tools/plant_program.h"

namespace orvane::controls {
namespace {

using platform::Text;

/// The historian of the program, from within.
class PlantAccess final : public platform::ObjectFactory {
 public:
  explicit PlantAccess(const std::filesystem::path& root)
      : m_providers(std::make_shared<Providers>(root)) {}

  platform::ConnectionPtr CreateConnection() override {
    return std::make_shared<ado::Connection>(
        ado::ConnectionServices{m_providers, nullptr, nullptr});
  }
  platform::CommandPtr CreateCommand() override { return std::make_shared<ado::Command>(); }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }

  platform::ConnectionPtr Connect() {
    const auto cn = CreateConnection();
    cn->ConnectionString("Provider = ORVOLEDB; Data Source = localhost;");
    constexpr platform::Long kNeverPrompt = 4;
    cn->Properties().Item("Prompt").Value(kNeverPrompt);
    cn->Open({}, {}, {}, platform::kOptionUnspecified);
    return cn;
  }

 private:
  class Providers final : public ado::ProviderSource {
   public:
    explicit Providers(std::filesystem::path root) : m_root(std::move(root)) {}
    std::shared_ptr<ado::Provider> Find(std::string_view /*sName*/) override {
      return std::make_shared<provider::HistorianProvider>(provider::PlaceAt(m_root));
    }

   private:
    std::filesystem::path m_root;
  };

  std::shared_ptr<Providers> m_providers;
};

class ExportedAlikeTest : public tools::PlantProgram {
 protected:
  GridServices Services() {
    return {m_access, std::make_shared<RowsStates>(), std::make_shared<int>()};
  }
  /// Exports all rows of the grid in that form.
  void ExportAll(platform::Control& grid, exports::Form form, const Text& sFile) const {
    auto* const window = static_cast<QWidget*>(grid.Window());
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (auto* choice = dynamic_cast<ExportDialog*>(dialog)) {
        choice->findChild<QRadioButton*>("m_optAll")->click();
        auto* forms = choice->findChild<QComboBox*>("m_cboForm");
        forms->setCurrentIndex(forms->findData(static_cast<int>(form)));
        choice->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
      } else if (auto* files = qobject_cast<QFileDialog*>(dialog)) {
        files->findChild<QLineEdit*>()->setText(QString::fromStdString(m_folder / sFile));
        QTest::keyClick(files->findChild<QLineEdit*>(), Qt::Key_Return);
      } else if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
        ADD_FAILURE() << box->text().toStdString();
        box->reject();
      }
    });
    timer.start(5);
    QTest::keyClick(window->findChild<QWidget*>("rows"), Qt::Key_E,
                    Qt::ControlModifier | Qt::ShiftModifier);
  }

  static constexpr std::array kForms = {std::pair{exports::Form::Csv, "csv"},
                                        std::pair{exports::Form::JsonLines, "jsonl"},
                                        std::pair{exports::Form::Sql, "sql"}};

  std::shared_ptr<PlantAccess> m_access = std::make_shared<PlantAccess>(m_folder / "data/orvane");
};

TEST_F(ExportedAlikeTest, a_table_has_the_same_bytes_from_both) {
  const auto query = std::make_shared<controls::TableQuery>();
  query->Catalog("Plant1");
  query->Table("Tags");
  TableEditor editor(Services());
  const auto cn = m_access->Connect();
  editor.Connection(cn);
  editor.TableQuery(query);
  editor.Requery();
  for (const auto& [form, sForm] : kForms) {
    ExportAll(editor, form, Text("grid.") + sForm);
    const auto ended = Orvane("export Plant.orvc localhost/Plant1/Tags program." + Text(sForm));
    EXPECT_EQ(ended.nStatus, 0) << ended.sErrors;
    const Text sGrid = Read(Text("grid.") + sForm);
    EXPECT_GT(std::ranges::count(sGrid, '\n'), 8) << sForm;
    EXPECT_EQ(Read(Text("program.") + sForm), sGrid) << sForm;
  }
}

TEST_F(ExportedAlikeTest, a_query_has_the_same_bytes_from_both_also_without_rows) {
  for (const Text sTag : {"T1", "none"}) {
    const Text sSql = "SELECT Tag, Timestamp, Value, Status FROM Plant1..Data WHERE Tag = '" +
                      sTag + "' ORDER BY Tag, Timestamp";
    Write("query.sql", sSql);
    const auto added = Shell("orvane query add Plant.orvc localhost " + sTag + " < query.sql");
    ASSERT_EQ(added.nStatus, 0) << added.sErrors;
    QueryResults results(Services());
    const auto cn = m_access->Connect();
    results.Connection(cn);
    results.QueryName(sTag);
    results.SqlText(sSql);
    results.Execute();
    for (const auto& [form, sForm] : kForms) {
      const Text sGrid = "grid-" + sTag + "." + sForm;
      const Text sProgram = "program-" + sTag + "." + sForm;
      ExportAll(results, form, sGrid);
      Orvane("export Plant.orvc localhost --query " + sTag + " " + sProgram);
      EXPECT_TRUE(std::filesystem::exists(m_folder / sGrid)) << sGrid;
      EXPECT_EQ(Read(sProgram), Read(sGrid)) << sGrid;
    }
  }
}

}  // namespace
}  // namespace orvane::controls
