// What is installed: complete, found from anywhere, known to a desktop, and removed without a rest.
#include <fnmatch.h>

#include <algorithm>
#include <map>
#include <set>

#include "tests/tools/orvane_program.h"

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

class installation : public OrvaneProgram {
 protected:
  Ended Install(const Text& sMore) const {
    return Shell("cmake --install '" ORVANE_BUILD "' --prefix \"$PWD/opt\" " + sMore + " > log");
  }
  void Expect(const Text& sFile) const {
    EXPECT_TRUE(fs::exists(m_folder / "opt" / sFile)) << sFile;
  }
  /// The files beneath the folder, as a package has them.
  std::set<Text> Installed() const {
    std::set<Text> files;
    for (const auto& entry : fs::recursive_directory_iterator(m_folder / "opt")) {
      if (entry.is_directory()) continue;
      files.insert("usr/" + fs::relative(entry.path(), m_folder / "opt").string());
    }
    return files;
  }
};

TEST_F(installation, of_the_tools_needs_nothing_else_and_moves_as_a_whole) {
  const auto installed = Install("--component tools");
  ASSERT_EQ(installed.nStatus, 0) << installed.sErrors << Read("log");
  for (const char* const sFile :
       {"bin/orvane", "bin/orvane-regsvr", "share/man/man1/orvane-historian.1",
        "share/bash-completion/completions/orvane", "share/zsh/vendor-completions/_orvane",
        "share/fish/vendor_completions.d/orvane.fish"}) {
    Expect(sFile);
  }
  // Called by a link from elsewhere it still finds its components.
  WriteSample("Plant.orvc");
  const auto ended = Shell(
      "mv opt moved; ln -s moved/bin/orvane here; moved/bin/orvane-historian init > log; "
      "document=$PWD/Plant.orvc; program=$PWD/here; cd /; echo SELECT 1 AS one | \"$program\" sql "
      "\"$document\" localhost - --csv");
  EXPECT_EQ(ended.sOutput, "one\r\n1\r\n") << ended.sErrors;
}

TEST_F(installation, of_all_is_registered_documented_and_shared_out_among_the_packages) {
  const auto installed = Install("");
  ASSERT_EQ(installed.nStatus, 0) << installed.sErrors << Read("log");
  Text sClasses;
  for (const char* const sClass :
       {"ORVOLEDB ORVOLEDB", "ORVOLEDBCtls.QueryResults ORVOLEDBCtls",
        "ORVOLEDBCtls.TableEditor ORVOLEDBCtls", "ORVOLEDBCtls.TableQuery ORVOLEDBCtls",
        "ORVOLEDBSnapIn ORVOLEDBSnapIn"}) {
    sClasses += Text(sClass) + ".so\n";
  }
  EXPECT_EQ(Shell("opt/bin/orvane-regsvr --list | sed 's,\\t.*/opt/.*/lib, ,'").sOutput, sClasses);
  EXPECT_EQ(Shell("cd /; \"$OLDPWD/opt/bin/orvane-console\" --version").nStatus, 0);
  Expect("share/orvane/guide/user-guide.html");
  Expect("share/orvane/guide/pictures/guide-01-start.png");

  std::map<Text, int> times;
  for (const Text sPackage : {"orvane-console", "orvane-tools"}) {
    std::ifstream list(Text(ORVANE_DEBIAN "/") + sPackage + ".install");
    for (Text sLine; std::getline(list, sLine);) {
      const Text sBeneath = sLine + "/*";
      int nMatches = 0;
      for (const auto& sFile : Installed()) {
        // The folder of libraries is the machine's there.
        Text sThere = sFile;
        if (sThere.starts_with("usr/lib/orvane/")) sThere.insert(8, "x/");
        if (fnmatch(sLine.c_str(), sThere.c_str(), FNM_PATHNAME) != 0 &&
            fnmatch(sBeneath.c_str(), sThere.c_str(), 0) != 0) {
          continue;
        }
        ++times[sFile];
        ++nMatches;
      }
      EXPECT_GT(nMatches, 0) << sPackage << ".install names " << sLine;
    }
  }
  for (const auto& sFile : Installed()) EXPECT_EQ(times[sFile], 1) << sFile;
}

TEST_F(installation, beside_another_version_is_refused) {
  Shell("mkdir -p opt/share/orvane; echo 0.9.9 > opt/share/orvane/version");
  const auto refused = Install("--component tools");
  EXPECT_NE(refused.nStatus, 0);
  Text sTold = refused.sErrors;
  // The lines are broken anywhere.
  std::ranges::replace(sTold, '\n', ' ');
  const auto twice = [](char a, char b) { return a == ' ' && b == ' '; };
  sTold.erase(std::unique(sTold.begin(), sTold.end(), twice), sTold.end());
  EXPECT_THAT(sTold, AllOf(HasSubstr("Version 0.9.9 is installed under"),
                           HasSubstr("remove it first, with the scripts/uninstall")));
  EXPECT_EQ(Installed(), std::set<Text>{"usr/share/orvane/version"});
}

TEST_F(installation, is_removed_without_a_rest) {
  // A build folder of its own, as there are others that install from that of the tests.
  Shell(
      "mkdir -p build kept/bin; printf '%s\\n%s' \"$PWD/opt/bin/orvane\" "
      "\"$PWD/kept/bin/orvane\" > build/install_manifest_tools.txt; mkdir -p opt/bin; "
      "touch opt/bin/orvane kept/bin/orvane kept/bin/theirs");
  const auto ended = Shell("'" ORVANE_UNINSTALL "' \"$PWD/build\"");
  EXPECT_EQ(ended.nStatus, 0) << ended.sErrors;
  EXPECT_FALSE(fs::exists(m_folder / "opt"));
  EXPECT_FALSE(fs::exists(m_folder / "kept/bin/orvane"));
  EXPECT_TRUE(fs::exists(m_folder / "kept/bin/theirs"));
  EXPECT_EQ(Shell("'" ORVANE_UNINSTALL "' \"$PWD/build\"").nStatus, 1);
}

TEST_F(installation, tells_a_desktop_of_its_program_and_documents) {
  for (const char* const sCheck :
       {"desktop-file-validate " ORVANE_DESKTOP "/orvane-console.desktop",
        "appstreamcli validate --no-net " ORVANE_DESKTOP "/org.orvane.console.metainfo.xml",
        "mkdir -p mime/packages; cp " ORVANE_DESKTOP "/orvane-console.xml mime/packages; "
        "update-mime-database mime"}) {
    const auto ended = Shell(sCheck);
    EXPECT_EQ(ended.nStatus, 0) << sCheck << '\n' << ended.sOutput << ended.sErrors;
  }
  EXPECT_THAT(Read("mime/globs2"), HasSubstr(":application/vnd.orvane.console:*.orvc\n"));
  // What a document begins with.
  WriteSample("Plant.orvc");
  const Text sBegin = Read("Plant.orvc").substr(0, 26);
  EXPECT_THAT(Read("mime/magic"), HasSubstr(sBegin));
}

TEST_F(installation, of_a_package_has_the_version_of_the_program) {
  Write("version.sh", "head -n 1 '" ORVANE_DEBIAN "/changelog'");
  EXPECT_THAT(Shell("sh version.sh").sOutput, HasSubstr("(" ORVANE_VERSION ")"));
}

}  // namespace
}  // namespace orvane::tools
