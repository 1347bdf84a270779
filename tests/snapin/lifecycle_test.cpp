#include "snapin/snap_in.h"
#include "tests/nodes/initial_options.h"
#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using platform::Long;
using platform::Value;

/// Counts what the model tells it of.
class CountingSnapIn : public SnapIn {
 public:
  using SnapIn::SnapIn;
  void ServersNodeChanged() override {
    ++nChanges;
    SnapIn::ServersNodeChanged();
  }
  int nChanges = 0;
};

class lifecycle : public SnapInTest {
 protected:
  /// A snap-in object of its own in the console of the fixture.
  std::shared_ptr<CountingSnapIn> Counting() {
    platform::Services services;
    services.console = driver.console;
    services.objects = driver.objects;
    services.forms = driver.forms;
    services.ui = driver.ui;
    return std::make_shared<CountingSnapIn>(services);
  }
  /// The root that the snap-in ties to a static node.
  static nodes::ServersNodePtr RootOf(platform::SnapIn& snapIn) {
    const auto item = std::make_shared<fakes::FakeScopeItem>("Servers", "", "");
    snapIn.ScopeItems_Initialize(item);
    return std::dynamic_pointer_cast<nodes::ServersNode>(item->Tag());
  }
  void ExpectToldUntilUnloaded(CountingSnapIn& snapIn) {
    const auto root = RootOf(snapIn);
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(snapIn.nChanges, 0);
    root->MaxRows(1);
    EXPECT_EQ(snapIn.nChanges, 1);
    snapIn.SnapIn_Unload();
    root->MaxRows(2);
    EXPECT_EQ(snapIn.nChanges, 1);
    ExpectNoBoxes();
  }
};

TEST_F(lifecycle, initializing_names_the_static_node) {
  driver.Start();
  EXPECT_EQ(driver.console->staticItem->DisplayName(), "ORVANE Servers");
  EXPECT_EQ(driver.console->staticItem->Tag(), nullptr);
  ExpectNoBoxes();
}

TEST_F(lifecycle, an_initialization_that_fails_is_shown) {
  driver.Start();
  driver.console->bFailStaticName = true;
  EXPECT_NO_THROW(driver.snapIn->SnapIn_Initialize());
  EXPECT_EQ(ErrorBox(), "The static node cannot be named.");
}

TEST_F(lifecycle, works_without_file_version_functions) {
  driver.fileVersion.reset();
  driver.Start();
  EXPECT_EQ(driver.console->staticItem->DisplayName(), "ORVANE Servers");
  ExpectNoBoxes();
}

TEST_F(lifecycle, saving_without_a_root_writes_one_key) {
  driver.Start();
  const auto bag = driver.NewBag();
  EXPECT_TRUE(driver.snapIn->SnapIn_WriteProperties(*bag));
  EXPECT_EQ(bag->order, (std::vector<Text>{"ServersNode"}));
  EXPECT_EQ(bag->At("ServersNode"), Value(false));
}

TEST_F(lifecycle, loading_that_document_makes_no_root_until_the_static_node_is_initialized) {
  driver.Start();
  const auto bag = driver.NewBag();
  driver.snapIn->SnapIn_WriteProperties(*bag);
  driver.Start();
  EXPECT_TRUE(driver.snapIn->SnapIn_ReadProperties(*bag));
  const auto second = driver.NewBag();
  driver.snapIn->SnapIn_WriteProperties(*second);
  EXPECT_EQ(second->At("ServersNode"), Value(false));
  driver.snapIn->ScopeItems_Initialize(driver.console->staticItem);
  driver.snapIn->SnapIn_WriteProperties(*second);
  EXPECT_EQ(second->At("ServersNode"), Value(true));
}

TEST_F(lifecycle, loading_a_bag_without_the_flag_makes_no_root) {
  driver.Start();
  const auto bag = driver.NewBag();
  EXPECT_TRUE(driver.snapIn->SnapIn_ReadProperties(*bag));
  driver.snapIn->SnapIn_WriteProperties(*bag);
  EXPECT_EQ(bag->At("ServersNode"), Value(false));
}

TEST_F(lifecycle, saving_a_new_root_writes_the_flag_the_options_and_an_empty_list) {
  const auto bag = driver.NewBag();
  EXPECT_TRUE(driver.snapIn->SnapIn_WriteProperties(*bag));
  EXPECT_EQ(bag->order,
            (std::vector<Text>{"ServersNode", "ServersNode_MaxRows", "ServersNode_QueryTimeout",
                               "ServersNode_DefaultStartTime", "ServersNode_DefaultEndTime",
                               "ServersNode_SqlStatements", "ServersNode_Context",
                               "ServersNode_ServerNodes_ServerNodeCount"}));
  EXPECT_EQ(bag->At("ServersNode"), Value(true));
  EXPECT_EQ(bag->nDefaultsPassed, 0);
}

TEST_F(lifecycle, a_bag_with_nothing_but_the_flag_gives_a_root_with_the_defaults) {
  driver.OpenDocument(
      [](platform::PropertyBag& pb, auto&) { pb.WriteProperty("ServersNode", true); });
  const auto root = Root();
  ASSERT_NE(root, nullptr);
  nodes::ExpectInitialOptionsAndNoServers(*root);
}

