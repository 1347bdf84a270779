#include "provider/engines/postgres/postgres_forms.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/quoting.h"

namespace orvane::provider::engines {

using platform::Text;

namespace {

// Times in UTC, as sessions on a server are.
constexpr CallForm kCalls[] = {
    {"CHAR", 1, "chr({}"},
    {"DATE", 1, "to_char(({})::timestamptz, 'YYYY-MM-DD'"},
    {"DATE", 2, "to_char(({})::timestamptz + ({})::interval, 'YYYY-MM-DD'"},
    {"DATETIME", 1, "to_char(({})::timestamptz, 'YYYY-MM-DD HH24:MI:SS'"},
    {"DATETIME", 2, "to_char(({})::timestamptz + ({})::interval, 'YYYY-MM-DD HH24:MI:SS'"},
    {"GROUP_CONCAT", 1, "string_agg(({})::text, ','"},
    {"GROUP_CONCAT", 2, "string_agg(({})::text, ({})::text"},
    {"HEX", 1, "upper(encode({}, 'hex')"},
    {"IF", 3, "(CASE WHEN {} THEN {} ELSE {} END"},
    {"IFNULL", 2, "coalesce({}, {}"},
    {"IIF", 2, "(CASE WHEN {} THEN {} END"},
    {"IIF", 3, "(CASE WHEN {} THEN {} ELSE {} END"},
    {"INSTR", 2, "strpos({}, {}"},
    {"JULIANDAY", 1, "(extract(epoch FROM ({})::timestamptz)::float8 / 86400 + 2440587.5"},
    {"RANDOM", 0, "((random() - 0.5) * 18446744073709549568)::bigint"},
    {"ROUND", 1, "(round(({})::numeric)::float8"},
    {"ROUND", 2, "(round(({})::numeric, {})::float8"},
    {"TIME", 1, "to_char(({})::timestamptz, 'HH24:MI:SS'"},
    {"TOTAL", 1, "sum({}", "coalesce(", ", 0)::float8"},
    {"TYPEOF", 1,
     "(SELECT CASE WHEN o.v IS NULL THEN 'null' ELSE CASE pg_typeof(o.v)::text WHEN 'smallint' "
     "THEN "
     "'integer' WHEN 'bigint' THEN 'integer' WHEN 'numeric' THEN 'real' WHEN 'double precision' "
     "THEN 'real' WHEN 'bytea' THEN 'blob' WHEN 'character varying' THEN 'text' ELSE "
     "pg_typeof(o.v)::text END END FROM (SELECT {} AS v) AS o"},
    {"UNICODE", 1, "ascii({}"},
    {"UNIXEPOCH", 1, "(floor(extract(epoch FROM ({})::timestamptz))::bigint"},
};

constexpr TypeForm kTypeForms[] = {
    {"BINARY", "bytea"},
    {"BIT", "boolean"},
    {"BLOB", "bytea"},
    {"CLOB", "text"},
    {"DATETIME", "timestamptz", true},
    {"DOUBLE", "double precision"},
    {"GUID", "uuid"},
    {"MEDIUMINT", "integer"},
    {"NVARCHAR", "varchar", true},
    {"TIMESTAMP", "timestamptz", true},
    {"TINYINT", "smallint"},
    {"UNIQUEIDENTIFIER", "uuid"},
    {"VARBINARY", "bytea"},
};

// How a value is written where the pattern has "%" and what follows; none for what is not known.
struct Written {
  std::string_view sBefore;
  Text sBehind;
};

std::optional<Written> ReadSpecifier(std::string_view& sPattern) {
  Text sDigits;
  if (sPattern.starts_with('.')) {
    sPattern.remove_prefix(1);
    while (!sPattern.empty() && sPattern.front() >= '0' && sPattern.front() <= '9') {
      sDigits += sPattern.front();
      sPattern.remove_prefix(1);
    }
    // "%.f" has none, and of a text it would cut.
    if (sDigits.empty()) sDigits = "0";
    if (sDigits.size() > 2 || !sPattern.starts_with('f')) return std::nullopt;
  }
  if (sPattern.empty()) return std::nullopt;
  const char specifier = sPattern.front();
  sPattern.remove_prefix(1);
  if (specifier == 's') return Written{"(", ")::text"};
  if (specifier == 'd' || specifier == 'i') return Written{"trunc((", ")::numeric)::bigint"};
  if (specifier == 'f') {
    return Written{"round((", ")::numeric, " + (sDigits.empty() ? Text("6") : sDigits) + ')'};
  }
  return std::nullopt;
}

std::optional<std::vector<Text>> WriteFormat(std::string_view sPattern, std::size_t nArguments) {
  std::vector<Text> pieces = {"concat("};
  Text sPlain;
  bool bFirst = true;
  const auto endPlain = [&] {
    if (sPlain.empty() && !bFirst) return;
    pieces.back() += (bFirst ? "" : ", ") + platform::QuotedText(std::exchange(sPlain, Text()));
    bFirst = false;
  };
  while (!sPattern.empty()) {
    const char character = sPattern.front();
    sPattern.remove_prefix(1);
    if (character != '%') {
      sPlain += character;
    } else if (sPattern.starts_with('%')) {
      sPlain += '%';
      sPattern.remove_prefix(1);
    } else {
      endPlain();
      const auto written = ReadSpecifier(sPattern);
      if (!written) return std::nullopt;
      pieces.back() += ", " + Text(written->sBefore);
      pieces.push_back(written->sBehind);
    }
  }
  endPlain();
  if (pieces.size() != nArguments + 1) return std::nullopt;
  return pieces;
}

// Of each letter behind "%" what to_char calls it.
constexpr std::array<std::pair<char, std::string_view>, 11> kParts = {{{'Y', "YYYY"},
                                                                       {'m', "MM"},
                                                                       {'d', "DD"},
                                                                       {'H', "HH24"},
                                                                       {'M', "MI"},
                                                                       {'S', "SS"},
                                                                       {'f', "SS.MS"},
                                                                       {'j', "DDD"},
                                                                       {'F', "YYYY-MM-DD"},
                                                                       {'T', "HH24:MI:SS"},
                                                                       {'R', "HH24:MI"}}};

std::optional<std::vector<Text>> WriteTimeFormat(std::string_view sPattern,
                                                 std::size_t nArguments) {
  if (nArguments != 1) return std::nullopt;
  Text sFormat;
  for (std::size_t i = 0; i < sPattern.size(); ++i) {
    const char character = sPattern[i];
    if (character != '%') {
      // Letters would be read as parts of the time, and quotes as what keeps them from it.
      if (character == '"' || character == '\\') return std::nullopt;
      sFormat += '"';
      sFormat += character;
      sFormat += '"';
      continue;
    }
    if (++i == sPattern.size()) return std::nullopt;
    const auto* const part =
        std::ranges::find(kParts, sPattern[i], &std::pair<char, std::string_view>::first);
    if (part == kParts.end()) return std::nullopt;
    sFormat += part->second;
  }
  return std::vector<Text>{"to_char((", ")::timestamptz, " + platform::QuotedText(sFormat)};
}

constexpr PatternForm kPatterns[] = {
    {"FORMAT", &WriteFormat}, {"PRINTF", &WriteFormat}, {"STRFTIME", &WriteTimeFormat}};

}  // namespace

const SqlForm kPostgresForm = {
    .calls = kCalls,
    .patterns = kPatterns,
    .types = kTypeForms,
    // Unlike GREATEST and LEAST, which pass over null.
    .sGreatest = "(SELECT o.v FROM (VALUES {}) AS o(v) ORDER BY o.v IS NULL DESC, o.v DESC LIMIT 1",
    .sLeast = "(SELECT o.v FROM (VALUES {}) AS o(v) ORDER BY o.v IS NULL DESC, o.v LIMIT 1",
    .sBinaryOrder = "\"C\"",
    // In one column of VALUES both have the same type, which is that of the table's column.
    .sSameBytes =
        "SELECT CASE count(o.v) WHEN 2 THEN count(DISTINCT o.v::text COLLATE \"C\") = 1 "
        "END FROM (VALUES ({}), ({})) AS o(v)",
    .sSameBytesOrNull =
        "SELECT CASE count(o.v) WHEN 2 THEN count(DISTINCT o.v::text COLLATE \"C\") = 1 ELSE "
        "count(o.v) = 0 END FROM (VALUES ({}), ({})) AS o(v)",
    // A number of single precision is given as it is written, 0.1, and would be widened into
    // another.
    .sColumnSameBytes =
        "SELECT CASE count(o.v) WHEN 2 THEN count(DISTINCT CASE WHEN o.c AND pg_typeof(o.v) = "
        "'double precision'::regtype THEN \"=\".v::text::float8::text ELSE o.v::text END COLLATE "
        "\"C\") = 1 END FROM (SELECT {} AS v) AS \"=\", LATERAL (VALUES (\"=\".v, true), ({}, "
        "false)) AS o(v, c)",
    .sColumnSameBytesOrNull =
        "SELECT CASE count(o.v) WHEN 2 THEN count(DISTINCT CASE WHEN o.c AND pg_typeof(o.v) = "
        "'double precision'::regtype THEN \"=\".v::text::float8::text ELSE o.v::text END COLLATE "
        "\"C\") = 1 ELSE count(o.v) = 0 END FROM (SELECT {} AS v) AS \"=\", LATERAL (VALUES "
        "(\"=\".v, true), ({}, false)) AS o(v, c)",
    .sBytesBefore = "'\\x",
    .sBytesBehind = "'::bytea",
    .sInfinity = "'Infinity'::double precision",
    .sMicroseconds = " * interval '0.000001 s'",
    .sBetweenBefore = "(extract(epoch FROM (",
    .sBetweenBehind = ")) * 1000000)",
    .bTimesBeyond = true,
    .sTimeBehind = "::timestamptz",
    .sDayBehind = "::date",
    .sClockBehind = "::time",
    // Where clocks are put back over midnight the first one is meant, and not the second as a
    // server takes it. That one is an hour behind 23:00, unless they are put forward in between.
    .midnightInZone = {"(SELECT least(o.m AT TIME ZONE o.z, (o.m - interval '1 hour') AT TIME ZONE "
                       "o.z + interval '1 hour') FROM (VALUES ((",
                       ")::timestamp, ", ")) AS o(m, z))"},
    .dayInZone = {"(((", ")::timestamptz AT TIME ZONE ", ")::date)"},
};

}  // namespace orvane::provider::engines
