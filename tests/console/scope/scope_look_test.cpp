#include "console/scope/scope_look.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QIcon>
#include <QPalette>
#include <QTextDocument>

#include "console/look/contrast.h"
#include "console/look/image_list.h"
#include "console/session/scope_tree.h"

namespace orvane::console {
namespace {

using platform::ScopeItemPtr;
using platform::Text;

class ScopeLookTest : public testing::Test {
 protected:
  ScopeLookTest() {
    platform::SnapInDescription description;
    description.sStaticNodeType = "Servers";
    for (const char* sType : {"Servers", "Server"}) {
      description.nodeTypes.push_back({sType, "{0}", Text(sType) + " type", 2, {}});
    }
    m_tree.Reset(description);
    m_root = m_tree.StaticItem();
  }

  ScopeItemPtr Add(const ScopeItemPtr& parent, const Text& sKey) {
    return m_tree.Add("Server", sKey, parent->ScopeNode(), true);
  }
  QModelIndex Root() const { return m_tree.index(0, 0); }
  QImage Icon() const {
    return Root().data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage();
  }

  ImageList m_images;
  ScopeLook m_look{m_images};
  ScopeTree m_tree{&m_look};
  ScopeTreeItemPtr m_root;
};

TEST_F(ScopeLookTest, failed_load_looks_failed_until_it_is_tried_again) {
  const auto usualIcon = Icon();
  EXPECT_FALSE(usualIcon.isNull());
  m_tree.BeginExpansion(*m_root);
  m_tree.EndExpansion(*m_root, true);
  EXPECT_NE(Icon(), usualIcon);
  EXPECT_TRUE(Root().data(Qt::ForegroundRole).isValid());
  m_tree.BeginExpansion(*m_root);
  m_tree.EndExpansion(*m_root, false);
  EXPECT_EQ(Icon(), usualIcon);
  EXPECT_FALSE(Root().data(Qt::ForegroundRole).isValid());
}

TEST_F(ScopeLookTest, failed_load_can_be_read_on_every_ground) {
  m_tree.BeginExpansion(*m_root);
  m_tree.EndExpansion(*m_root, true);
  const QPalette usual = QGuiApplication::palette();
  for (const QColor ground : {QColor(Qt::white), QColor(0x31, 0x36, 0x3B), QColor(Qt::black)}) {
    QPalette palette = usual;
    palette.setColor(QPalette::Base, ground);
    QGuiApplication::setPalette(palette);
    EXPECT_GE(Contrast(Root().data(Qt::ForegroundRole).value<QColor>(), ground), 4.5);
  }
  QGuiApplication::setPalette(usual);
}

TEST_F(ScopeLookTest, tool_tip_shows_a_name_as_it_is) {
  const auto failed = [&](const Text& sName) {
    const auto item = m_tree.ItemOf(Add(m_root, sName));
    item->DisplayName(sName);
    m_tree.BeginExpansion(*item);
    m_tree.EndExpansion(*item, true);
    return m_tree.IndexOf(*item).data(Qt::ToolTipRole).toString();
  };
  EXPECT_EQ(failed("alpha"), "alpha could not be opened. Double-click it to try again.");
  const auto sTip = failed("<b>&beta</b>");
  EXPECT_TRUE(sTip.contains("&lt;b&gt;&amp;beta&lt;/b&gt;")) << sTip.toStdString();
  EXPECT_TRUE(Qt::mightBeRichText(sTip));
}

}  // namespace
}  // namespace orvane::console
