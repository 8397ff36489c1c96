#pragma once

#include "kestrune/export.h"

#include <functional>

/// \file
/// The debug channel: what a load misses and why a save failed.

namespace kestrune::platform {

/// Receives each debug text; `text` is valid during the call.
using DebugSink = std::function<void(const char *text)>;

/// Sends the debug texts of the process to `sink`. An empty `sink` restores the default: the standard error stream if
/// the environment variable KESTRUNE_DEBUG is 1, else nothing is written. The sink must not throw.
KESTRUNE_API void SetDebugSink(DebugSink sink);

/// Whether debug texts are written anywhere. Callers compose a text only then.
bool DebugOutputWanted();

} // namespace kestrune::platform

/// Writes `text` to the debug channel; ignores null.
KESTRUNE_API void OutputDebugStringA(const char *text);
