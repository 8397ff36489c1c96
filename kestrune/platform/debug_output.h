#pragma once

#include "kestrune/export.h"

#include <functional>

namespace kestrune::platform {

using DebugSink = std::function<void(const char *text)>;

/// Sends the debug texts of the process to `sink`; an empty one gives them back to their default: the standard error
/// stream when the environment variable KESTRUNE_DEBUG is 1, else nowhere. The sink must not throw.
KESTRUNE_API void SetDebugSink(DebugSink sink);

/// Whether anybody listens. A text is only composed when somebody does.
bool DebugOutputWanted();

} // namespace kestrune::platform

/// Writes `text` to the debug channel.
KESTRUNE_API void OutputDebugStringA(const char *text);
