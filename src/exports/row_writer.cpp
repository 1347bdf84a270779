#include "exports/row_writer.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string_view>

#include "exports/aligned_text.h"
#include "exports/value_text.h"
#include "platform/conversions.h"
#include "platform/json_text.h"
#include "platform/quoting.h"
#include "platform/utf8.h"

namespace orvane::exports {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::Text;
using platform::Value;

namespace {

platform::Bytes BytesOf(const Text& sText) {
  platform::Bytes bytes;
  for (const char c : sText) bytes.push_back(static_cast<std::byte>(c));
  return bytes;
}

class CsvWriter final : public RowWriter {
 public:
  explicit CsvWriter(WriterOptions options) : m_options(std::move(options)) {}

  void Begin(const Recordset& rs, std::vector<ColumnIndex> columns, Text& sOut) override {
    m_columns = std::move(columns);
    if (!m_options.bNames) return;
    Line(sOut, [&](ColumnIndex column) { AppendText(sOut, rs.FieldAt(column).Name()); });
  }

  void Row(const Recordset& rs, RowIndex row, Text& sOut) override {
    Line(sOut, [&](ColumnIndex column) {
      const Value vtValue = rs.ValueAt(row, column);
      if (const auto* sText = vtValue.As<Text>()) {
        AppendText(sOut, *sText);
      } else {
        const std::size_t nStart = sOut.size();
        AppendValue(sOut, vtValue, m_options.zone);
        // Somebody may separate by a character that stands in numbers or times.
        if (sOut.find(m_options.cSeparator, nStart) != Text::npos) Quote(sOut, nStart);
      }
    });
  }

 private:
  template <class Append>
  void Line(Text& sOut, Append append) {
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (i > 0) sOut += m_options.cSeparator;
      append(m_columns[i]);
    }
    sOut += "\r\n";
  }

  void AppendText(Text& sOut, const Text& sText) const {
    const std::size_t nStart = sOut.size();
    sOut += sText;
    if (NeedsQuotes(sText)) Quote(sOut, nStart);
  }

  bool NeedsQuotes(std::string_view sText) const {
    if (sText.empty() || sText.front() == ' ' || sText.back() == ' ') return true;
    for (const char c : sText) {
      if (c == m_options.cSeparator || c == '"' || c == '\n' || c == '\r' || c == 0) return true;
    }
    return false;
  }

  static void Quote(Text& sOut, std::size_t nStart) {
    const Text sText = sOut.substr(nStart);
    sOut.resize(nStart);
    sOut += '"';
    for (const char c : sText) {
      if (c == '"') sOut += '"';
      sOut += c;
    }
    sOut += '"';
  }

  WriterOptions m_options;
  std::vector<ColumnIndex> m_columns;
};

class JsonLinesWriter final : public RowWriter {
 public:
  explicit JsonLinesWriter(WriterOptions options) : m_options(std::move(options)) {}

  void Begin(const Recordset& rs, std::vector<ColumnIndex> columns, Text&) override {
    m_columns = std::move(columns);
    m_keys.clear();
    std::set<Text> taken;
    for (const ColumnIndex column : m_columns) {
      const Text& sName = rs.FieldAt(column).Name();
      Text sUnique = sName;
      for (int n = 2; !taken.insert(sUnique).second; ++n) {
        sUnique = sName + " (" + std::to_string(n) + ")";
      }
      Text sKey;
      AppendText(sKey, sUnique);
      m_keys.push_back(std::move(sKey) + ":");
    }
  }

  void Row(const Recordset& rs, RowIndex row, Text& sOut) override {
    sOut += '{';
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (i > 0) sOut += ',';
      sOut += m_keys[i];
      Append(sOut, rs.ValueAt(row, m_columns[i]));
    }
    sOut += "}\n";
  }

 private:
  static void AppendText(Text& sOut, const Text& sText) {
    if (platform::IsUtf8(sText)) return platform::AppendJsonString(sOut, sText);
    sOut += R"({"bytes":")";
    sOut += platform::ToText(Value(BytesOf(sText)));
    sOut += "\"}";
  }

  void Append(Text& sOut, const Value& vtValue) const {
    switch (vtValue.Kind()) {
      case platform::ValueKind::Null:
        sOut += "null";
        return;
      case platform::ValueKind::Boolean:
        sOut += *vtValue.As<bool>() ? "true" : "false";
        return;
      case platform::ValueKind::Double:
        if (!std::isfinite(*vtValue.As<double>())) break;
        AppendDouble(sOut, *vtValue.As<double>());
        return;
      case platform::ValueKind::Long:
      case platform::ValueKind::LongLong:
      case platform::ValueKind::Decimal:
        AppendValue(sOut, vtValue, m_options.zone);
        return;
      case platform::ValueKind::Text:
        AppendText(sOut, *vtValue.As<Text>());
        return;
      case platform::ValueKind::Timestamp:
        sOut += '"';
        AppendTime(sOut, *vtValue.As<platform::Timestamp>(), m_options.zone, 'T');
        sOut += '"';
        return;
      case platform::ValueKind::WallTime: {
        Text sWall = platform::ToText(vtValue);
        std::ranges::replace(sWall, ' ', 'T');
        sOut.append("\"").append(sWall).append("\"");
        return;
      }
      case platform::ValueKind::Date:
      case platform::ValueKind::TimeOfDay:
      case platform::ValueKind::Bytes:
      case platform::ValueKind::Guid:
      case platform::ValueKind::Object:
        break;
    }
    sOut += '"';
    AppendValue(sOut, vtValue, m_options.zone);
    sOut += '"';
  }

  WriterOptions m_options;
  std::vector<ColumnIndex> m_columns;
  std::vector<Text> m_keys;
};

