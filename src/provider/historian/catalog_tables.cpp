#include "provider/historian/catalog_tables.h"

namespace orvane::provider::historian {

const std::string_view kNewCatalog = R"(
CREATE TABLE Tags (
  Tag TEXT NOT NULL PRIMARY KEY,
  Description TEXT,
  Unit TEXT,
  Type TEXT NOT NULL DEFAULT 'number' CHECK (Type IN ('number', 'text'))
) WITHOUT ROWID;
CREATE TABLE Data (
  Tag TEXT NOT NULL,
  Timestamp TIMESTAMP NOT NULL CHECK (typeof(Timestamp) = 'integer'),
  Value REAL,
  Status TEXT NOT NULL DEFAULT 'Good',
  PRIMARY KEY (Tag, Timestamp)
) WITHOUT ROWID;
CREATE INDEX DataByTime ON Data (Timestamp);
CREATE TABLE Data2 (
  Tag TEXT NOT NULL,
  Timestamp TIMESTAMP NOT NULL CHECK (typeof(Timestamp) = 'integer'),
  Value TEXT,
  Status TEXT NOT NULL DEFAULT 'Good',
  PRIMARY KEY (Tag, Timestamp)
) WITHOUT ROWID;
CREATE INDEX Data2ByTime ON Data2 (Timestamp))";

const std::string_view kNewSystemCatalog = R"(
CREATE TABLE Historians (
  Name TEXT NOT NULL PRIMARY KEY,
  Identity GUID NOT NULL UNIQUE,
  Created TIMESTAMP NOT NULL,
  Path TEXT NOT NULL,
  SizeLimit BIGINT,
  Description TEXT NOT NULL DEFAULT ''
) WITHOUT ROWID)";

}  // namespace orvane::provider::historian
