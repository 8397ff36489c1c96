#pragma once

#include "kestrune/export.h"
#include "kestrune/platform/types.h"

#include <functional>

/// \file
/// Message boxes: their types, the ids of their buttons, and who shows them.

/// The type of a message box: the low four bits select its buttons, and 0x100, 0x200 and 0x300 make the second, third
/// or fourth the default. @{
constexpr UINT MB_OK = 0x0;
constexpr UINT MB_OKCANCEL = 0x1;
constexpr UINT MB_ABORTRETRYIGNORE = 0x2;
constexpr UINT MB_YESNOCANCEL = 0x3;
constexpr UINT MB_YESNO = 0x4;
constexpr UINT MB_RETRYCANCEL = 0x5;
constexpr UINT MB_DEFBUTTON2 = 0x100;
constexpr UINT MB_DEFBUTTON3 = 0x200;
///@}

/// The id of the button that was chosen. @{
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;
///@}

namespace kestrune::platform {

/// Shows `text`, which is valid during the call, in a message box of type `nType` and returns the id of the chosen
/// button. `nIDHelp` is what the caller of AfxMessageBox gave.
using MessageBoxHandler = std::function<int(const char *text, UINT nType, UINT nIDHelp)>;

/// Lets `handler` show the message boxes of the process and return the answer. An empty `handler` restores the default:
/// the text goes to the standard error stream; if there is a choice and a terminal, the user is asked, else the answer
/// is the default button.
KESTRUNE_API void SetMessageBoxHandler(MessageBoxHandler handler);

} // namespace kestrune::platform

/// Shows `text` in a message box of type `nType` and returns the id of the chosen button. `nIDHelp` only goes to the
/// handler.
KESTRUNE_API int AfxMessageBox(const char *text, UINT nType = MB_OK, UINT nIDHelp = 0);