class SqlWriter final : public RowWriter {
 public:
  explicit SqlWriter(WriterOptions options) : m_options(std::move(options)) {}

  void Begin(const Recordset& rs, std::vector<ColumnIndex> columns, Text&) override {
    m_columns = std::move(columns);
    Text sNames;
    for (const ColumnIndex column : m_columns) {
      if (!sNames.empty()) sNames += ", ";
      sNames += platform::QuotedName(rs.FieldAt(column).Name());
    }
    m_sHead = "INSERT INTO " + m_options.sInto + " (" + sNames + ") VALUES (";
  }

  void Row(const Recordset& rs, RowIndex row, Text& sOut) override {
    sOut += m_sHead;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (i > 0) sOut += ", ";
      Append(sOut, rs.ValueAt(row, m_columns[i]));
    }
    sOut += ");\n";
  }

 private:
  void Append(Text& sOut, const Value& vtValue) const {
    switch (vtValue.Kind()) {
      case platform::ValueKind::Null:
        sOut += "NULL";
        return;
      case platform::ValueKind::Boolean:
        sOut += *vtValue.As<bool>() ? "TRUE" : "FALSE";
        return;
      case platform::ValueKind::Double:
        AppendDouble(sOut, *vtValue.As<double>());
        return;
      case platform::ValueKind::Long:
      case platform::ValueKind::LongLong:
      case platform::ValueKind::Decimal:
        AppendValue(sOut, vtValue, m_options.zone);
        return;
      case platform::ValueKind::Text:
        AppendText(sOut, *vtValue.As<Text>());
        return;
      case platform::ValueKind::Bytes:
        AppendHex(sOut, platform::ToText(vtValue));
        return;
      case platform::ValueKind::Timestamp:
      case platform::ValueKind::WallTime:
      case platform::ValueKind::Date:
      case platform::ValueKind::TimeOfDay:
      case platform::ValueKind::Guid:
      case platform::ValueKind::Object:
        break;
    }
    sOut += '\'';
    AppendValue(sOut, vtValue, m_options.zone);
    sOut += '\'';
  }

  // What no digits stand for in every engine: a number beyond all doubles is read as infinity, and
  // the sign of zero belongs to doubles alone. An engine without NaN reads null.
  static void AppendDouble(Text& sOut, double dValue) {
    constexpr std::string_view kInfinity = "CAST(9e999 AS DOUBLE)";
    if (std::isnan(dValue)) {
      sOut.append(kInfinity).append(" - ").append(kInfinity);
    } else if (std::isinf(dValue)) {
      sOut += dValue < 0 ? "CAST(-9e999 AS DOUBLE)" : kInfinity;
    } else if (dValue == 0 && std::signbit(dValue)) {
      sOut += "CAST('-0.0' AS DOUBLE)";
    } else {
      exports::AppendDouble(sOut, dValue);
    }
  }

  // A zero byte would end the statement.
  static void AppendText(Text& sOut, const Text& sText) {
    if (sText.find('\0') != Text::npos) {
      sOut += "CAST(";
      AppendHex(sOut, platform::ToText(Value(BytesOf(sText))));
      sOut += " AS TEXT)";
      return;
    }
    sOut += '\'';
    for (const char c : sText) {
      if (c == '\'') sOut += '\'';
      sOut += c;
    }
    sOut += '\'';
  }

  static void AppendHex(Text& sOut, std::string_view sBytes) {
    sOut += "X'";
    sOut += sBytes.substr(2);
    sOut += '\'';
  }

  WriterOptions m_options;
  std::vector<ColumnIndex> m_columns;
  Text m_sHead;
};

}  // namespace

std::unique_ptr<RowWriter> MakeRowWriter(WriterOptions options) {
  switch (options.form) {
    case Form::JsonLines:
      return std::make_unique<JsonLinesWriter>(std::move(options));
    case Form::Sql:
      return std::make_unique<SqlWriter>(std::move(options));
    case Form::AlignedText:
      return MakeAlignedText(std::move(options.zone));
    case Form::Csv:
      break;
  }
  return std::make_unique<CsvWriter>(std::move(options));
}

std::vector<ColumnIndex> AllColumns(const Recordset& rs) {
  std::vector<ColumnIndex> columns;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) columns.push_back(column);
  return columns;
}

}  // namespace orvane::exports
