#include "tests/provider/engines/postgres_cluster.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <libpq-fe.h>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <vector>

namespace orvane::tests {
namespace fs = std::filesystem;

namespace {

fs::path ProgramsOfServer() {
  for (int nVersion = 20; nVersion >= 13; --nVersion) {
    const fs::path folder = "/usr/lib/postgresql/" + std::to_string(nVersion) + "/bin";
    if (fs::exists(folder / "initdb")) return folder;
  }
  throw std::runtime_error("PostgreSQL's server is not installed");
}

// The server does not run as root; whoever is root becomes somebody else for it.
const passwd* OtherUser() {
  if (geteuid() != 0) return nullptr;
  const passwd* user = getpwnam("postgres");
  if (user == nullptr) user = getpwnam("nobody");
  return user;
}

// A process that ends with this one.
pid_t StartProgram(const std::vector<std::string>& words, const fs::path& folder) {
  const passwd* const user = OtherUser();
  const uid_t uid = user == nullptr ? geteuid() : user->pw_uid;
  const gid_t gid = user == nullptr ? getegid() : user->pw_gid;
  std::vector<char*> arguments;
  for (const std::string& sWord : words) arguments.push_back(const_cast<char*>(sWord.c_str()));
  arguments.push_back(nullptr);
  const std::string sLog = (folder / "log").string();
  const pid_t child = fork();
  if (child != 0) return child;
  const int log = open(sLog.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (log >= 0) {
    dup2(log, 1);
    dup2(log, 2);
  }
  if (user != nullptr && (setgid(gid) != 0 || setuid(uid) != 0)) _exit(126);
  prctl(PR_SET_PDEATHSIG, SIGQUIT);
  if (chdir("/") == 0) execv(arguments[0], arguments.data());
  _exit(127);
}

int FreePort() {
  const int file = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  if (bind(file, any, size) != 0 || getsockname(file, any, &size) != 0) {
    throw std::runtime_error("no port is free");
  }
  close(file);
  return ntohs(address.sin_port);
}

}  // namespace

PostgresCluster& PostgresCluster::Get() {
  static const auto cluster = [] {
    std::unique_ptr<PostgresCluster> made(new PostgresCluster);
    made->Fill({ProgramsOfServer() / "initdb", "-U", kUser, "-A", "scram-sha-256",
                "--auth-local=trust", "-E", "UTF8", "--locale=C", "--no-sync"});
    made->Start();
    made->Do("postgres", std::string("ALTER USER orvane PASSWORD '") + kPassword + "'");
    return made;
  }();
  return *cluster;
}

std::unique_ptr<PostgresCluster> PostgresCluster::NewStandby() const {
  std::unique_ptr<PostgresCluster> standby(new PostgresCluster);
  standby->Fill({ProgramsOfServer() / "pg_basebackup", "-h", m_folder, "-p",
                 std::to_string(m_nPort), "-U", kUser, "-R", "-c", "fast", "--no-sync"});
  standby->Start();
  return standby;
}

PostgresCluster::PostgresCluster() {
  std::string sFolder = (fs::temp_directory_path() / "orvane-postgres-XXXXXX").string();
  if (mkdtemp(sFolder.data()) == nullptr) throw std::runtime_error("no folder for the cluster");
  m_folder = sFolder;
  if (const passwd* const user = OtherUser()) {
    if (chown(sFolder.c_str(), user->pw_uid, user->pw_gid) != 0) {
      throw std::runtime_error("the cluster's folder cannot be given away");
    }
  }
}

void PostgresCluster::Fill(std::vector<std::string> words) const {
  words.insert(words.end(), {"-D", m_folder / "data"});
  int nStatus = 0;
  waitpid(StartProgram(words, m_folder), &nStatus, 0);
  if (nStatus == 0) return;
  std::ifstream log(m_folder / "log");
  throw std::runtime_error(words.front() +
                           " failed: " + std::string(std::istreambuf_iterator<char>(log), {}));
}

void PostgresCluster::Do(const std::string& sDatabase, const std::string& sSql) const {
  PGconn* const connection = PQconnectdb(Address(sDatabase).c_str());
  PGresult* const result = PQexec(connection, sSql.c_str());
  const auto status = PQresultStatus(result);
  const bool bDone = status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
  const std::string sWhy = PQerrorMessage(connection);
  PQclear(result);
  PQfinish(connection);
  if (!bDone) throw std::runtime_error(sSql + ": " + sWhy);
}

std::string PostgresCluster::NewDatabase() {
  const std::string sDatabase = "d" + std::to_string(++m_nDatabases);
  Do("postgres", "CREATE DATABASE " + sDatabase);
  Do(sDatabase, "DROP SCHEMA public");
  return sDatabase;
}

void PostgresCluster::DropDatabase(const std::string& sDatabase) {
  Do("postgres", "DROP DATABASE " + sDatabase + " WITH (FORCE)");
}

void PostgresCluster::Start() {
  m_nPort = FreePort();
  m_server = StartProgram(
      {ProgramsOfServer() / "postgres", "-D", m_folder / "data", "-k", m_folder, "-p",
       std::to_string(m_nPort), "-c", "listen_addresses=127.0.0.1", "-c", "fsync=off", "-c",
       "full_page_writes=off", "-c", "max_connections=40", "-c", "shared_buffers=16MB"},
      m_folder);
  for (int nTries = 0; nTries < 1000; ++nTries) {
    PGconn* const connection = PQconnectdb(Address().c_str());
    const bool bUp = PQstatus(connection) == CONNECTION_OK;
    PQfinish(connection);
    if (bUp) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  throw std::runtime_error("PostgreSQL's server does not start");
}

void PostgresCluster::Kill() {
  // Its children end with SIGQUIT at once, without writing anything.
  kill(m_server, SIGQUIT);
  waitpid(m_server, nullptr, 0);
  m_server = 0;
}

PostgresCluster::~PostgresCluster() {
  if (m_server != 0) Kill();
  std::error_code ignored;
  fs::remove_all(m_folder, ignored);
}

std::string PostgresCluster::Address(const std::string& sDatabase) const {
  return "postgresql://orvane@/" + sDatabase + "?host=" + m_folder.string() +
         "&port=" + std::to_string(m_nPort);
}

std::string PostgresCluster::AddressByPort(const std::string& sDatabase) const {
  return "postgresql://127.0.0.1:" + std::to_string(m_nPort) + "/" + sDatabase;
}

}  // namespace orvane::tests
