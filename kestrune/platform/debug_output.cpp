#include "kestrune/platform/debug_output.h"

#include "kestrune/platform/hook.h"
#include "kestrune/platform/lasting.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constinit kestrune::platform::Lasting<kestrune::platform::Hook<kestrune::platform::DebugSink>> theSink;

[[gnu::destructor]] void releaseSink() { theSink->set(nullptr); }

bool standardErrorWanted() {
  const char *wanted = std::getenv("KESTRUNE_DEBUG");
  return wanted != nullptr && std::strcmp(wanted, "1") == 0;
}

} // namespace

namespace kestrune::platform {

void SetDebugSink(DebugSink sink) { theSink->set(std::move(sink)); }

bool DebugOutputWanted() { return theSink->isSet() || standardErrorWanted(); }

} // namespace kestrune::platform

void OutputDebugStringA(const char *text) {
  if (text == nullptr)
    return;
  if (const auto sink = theSink->get())
    (*sink)(text);
  else if (standardErrorWanted())
    std::fputs(text, stderr);
}