TEST_F(lifecycle, loading_never_replaces_a_root) {
  AddServer("S1");
  const auto root = Root();
  const auto bag = driver.NewBag();
  bag->WriteProperty("ServersNode", true, std::nullopt);
  bag->WriteProperty("ServersNode_MaxRows", Long{7}, std::nullopt);
  EXPECT_TRUE(driver.snapIn->SnapIn_ReadProperties(*bag));
  driver.snapIn->ScopeItems_Initialize(driver.console->staticItem);
  EXPECT_EQ(Root(), root);
  EXPECT_EQ(root->MaxRows(), 100);
  EXPECT_EQ(root->ServerNodes()->Count(), 1);
}

TEST_F(lifecycle, a_load_that_fails_is_shown_and_leaves_no_root) {
  driver.Start();
  const auto bag = driver.NewBag();
  bag->WriteProperty("ServersNode", true, std::nullopt);
  bag->WriteProperty("ServersNode_MaxRows", Long{7}, std::nullopt);
  bag->WriteProperty("ServersNode_ServerNodes_ServerNodeCount", Long{2}, std::nullopt);
  EXPECT_FALSE(driver.snapIn->SnapIn_ReadProperties(*bag));
  EXPECT_EQ(ErrorBox(), "The key \"\" is already in the collection; choose another name.");
  EXPECT_EQ(driver.ui->icons.back(), platform::MsgBoxIcon::None);
  driver.snapIn->ScopeItems_Initialize(driver.console->staticItem);
  EXPECT_EQ(Root()->MaxRows(), 100);
  EXPECT_EQ(Root()->ServerNodes()->Count(), 0);
}

TEST_F(lifecycle, a_bag_that_fails_is_shown_on_loading_and_on_saving) {
  driver.Start();
  const auto bag = driver.NewBag();
  bag->FailAt("ServersNode");
  EXPECT_FALSE(driver.snapIn->SnapIn_ReadProperties(*bag));
  EXPECT_EQ(ErrorBox(), "The document cannot be used.");
  EXPECT_FALSE(driver.snapIn->SnapIn_WriteProperties(*bag));
  EXPECT_EQ(ErrorBox(), "The document cannot be used.");
}

TEST_F(lifecycle, a_save_that_fails_is_shown_and_keeps_what_was_written) {
  const auto bag = driver.NewBag();
  bag->FailAt("ServersNode_DefaultStartTime");
  EXPECT_FALSE(driver.snapIn->SnapIn_WriteProperties(*bag));
  EXPECT_EQ(ErrorBox(), "The document cannot be used.");
  EXPECT_EQ(bag->order,
            (std::vector<Text>{"ServersNode", "ServersNode_MaxRows", "ServersNode_QueryTimeout"}));
}

TEST_F(lifecycle, a_missing_provider_property_fails_the_save) {
  AddServer("S1")->Connect();
  driver.historian->options.clear();
  const auto bag = driver.NewBag();
  EXPECT_FALSE(driver.snapIn->SnapIn_WriteProperties(*bag));
  EXPECT_EQ(ErrorBox(), "The provider has no property \"Log File\"; check its name.");
}

TEST_F(lifecycle, unloading_lets_go_of_the_tree_and_may_happen_twice) {
  AddServer("S1")->Connect();
  driver.console->staticItem->Tag(nullptr);
  driver.snapIn->SnapIn_Unload();
  EXPECT_EQ(driver.historian->log.back(), "Close");
  driver.snapIn->SnapIn_Unload();
  driver.snapIn->SnapIn_Terminate();
  const auto bag = driver.NewBag();
  driver.snapIn->SnapIn_WriteProperties(*bag);
  EXPECT_EQ(bag->At("ServersNode"), Value(false));
  ExpectNoBoxes();
}

TEST_F(lifecycle, terminating_alone_lets_go_of_the_tree) {
  AddServer("S1")->Connect();
  driver.console->staticItem->Tag(nullptr);
  driver.snapIn->SnapIn_Terminate();
  EXPECT_EQ(driver.historian->log.back(), "Close");
  const auto bag = driver.NewBag();
  driver.snapIn->SnapIn_WriteProperties(*bag);
  EXPECT_EQ(bag->At("ServersNode"), Value(false));
  ExpectNoBoxes();
}

TEST_F(lifecycle, a_new_root_tells_the_snap_in_of_its_changes_until_it_is_unloaded) {
  const auto snapIn = Counting();
  ExpectToldUntilUnloaded(*snapIn);
}

TEST_F(lifecycle, a_loaded_root_tells_the_snap_in_of_its_changes_until_it_is_unloaded) {
  const auto snapIn = Counting();
  const auto bag = driver.NewBag();
  bag->WriteProperty("ServersNode", true, std::nullopt);
  EXPECT_TRUE(snapIn->SnapIn_ReadProperties(*bag));
  ExpectToldUntilUnloaded(*snapIn);
}

TEST_F(lifecycle, a_root_that_the_console_still_holds_changes_freely_after_unloading) {
  const auto root = Root();
  driver.snapIn->SnapIn_Unload();
  root->MaxRows(3);
  EXPECT_EQ(root->MaxRows(), 3);
}

TEST_F(lifecycle, a_change_of_the_tree_touches_nothing_in_the_console) {
  AddServer("S1");
  driver.Expand("");
  Root()->MaxRows(5);
  Root()->ServerNodes()->Item("S1")->Server("renamed");
  EXPECT_EQ(driver.DisplayName("S1"), "S1");
  EXPECT_EQ(driver.console->CurrentView().nRefreshes, 0);
}

}  // namespace
}  // namespace orvane::snapin
