// The platform as a component is handed it when it is created; there is no global instance.
// Filled by the host, copied by components as they need; tests fill it with fakes.
#pragma once

#include <memory>

#include "platform/ado/connection.h"
#include "platform/console/console.h"
#include "platform/failure_log.h"
#include "platform/file_version.h"
#include "platform/forms/forms.h"
#include "platform/grids/table_query.h"
#include "platform/long_operation.h"
#include "platform/unsent_rows.h"
#include "platform/user_interface.h"

namespace orvane::platform {

/// Makes the objects that the model and the server access need.
class ObjectFactory {
 public:
  ObjectFactory() = default;
  ObjectFactory(const ObjectFactory&) = delete;
  ObjectFactory& operator=(const ObjectFactory&) = delete;
  virtual ~ObjectFactory() = default;

  /// A fresh, closed connection.
  virtual ConnectionPtr CreateConnection() = 0;
  virtual CommandPtr CreateCommand() = 0;
  /// A new, empty query object of the grid library.
  virtual TableQueryPtr CreateTableQuery() = 0;
};

using ObjectFactoryPtr = std::shared_ptr<ObjectFactory>;

/// Everything a component may use. A component takes what it needs; what a host does not offer
/// is null.
struct Services {
  std::shared_ptr<platform::Console> console;
  ObjectFactoryPtr objects;
  std::shared_ptr<platform::Forms> forms;
  std::shared_ptr<UserInterface> ui;
  std::shared_ptr<FailureLog> failures;
  std::shared_ptr<platform::FileVersion> fileVersion;
  std::shared_ptr<platform::LongOperation> longOperation;
  std::shared_ptr<UnsentRows> unsentRows;
};

}  // namespace orvane::platform
