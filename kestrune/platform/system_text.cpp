#include "kestrune/platform/system_text.h"

#include <cerrno>
#include <system_error>

namespace kestrune::platform {

std::string SystemText(int error) {
  return error == EWOULDBLOCK ? "another program has locked it" : std::generic_category().message(error);
}

} // namespace kestrune::platform
