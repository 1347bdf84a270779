#include "provider/engines/sqlite/sqlite_functions.h"

#include <new>

#include "provider/engines/sqlite/sqlite_errors.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using platform::Value;

Value ValueOf(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    case SQLITE_TEXT: {
      const auto* const sText = reinterpret_cast<const char*>(sqlite3_value_text(value));
      if (sText == nullptr) throw std::bad_alloc();
      return Text(sText, static_cast<std::size_t>(sqlite3_value_bytes(value)));
    }
    case SQLITE_BLOB: {
      const auto* const bytes = static_cast<const std::byte*>(sqlite3_value_blob(value));
      const auto nBytes = static_cast<std::size_t>(sqlite3_value_bytes(value));
      return bytes == nullptr ? platform::Bytes() : platform::Bytes(bytes, bytes + nBytes);
    }
    default:
      return {};
  }
}

void Give(sqlite3_context* context, const Value& vtValue) {
  if (const auto* const time = vtValue.As<platform::Timestamp>()) {
    sqlite3_result_int64(context, time->time_since_epoch().count());
  } else if (const auto* const ll = vtValue.As<std::int64_t>()) {
    sqlite3_result_int64(context, *ll);
  } else if (const auto* const d = vtValue.As<double>()) {
    sqlite3_result_double(context, *d);
  } else if (const auto* const sText = vtValue.As<Text>()) {
    sqlite3_result_text64(context, sText->data(), sText->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  } else if (vtValue.IsNull()) {
    sqlite3_result_null(context);
  } else {
    sqlite3_result_error(context, "a function gives what cannot be stored", -1);
  }
}

}  // namespace

SqliteFunctions::SqliteFunctions(sqlite3* database, std::span<const StatementFunction> functions)
    : m_database(database) {
  for (const StatementFunction& function : functions) {
    Known& known = m_known.emplace_back(Known{this, &function});
    const int nCode = sqlite3_create_function_v2(
        database, function.sName.c_str(), 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY,
        &known, Call, nullptr, nullptr, nullptr);
    if (nCode != SQLITE_OK) throw FailureOf(nCode, function.sName, sqlite3_errmsg(database), {});
  }
}

SqliteFunctions::~SqliteFunctions() {
  for (const Known& known : m_known) {
    sqlite3_create_function_v2(m_database, known.function->sName.c_str(), 1, SQLITE_UTF8, nullptr,
                               nullptr, nullptr, nullptr, nullptr);
  }
}

void SqliteFunctions::Call(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto* const known = static_cast<const Known*>(sqlite3_user_data(context));
  try {
    Give(context, known->function->call(ValueOf(arguments[0])));
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  } catch (const platform::Failure& failed) {
    known->owner->m_failed.emplace(failed);
    sqlite3_result_error(context, failed.Description().c_str(), -1);
  } catch (const std::exception& failed) {
    sqlite3_result_error(context, failed.what(), -1);
  }
}

}  // namespace orvane::provider::engines
