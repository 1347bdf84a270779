// Catalogs that are known by their identities, from the tree down to the provider and back. Only a
// real historian gives identities, so this stands beside the cases that every console is put to.
#include <algorithm>

#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

constexpr const char* kMill = "localhost.Catalogs.Mill";

class historians_by_guid : public command_scenario {
 protected:
  void Open(const Text& sExtendedOptions) {
    driver->OpenDocument([&](PropertyBag& pb, platform::ObjectFactory& objects) {
      WriteDocument(pb, objects);
      pb.WriteProperty("ServersNode_ServerNodes_ServerNode1_ExtendedOptions", sExtendedOptions);
    });
    OpenCatalogs();
  }
  void OpenCatalogs() {
    for (const char* sKey : {kStaticNode, kServer, kCatalogs}) driver->Expand(sKey);
  }
  /// Makes the catalog Mill with its command; gives the key of what that brought into the tree.
  Text AddMill() {
    const auto before = driver->Children(kCatalogs);
    Fill({{"m_txtName", "Mill"}});
    driver->Choose(kCatalogs, "Add Catalog...");
    ExpectNoBoxes();
    Texts added;
    for (const Text& sKey : driver->Children(kCatalogs)) {
      if (std::find(before.begin(), before.end(), sKey) == before.end()) added.push_back(sKey);
    }
    EXPECT_EQ(added.size(), 1U);
    return added.empty() ? Text() : added.front();
  }
  Long SavedCatalogs(const Text& sCatalog) {
    const Text sCatalogs = "ServerNodes_ServerNode1_CatalogNodes_";
    const Long lCount = platform::ToLong(Saved(sCatalogs + "CatalogNodeCount"));
    Long lFound = 0;
    for (Long l = 1; l <= lCount; ++l) {
      const Text sName = sCatalogs + "CatalogNode" + std::to_string(l) + "_Catalog";
      if (Saved(sName) == Value(sCatalog)) ++lFound;
    }
    return lFound;
  }
};

TEST_F(historians_by_guid, a_new_catalog_has_one_key_here_and_after_reopening_until_it_is_removed) {
  Open("Historians By GUID = True;");
  const Text sKey = AddMill();
  ASSERT_TRUE(sKey.starts_with("localhost.Catalogs.{")) << sKey;
  const Text sIdentity = driver->DisplayName(sKey);
  EXPECT_EQ(sIdentity.size(), 38U);
  EXPECT_EQ(sKey, Text(kCatalogs) + "." + sIdentity);
  driver->SaveAndReopen();
  EXPECT_EQ(SavedCatalogs(sIdentity), 1);
  EXPECT_EQ(SavedCatalogs("Mill"), 0);
  OpenCatalogs();
  const auto reopened = driver->Children(kCatalogs);
  EXPECT_EQ(std::count(reopened.begin(), reopened.end(), sKey), 1);
  EXPECT_FALSE(driver->HasItem(kMill));
  EXPECT_FALSE(driver->HasItem(kPlant)) << "it has its identity for a key as well";
  driver->Expand(sKey);
  EXPECT_TRUE(driver->HasItem(sKey + ".Data"));
  ExpectNoBoxes();

  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(sKey, "Remove");
  ExpectQuestion("Are you sure you want to remove the \"" + sIdentity + "\" catalog?",
                 "Confirm Catalog Removal");
  EXPECT_FALSE(driver->HasItem(sKey));
  driver->SaveAndReopen();
  EXPECT_EQ(SavedCatalogs(sIdentity), 0);
  OpenCatalogs();
  EXPECT_FALSE(driver->HasItem(sKey));
  Open("Historians By GUID = False;");
  EXPECT_TRUE(driver->HasItem(kPlant));
  EXPECT_FALSE(driver->HasItem(kMill));
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands
