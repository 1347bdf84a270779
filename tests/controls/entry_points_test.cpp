#include <QAbstractItemView>
#include <QApplication>
#include <QWidget>
#include <map>
#include <memory>
#include <stdexcept>

#include "platform/grids/grids.h"
#include "tests/controls/component.h"
#include "tests/controls/fake_data.h"

namespace orvane::controls {
namespace {

using platform::ComponentDescription;
using platform::Text;

constexpr const char* kProgIds[] = {"ORVOLEDBCtls.TableEditor", "ORVOLEDBCtls.QueryResults",
                                    "ORVOLEDBCtls.TableQuery"};

class FakeRegistrar : public platform::ComponentRegistrar {
 public:
  void Register(const ComponentDescription& description) override {
    if (bThrows) throw std::runtime_error("disk full");
    classes[description.sProgId] = description;
  }
  void Unregister(const Text& sProgId) override {
    if (bThrows) throw std::runtime_error("disk full");
    classes.erase(sProgId);
  }
  bool bThrows = false;
  std::map<Text, ComponentDescription> classes;
};

TEST(entry_points, register_the_three_classes_and_remove_them) {
  const LoadedComponent component;
  FakeRegistrar registrar;
  EXPECT_EQ(component.Register(&registrar), platform::kOk);
  ASSERT_EQ(registrar.classes.size(), 3U);
  EXPECT_EQ(registrar.classes["ORVOLEDBCtls.TableEditor"].sKind, "Control");
  EXPECT_EQ(registrar.classes["ORVOLEDBCtls.QueryResults"].sKind, "Control");
  EXPECT_EQ(registrar.classes["ORVOLEDBCtls.TableQuery"].sKind, "Object");
  EXPECT_EQ(registrar.classes["ORVOLEDBCtls.TableEditor"].sGuid,
            "{5B1C7F0E-3D5A-4C86-9E0B-7A42D1F6C3A1}");
  EXPECT_EQ(registrar.classes["ORVOLEDBCtls.QueryResults"].sGuid,
            "{0E9A6D44-8C1F-4B7B-A3D7-52C8F0B41E92}");
  EXPECT_EQ(registrar.classes["ORVOLEDBCtls.TableQuery"].sGuid,
            "{A7D25E13-60B9-4F3E-8B5C-19E4C7A0D683}");
  for (const auto& [sProgId, description] : registrar.classes) {
    EXPECT_EQ(description.sVersion, "1.00.0001");
    EXPECT_NE(description.sDisplayName, "");
    EXPECT_NE(description.sDescription, "");
  }
  EXPECT_EQ(component.Unregister(&registrar), platform::kOk);
  EXPECT_TRUE(registrar.classes.empty());
}

TEST(entry_points, let_no_exception_out) {
  const LoadedComponent component;
  FakeRegistrar registrar;
  registrar.bThrows = true;
  EXPECT_EQ(component.Register(&registrar), platform::kFail);
  EXPECT_EQ(component.Unregister(&registrar), platform::kFail);
  EXPECT_EQ(component.Register(nullptr), platform::kFail);
  EXPECT_EQ(component.Unregister(nullptr), platform::kFail);
}

TEST(entry_points, refuse_an_unknown_class_and_another_interface) {
  const LoadedComponent component;
  void* factory = &factory;
  EXPECT_EQ(
      component.GetClassObject("ORVOLEDBCtls.Nothing", platform::kClassFactoryInterface, &factory),
      platform::kClassNotAvailable);
  EXPECT_EQ(factory, nullptr);
  EXPECT_EQ(component.GetClassObject(kProgIds[0], "orvane.platform.ClassFactory.0", &factory),
            platform::kNoInterface);
  EXPECT_EQ(component.GetClassObject(nullptr, platform::kClassFactoryInterface, &factory),
            platform::kFail);
  EXPECT_EQ(component.GetClassObject(kProgIds[0], nullptr, &factory), platform::kFail);
  EXPECT_EQ(component.GetClassObject(kProgIds[0], platform::kClassFactoryInterface, nullptr),
            platform::kFail);
}

TEST(entry_points, export_nothing_else) {
  const LoadedComponent component;
  EXPECT_EQ(component.Symbol("_ZTIN6orvane8controls11TableEditorE"), nullptr);
  EXPECT_EQ(component.Symbol("orvane_version_resource"), nullptr);
}

TEST(entry_points, objects_are_what_their_progid_says) {
  const LoadedComponent component;
  EXPECT_NE(std::dynamic_pointer_cast<platform::TableEditor>(component.Create(kProgIds[0])),
            nullptr);
  EXPECT_NE(std::dynamic_pointer_cast<platform::QueryResults>(component.Create(kProgIds[1])),
            nullptr);
  const auto query = std::dynamic_pointer_cast<platform::TableQuery>(component.Create(kProgIds[2]));
  ASSERT_NE(query, nullptr);
  EXPECT_EQ(query->ProgId(), kProgIds[2]);
}

TEST(entry_points, the_library_may_go_when_no_object_of_it_lives) {
  const LoadedComponent component;
  EXPECT_EQ(component.CanUnloadNow(), platform::kOk);
  for (const char* sProgId : kProgIds) {
    auto object = component.Create(sProgId);
    EXPECT_EQ(component.CanUnloadNow(), platform::kFalse) << sProgId;
    object.reset();
    EXPECT_EQ(component.CanUnloadNow(), platform::kOk) << sProgId;
  }
}

TEST(entry_points, the_library_works_when_it_is_loaded_again) {
  for (int nRound = 0; nRound < 3; ++nRound) {
    FakeServer server;
    const LoadedComponent component;
    platform::Services services;
    services.objects = std::make_shared<FakeObjects>(server);
    const auto editor =
        std::dynamic_pointer_cast<platform::TableEditor>(component.Create(kProgIds[0], services));
    const auto query =
        std::dynamic_pointer_cast<platform::TableQuery>(component.Create(kProgIds[2]));
    ASSERT_TRUE(editor && query);
    query->Table("Data");
    server.answer = Plant(50);
    editor->ShowSqlStatements(true);
    editor->Connection(std::make_shared<FakeConnection>());
    editor->TableQuery(query);
    editor->Requery();
    auto* window = static_cast<QWidget*>(editor->Window());
    window->show();
    QCoreApplication::processEvents();
    EXPECT_FALSE(window->grab().isNull());
    EXPECT_EQ(window->findChild<QAbstractItemView*>("rows")->model()->rowCount(), 50);
  }
}

TEST(entry_points, how_rows_were_left_is_known_to_the_next_control) {
  const LoadedComponent component;
  platform::Long lUpdatability = 0;
  const auto rs = Plant(50);
  {
    const auto editor =
        std::dynamic_pointer_cast<platform::TableEditor>(component.Create(kProgIds[0]));
    editor->AttachRecordset(rs, 0);
    editor->MoveLast();
    EXPECT_EQ(editor->DetachRecordset(lUpdatability), rs);
  }
  const auto fresh =
      std::dynamic_pointer_cast<platform::TableEditor>(component.Create(kProgIds[0]));
  fresh->AttachRecordset(rs, lUpdatability);
  auto* view = static_cast<QWidget*>(fresh->Window())->findChild<QAbstractItemView*>("rows");
  EXPECT_EQ(view->currentIndex().row(), 49);
}

}  // namespace
}  // namespace orvane::controls
