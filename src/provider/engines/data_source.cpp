#include "provider/engines/data_source.h"

#include "platform/failure.h"
#include "platform/stored_secret.h"

namespace orvane::provider::engines {

void RefusePassword(std::string_view sDataSource) {
  if (!platform::HoldsSecret(sDataSource)) return;
  throw platform::Failure(platform::failure::kInvalidArgument,
                          "The server's text holds a password; leave it out and enter it in the "
                          "logon dialog.");
}

}  // namespace orvane::provider::engines
