#pragma once

#include <string>

namespace kestrune::platform {

/// The system's words for an error number. A lock that was waited for in vain is called one.
std::string SystemText(int error);

} // namespace kestrune::platform
