#pragma once

/// \file
/// What is visible outside the library.

/// Marks what the shared library offers to programs. Everything else is hidden: the library is built with hidden
/// visibility, so a declaration without this macro cannot be linked against from outside.
#define KESTRUNE_API __attribute__((visibility("default")))
