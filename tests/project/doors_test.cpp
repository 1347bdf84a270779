// Reads every include under src/ against the doors in cmake/doors.txt.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>

#include "tests/project/tree.h"

namespace orvane::project {
namespace {

namespace fs = std::filesystem;
using Doors = std::map<std::string, std::set<std::string>>;

Doors ReadDoors() {
  Doors doors;
  for (const auto& sLine : Lines(Root() / "cmake/doors.txt")) {
    const auto nColon = sLine.find(':');
    if (sLine.empty() || sLine.front() == '#' || nColon == std::string::npos) continue;
    auto& room = doors[sLine.substr(0, nColon)];
    std::istringstream words(sLine.substr(nColon + 1));
    for (std::string sWord; words >> sWord;) room.insert(sWord);
  }
  return doors;
}

// What is bought, by the headers that bring it in.
struct Bought {
  std::string sDoor;
  std::regex headers;
};

const std::vector<Bought>& AllBought() {
  static const std::vector<Bought> all = {
      {"qt", std::regex("Q[A-Za-z0-9]+|Qt[A-Za-z]+/.*|q[a-z_]+\\.h")},
      {"qtcore",
       std::regex("Q(Abstract(Item|Table|List)Model|ByteArray|CryptographicHash|Date|DateTime|Dir|"
                  "ElapsedTimer|File|FileInfo|Object|Settings|String|StringDecoder|StringList|"
                  "Timer|TimeZone|Variant|tGlobal)")},
      {"svg", std::regex("QSvg[A-Za-z]+")},
      {"qscintilla", std::regex("Qsci/.*")},
      {"qcustomplot", std::regex("qcustomplot\\.h")},
      {"sqlite", std::regex("sqlite3(ext)?\\.h")},
      {"libpq", std::regex("libpq-fe\\.h|libpq/.*|pg_config.*|postgresql/.*")},
      {"odbc", std::regex("sql(ext|types|ucode)?\\.h|odbcinst.*")},
      {"date", std::regex("date/.*")},
      {"spdlog", std::regex("spdlog/.*")},
      {"fmt", std::regex("fmt/.*")},
      {"cli11", std::regex("CLI/.*")},
      {"json", std::regex("nlohmann/.*")},
      {"dl", std::regex("dlfcn\\.h|link\\.h")},
  };
  return all;
}

const std::set<std::string> kDatabases = {"sqlite", "libpq", "odbc"};
const std::set<std::string> kToolkits = {"qtcore", "qt", "svg", "qscintilla", "qcustomplot"};
// Headers of the standard library have neither a folder nor an ending.
const std::regex kStandardHeader("[a-z_0-9]+");
const std::regex kSystemHeader("((sys|linux)/)?[a-z0-9_]+\\.h");
// These know neither the operating system nor anything bought, so that they build anywhere.
const std::set<std::string> kStandardOnly = {"platform", "access", "nodes", "dialogs", "snapin"};

struct Include {
  fs::path file;
  std::string sRoom;
  std::string sHeader;
  bool bQuoted = false;
};

/// The room of a path from src/: its first folder, or the first two where the doors say so.
std::string RoomOf(const fs::path& path, const Doors& doors) {
  auto part = path.begin();
  const auto sFolder = part->string();
  const auto sNested = path.has_parent_path() ? sFolder + "/" + (++part)->string() : sFolder;
  return doors.count(sNested) ? sNested : sFolder;
}

std::vector<Include> ReadIncludes(const Doors& doors) {
  static const std::regex kInclude(R"re(^\s*#\s*include\s*([<"])([^>"]+)[>"].*)re");
  std::vector<Include> includes;
  for (const auto& file : Files({"src"}, {".h", ".cpp", ".inc"})) {
    const auto sRoom = RoomOf(fs::relative(file, Root() / "src"), doors);
    for (const auto& sLine : Lines(file)) {
      std::smatch match;
      if (sLine.find("include") == std::string::npos) continue;
      if (!std::regex_match(sLine, match, kInclude)) continue;
      includes.push_back({file, sRoom, match[2], match[1] == "\""});
    }
  }
  return includes;
}

std::optional<std::string> BoughtDoor(const std::string& sHeader) {
  std::optional<std::string> sDoor;
  for (const auto& bought : AllBought()) {
    if (std::regex_match(sHeader, bought.headers)) sDoor = bought.sDoor;
  }
  return sDoor;
}

TEST(DoorsTest, every_room_has_a_line_and_every_line_a_room) {
  const auto doors = ReadDoors();
  std::set<std::string> rooms;
  for (const auto& file : Files({"src"}, {".h", ".cpp", ".inc"})) {
    rooms.insert(RoomOf(fs::relative(file, Root() / "src"), doors));
  }
  for (const auto& sRoom : rooms) EXPECT_TRUE(doors.count(sRoom)) << sRoom;
  for (const auto& [sRoom, allowed] : doors) EXPECT_TRUE(rooms.count(sRoom)) << sRoom;
}

TEST(DoorsTest, a_folder_of_rooms_holds_nothing_else) {
  const auto doors = ReadDoors();
  for (const auto& [sRoom, allowed] : doors) {
    if (const auto nSlash = sRoom.find('/'); nSlash != std::string::npos) {
      EXPECT_FALSE(doors.count(sRoom.substr(0, nSlash))) << sRoom << " lies within another room";
    }
  }
}

TEST(DoorsTest, a_session_is_at_work_without_a_window) {
  EXPECT_EQ(ReadDoors().at("console/session"), (std::set<std::string>{"platform", "qtcore"}));
}

TEST(DoorsTest, the_tour_knows_the_window_by_what_it_shows) {
  EXPECT_EQ(ReadDoors().at("console/tour"), (std::set<std::string>{"platform", "qt"}));
}

TEST(DoorsTest, a_door_leads_to_a_room_or_to_something_bought) {
  const auto doors = ReadDoors();
  for (const auto& [sRoom, allowed] : doors) {
    for (const auto& sDoor : allowed) {
      const bool bBought = std::any_of(AllBought().begin(), AllBought().end(),
                                       [&](const auto& bought) { return bought.sDoor == sDoor; });
      EXPECT_TRUE(bBought || doors.count(sDoor)) << sRoom << " has a door to " << sDoor;
    }
  }
}

TEST(DoorsTest, no_doors_lead_around_in_a_circle) {
  const auto doors = ReadDoors();
  std::set<std::string> open;
  std::set<std::string> done;
  const std::function<void(const std::string&)> visit = [&](const std::string& sRoom) {
    if (done.count(sRoom) || !doors.count(sRoom)) return;
    ASSERT_TRUE(open.insert(sRoom).second) << "around in a circle at " << sRoom;
    for (const auto& sDoor : doors.at(sRoom)) visit(sDoor);
    open.erase(sRoom);
    done.insert(sRoom);
  };
  for (const auto& [sRoom, allowed] : doors) visit(sRoom);
}

TEST(DoorsTest, databases_stay_in_the_provider_and_toolkits_in_the_windows) {
  const std::set<std::string> databaseRooms = {"provider", "tools/orvane_historian"};
  const auto isToolkitRoom = [](const std::string& sRoom) {
    return sRoom == "trend" || sRoom == "widgets" || sRoom == "sql_look" ||
           sRoom.starts_with("controls/") || sRoom.starts_with("console/");
  };
  for (const auto& [sRoom, allowed] : ReadDoors()) {
    for (const auto& sDoor : allowed) {
      if (kDatabases.count(sDoor)) {
        EXPECT_TRUE(databaseRooms.count(sRoom)) << sRoom << " has a door to " << sDoor;
      }
      if (kToolkits.count(sDoor)) {
        EXPECT_TRUE(isToolkitRoom(sRoom)) << sRoom << " has a door to " << sDoor;
      }
      const bool bRoom = ReadDoors().count(sDoor) != 0;
      if (kStandardOnly.count(sRoom)) {
        EXPECT_TRUE(bRoom) << sRoom << " has a door to " << sDoor;
      }
    }
  }
}

TEST(DoorsTest, nothing_above_the_seam_of_engines_knows_which_engine_it_is) {
  const std::regex kOfOneEngine("provider/(historian|engines/[a-z]+)/.*");
  const auto isAbove = [](const fs::path& file) {
    const auto folder = file.parent_path();
    return folder == "provider" || folder == "provider/dialect";
  };
  int nAbove = 0;
  for (const auto& include : ReadIncludes(ReadDoors())) {
    const auto file = fs::relative(include.file, Root() / "src");
    // The provider makes the engines.
    if (!isAbove(file) || file == "provider/historian_provider.cpp") continue;
    ++nAbove;
    EXPECT_FALSE(std::regex_match(include.sHeader, kOfOneEngine))
        << Said(include.file) << " includes " << include.sHeader;
    EXPECT_NE(BoughtDoor(include.sHeader), "sqlite") << Said(include.file);
  }
  EXPECT_GT(nAbove, 100);
}

TEST(DoorsTest, every_include_goes_through_an_open_door) {
  const auto doors = ReadDoors();
  const auto includes = ReadIncludes(doors);
  ASSERT_GT(includes.size(), 300U);
  for (const auto& include : includes) {
    const auto found = doors.find(include.sRoom);
    ASSERT_NE(found, doors.end()) << Said(include.file);
    const auto& allowed = found->second;
    std::string sDoor;
    if (include.bQuoted) {
      if (include.sHeader.ends_with(".moc")) continue;
      sDoor = RoomOf(include.sHeader, doors);
      EXPECT_TRUE(fs::exists(Root() / "src" / include.sHeader))
          << Said(include.file) << " includes \"" << include.sHeader
          << "\", which is no path from src/";
    } else if (const auto sBought = BoughtDoor(include.sHeader)) {
      sDoor = *sBought;
    } else {
      const bool bSystem = std::regex_match(include.sHeader, kSystemHeader);
      EXPECT_TRUE(bSystem || std::regex_match(include.sHeader, kStandardHeader))
          << Said(include.file) << " includes <" << include.sHeader
          << ">, which belongs to no door; give it one in this test";
      EXPECT_FALSE(bSystem && kStandardOnly.count(include.sRoom))
          << Said(include.file) << " includes <" << include.sHeader
          << ">, but its room is made of the standard library alone";
      continue;
    }
    const bool bCoreOfAll = sDoor == "qtcore" && allowed.count("qt");
    EXPECT_TRUE(sDoor == include.sRoom || allowed.count(sDoor) || bCoreOfAll)
        << Said(include.file) << " includes " << include.sHeader << ", but " << include.sRoom
        << " has no door to " << sDoor;
  }
}

}  // namespace
}  // namespace orvane::project
