// Creating or dropping a catalog changes a file and a record, and the program may be killed between
// the two. So the file's part is done under a hidden name first and noted in the historian's
// folder; whoever finds a note later finishes the change as the record tells.
// Used by the historian, within transactions of its system catalog, so one program at a time.
#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

namespace orvane::provider::historian {

class CatalogChange {
 public:
  /// Notes that the catalog's file is about to change; its path is as the record has it. Fails with
  /// kNoRights or kStorage.
  CatalogChange(const std::filesystem::path& folder, const std::filesystem::path& stored);

  /// Makes the file; fails as MakeCatalogFile does.
  void Make(std::string_view sStatements) const;
  /// Takes the file away, for now.
  void Hide() const;
  /// Puts the file into the state that the record has come to, and takes the note away.
  void Finish(bool bRecorded) const;

  /// Forgets what is noted of the catalog's file: its record goes and the file is to stay, also
  /// where its disk is away and comes back.
  static void LeaveFile(const std::filesystem::path& folder, const std::filesystem::path& stored);

  /// True when programs that broke off have left something in the historian's folder.
  static bool AnyLeft(const std::filesystem::path& folder);
  /// Finishes all changes that are noted and removes what else broken-off programs left. Nobody
  /// else may be changing catalogs.
  static void FinishAll(const std::filesystem::path& folder,
                        const std::function<bool(const std::filesystem::path& stored)>& isRecorded);

 private:
  CatalogChange(std::filesystem::path note, std::filesystem::path file,
                std::filesystem::path hidden);

  std::filesystem::path m_note;
  std::filesystem::path m_file;
  std::filesystem::path m_hidden;
};

}  // namespace orvane::provider::historian
