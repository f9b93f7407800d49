// Internal; do not include directly.
//
// What the parts of KProcessIO share.
#pragma once

#include "process/kprocessio.h"

namespace vx::detail {

// The type of the other program: IT for AT, AT for everything else.
MainframeType PartnerType();
// "AT" or "IT".
const char* ProgramName(MainframeType type);
// A window handle as the decimal number the suite file keeps, and back.
CString HandleText(HWND hwnd);
HWND HandleFromText(const char* text);
// A log line whose number may be a window handle (which needs 64 bits).
int LogLine(const char* text, long long id, ProcessLevelType level);
// ShowWindow, through the CWnd when the window has one.
BOOL ShowAnyWindow(HWND hwnd, int command);
// Sends a message with at most one string as payload and frees it.
void SendSimple(HWND target, ProcessIDType id, const char* text, int size);
// The partner route of PartnerMessageBox, which Init installs.
int ShowBoxAtPartner(int* result, const char* text, unsigned type, unsigned help);

} // namespace vx::detail
