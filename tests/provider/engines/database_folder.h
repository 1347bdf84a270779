// A folder of real database files for one test, and a plain connection that makes and locks them.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>

#include "provider/engines/sqlite/sqlite_engine.h"
#include "tests/ado/failure_of.h"

namespace orvane::tests {

/// A 64-bit integer as a value.
inline platform::Value Big(std::int64_t llValue) {
  return llValue;
}

/// A connection past the engine.
class Raw {
 public:
  explicit Raw(const std::string& sPath) {
    if (sqlite3_open(sPath.c_str(), &m_database) != SQLITE_OK) throw std::runtime_error("open");
  }
  Raw(const Raw&) = delete;
  Raw& operator=(const Raw&) = delete;
  ~Raw() { sqlite3_close(m_database); }

  void Run(const std::string& sSql) {
    char* sMessage = nullptr;
    if (sqlite3_exec(m_database, sSql.c_str(), nullptr, nullptr, &sMessage) != SQLITE_OK) {
      const std::string sWhat = sMessage == nullptr ? "" : sMessage;
      sqlite3_free(sMessage);
      throw std::runtime_error(sWhat + " in " + sSql);
    }
  }

 private:
  sqlite3* m_database = nullptr;
};

/// While it lives, whoever runs the tests has only the rights of others.
class AsNobody {
 public:
  AsNobody() {
    constexpr uid_t kNobody = 65534;
    if (m_former == 0 && ::seteuid(kNobody) != 0) throw std::runtime_error("seteuid");
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  ~AsNobody() {
    if (m_former == 0 && ::seteuid(0) != 0) std::abort();
  }

 private:
  uid_t m_former = ::geteuid();
};

/// While it lives, connections that are opened know the SQL function "called()", which does what
/// is given and is 1.
class SqlCall {
 public:
  explicit SqlCall(std::function<void()> call) : m_call(std::move(call)) {
    s_current = this;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(&Install));
  }
  SqlCall(const SqlCall&) = delete;
  SqlCall& operator=(const SqlCall&) = delete;
  ~SqlCall() {
    sqlite3_reset_auto_extension();
    s_current = nullptr;
  }

 private:
  static int Install(sqlite3* database, char**, const void*) {
    return sqlite3_create_function(
        database, "called", 0, SQLITE_UTF8, nullptr,
        [](sqlite3_context* context, int, sqlite3_value**) {
          // A statement that was left to itself may come later than the end of its test.
          const std::function<void()> call = s_current == nullptr ? [] {} : s_current->m_call;
          call();
          sqlite3_result_int(context, 1);
        },
        nullptr, nullptr);
  }

  static inline SqlCall* s_current = nullptr;
  std::function<void()> m_call;
};

class DatabaseFolder : public ::testing::Test {
 protected:
  using Catalog = provider::engines::Catalog;
  using EngineResult = provider::engines::EngineResult;
  using FileSession = provider::engines::FileSession;
  using EngineStatement = provider::engines::EngineStatement;
  using Value = platform::Value;

  DatabaseFolder() {
    std::string sTemplate = std::filesystem::temp_directory_path() / "orvane-engine-XXXXXX";
    if (::mkdtemp(sTemplate.data()) == nullptr) throw std::runtime_error("mkdtemp");
    folder = sTemplate;
    ::chmod(folder.c_str(), 0755);
  }
  ~DatabaseFolder() override {
    ::chmod(folder.c_str(), 0755);
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  std::string PathOf(const std::string& sFile) const { return folder / sFile; }
  /// Makes a database file with what the SQL makes.
  Catalog Make(const std::string& sFile, const std::string& sSql) {
    Raw(PathOf(sFile)).Run(sSql);
    return {std::filesystem::path(sFile).stem(), PathOf(sFile)};
  }
  std::unique_ptr<FileSession> Open(const Catalog& main = {}) {
    return provider::engines::SqliteEngine(std::chrono::milliseconds(50)).Open(main, {});
  }
  static EngineResult Run(FileSession& session, const std::string& sSql,
                          std::vector<Value> vtParameters = {}) {
    return session.Run({sSql, std::move(vtParameters), {}}, {});
  }
  static Value One(FileSession& session, const std::string& sSql,
                   std::vector<Value> vtParameters = {}) {
    return Run(session, sSql, std::move(vtParameters)).recordset->ValueAt(0, 0);
  }
  static Told RunFails(FileSession& session, const std::string& sSql) {
    return FailureOf([&] { Run(session, sSql); });
  }

  std::filesystem::path folder;
};

}  // namespace orvane::tests
