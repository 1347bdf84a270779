// Texts that give a password and texts that only look like it, for every place where a text is
// stored, sent or shown. The secret is the same in all of them, so that a test can look for it.
#pragma once

#include <string>
#include <vector>

namespace orvane::fakes {

constexpr const char* kSecret = "sw0rdfish";

/// Each as it may stand in a connection string, or alone where a server is named.
inline const std::vector<std::string>& TextsWithSecret() {
  static const std::vector<std::string> all = {
      "Password = sw0rdfish",
      "password=sw0rdfish;",
      "PWD=sw0rdfish",
      "Passwd = sw0rdfish",
      "pass = sw0rdfish",
      "Pass Word\t= sw0rdfish",
      "p.a-s_s'w'o\"r\"d = sw0rdfish",
      "User Password = sw0rdfish",
      "UserPwd=sw0rdfish",
      "Database.Password=sw0rdfish",
      "sslpassword=sw0rdfish",
      "Client Secret = sw0rdfish",
      "passphrase=sw0rdfish",
      "Pa\xC5\xBFsword=sw0rdfish",
      "junk; x = y; Password = sw0rdfish; z = 1",
      "Time Zone = Password=sw0rdfish",
      "service=plant password=sw0rdfish",
      "host=h,password=sw0rdfish",
      "odbc:DSN;PWD=sw0rdfish",
      "postgresql://h/db?user=a&password=sw0rdfish",
      "postgresql://h/db?pass%77ord=sw0rdfish",
      "postgresql://h/db?%70%61%73%73%77%6F%72%64=sw0rdfish",
      "postgresql://h/db?pass%2577ord=sw0rdfish",
      "password%3Dsw0rdfish",
      "postgresql://anna:sw0rdfish@h/db",
      "postgresql://anna:sw0rd/sw0rdfish@h/db",
      "postgresql://anna%3Asw0rdfish@h/db",
      "postgresql://anna:sw0rdfish%40h/db",
      "anna:sw0rdfish@h",
      "Data Source = anna:sw0rdfish@h;",
      "postgresql://anna:se;sw0rdfish@h/db",
      "Data Source = postgresql://anna:se;sw0rdfish@h/db;Log Level = 2",
      "Password1 = sw0rdfish",
      "pwd2=sw0rdfish",
      "postgresql://anna:7;sw0rdfish@h/db",
      "Log Level = 2;Data Source = postgresql://anna:s=e;sw=0;sw0rdfish@h",
      "Password 2 = sw0rdfish",
      "secret3=sw0rdfish",
      "Data Source = //anna:sw0rdfish@h;",
  };
  return all;
}

inline const std::vector<std::string>& TextsWithoutSecret() {
  static const std::vector<std::string> all = {
      "",
      "localhost",
      "Data Source = S1;Disable Server Selection = True;",
      "Log File = /var/log/a:b@c.log;Log Level = 2;",
      "Log File = /users/anna/password.log",
      "Time Zone = CET-1CEST;User ID = anna@plant",
      "Compass = north; Bypass = True; Passage = 3; Secretary = anna",
      "100% = yes; 50%; %zz = 1",
      "postgresql://anna@h:5432/db",
      "postgresql://h:5432/db?application_name=console",
      "Password",
      "plant 10:30",
      "anna@h:5432",
      "Data Source = postgresql://h:5432/db;User ID = anna@plant",
      "Data Source = postgresql://h:5432;User ID = anna@plant",
      "Data Source = postgresql://[::1]:5432,h:5432;User ID = anna@plant",
      "Data Source = postgresql://h/db;Time = 10:30;User ID = anna@plant",
      "1 = 2; = 3",
  };
  return all;
}

}  // namespace orvane::fakes
