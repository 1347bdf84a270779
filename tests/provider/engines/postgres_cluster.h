// A PostgreSQL server of the tests' own: a cluster in a new folder, which the first test that asks
// for it makes and which ends with the process, however that ends. It is reached by a socket in its
// folder, where everybody is let in, and by a port on loopback, where passwords are asked for.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace orvane::tests {

class PostgresCluster {
 public:
  /// Its administrator.
  static constexpr const char* kUser = "orvane";
  static constexpr const char* kPassword = "a password of the tests";
  /// A name of this machine by which its port is reached, and which counts as that of another one.
  static constexpr const char* kFarHost = "0x7f.1";

  /// The cluster of this process.
  static PostgresCluster& Get();

  PostgresCluster(const PostgresCluster&) = delete;
  PostgresCluster& operator=(const PostgresCluster&) = delete;
  ~PostgresCluster();

  /// Data source of a database by the socket; the cluster's administrator is "orvane".
  std::string Address(const std::string& sDatabase = "postgres") const;
  /// By the port on loopback.
  std::string AddressByPort(const std::string& sDatabase = "postgres") const;
  /// An empty database of a new name, without any schema of its own, and its end.
  std::string NewDatabase();
  void DropDatabase(const std::string& sDatabase);
  /// Runs statements as its administrator; fails with std::runtime_error.
  void Do(const std::string& sDatabase, const std::string& sSql) const;
  /// Of its socket.
  const std::filesystem::path& Folder() const { return m_folder; }
  int Port() const { return m_nPort; }
  /// Kills every process of it at once, as a power cut would.
  void Kill();
  void Start();
  /// Another server that follows this one, as it is after a while, and takes no changes until it is
  /// promoted.
  std::unique_ptr<PostgresCluster> NewStandby() const;

 private:
  /// Of an empty folder.
  PostgresCluster();
  /// Has a program put the data into the folder.
  void Fill(std::vector<std::string> words) const;

  std::filesystem::path m_folder;
  int m_nPort = 0;
  int m_nDatabases = 0;
  pid_t m_server = 0;
};

}  // namespace orvane::tests
