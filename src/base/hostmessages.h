// The library's queries to its host, sent as WM_VXBASE to g_pDLLMainframe.
//
//   int answer = CommonMessage("Plan saved", MB_OK, 0, nullptr, 0, 0);
//   CString project = GetActProject();   // "" without a host
#pragma once

#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// The record of query 1, nine words in this order. On this 64-bit platform
// the pointer words are pointer-sized; the host reads the fields by name.
struct CommonMessageRec {
    UINT id;           // 0: string resource id, or 0
    unsigned a;        // 1: first numeric argument
    unsigned b;        // 2: second numeric argument
    const char* text1; // 3: first text
    const char* text2; // 4: second text, or null
    int* p;            // 5: the caller's pointer
    int c;             // 6: first int argument
    int d;             // 7: second int argument
    int result;        // 8: the posted form's answer
};

// Sends query 1 and returns the host's answer; -1 without a host.
VXBASE_EXPORT int CommonMessage(const char* text, unsigned a, unsigned b, int* p, int c, int d);
VXBASE_EXPORT int CommonMessage(unsigned id, const char* s1, const char* s2, unsigned a, unsigned b, int* p, int c,
                                int d);
// Posts query 1 with the library's one static record and returns a pointer
// to its result word, which the host fills and the caller polls. The word
// is set to -1 before posting; without a host nothing is touched, so it
// keeps its earlier value. A second post before the host has read the first
// overwrites the record.
VXBASE_EXPORT int* PostCommonMessage(const char* text, unsigned a, unsigned b, int* p, int c, int d);
VXBASE_EXPORT int* PostCommonMessage(unsigned id, const char* s1, const char* s2, unsigned a, unsigned b, int* p,
                                     int c, int d);

// Query 2 with the three texts; "" without a host or answer.
VXBASE_EXPORT CString GetDlgVerzeichnis(const char* a, const char* b, const char* c);
// Query 9: the host's answer minus 1; (unsigned long)-1 when the answer is 0
// or there is no host.
VXBASE_EXPORT unsigned long GetDlgSkinID(unsigned long id);
// Query 10: the active project; "" without a host.
VXBASE_EXPORT CString GetActProject();
// Query 7: the edition flags of the product; 0 without a host.
VXBASE_EXPORT DWORD GetVxModul();
