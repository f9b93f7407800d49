// Natural ("DIN") order for texts that mix words and numbers: device
// designators, terminal and cable names. Runs of digits compare by value, so
// "K2" sorts before "K10", and designators compare by their leading number
// and then their letters.
//
//   CString a("K2"), b("K10");
//   CompareDINText(&a, &b);              // < 0
//   CString c("007"), d("7");
//   CompareDINText(&c, &d);              // < 0: leading zeros sort first
//   BezugComp("-12K", "-3K", '-', 0);    // > 0: 12 against 3
//
// Only the sign of a result carries meaning. Bytes compare as signed values
// throughout, so bytes of 0x80 and above (umlauts) sort below every ASCII
// character. A text is read up to its first zero byte. None of these
// functions keeps state; they may run on any thread.
#pragma once

#include "platform/framework/cstring.h"
#include "vxbase_export.h"

// Case-insensitive natural comparison of `a` from position `ia` and `b`
// from position `ib` (negative positions count as 0, positions past the end
// as the end). An ended text sorts first. Texts that start with a letter
// sort after numbers, texts that start with punctuation or a byte above
// 0x7F before them; equal numbers with more leading zeros sort first.
// A null pointer reads as an empty text.
VXBASE_EXPORT int CompareDINText(CString* a, CString* b);
VXBASE_EXPORT int CompareDINText(CString* a, int ia, CString* b, int ib);
// The same comparison, called where designators are meant.
VXBASE_EXPORT int CompareDINTextBezug(CString* a, CString* b);
VXBASE_EXPORT int CompareDINTextBezug(CString* a, int ia, CString* b, int ib);
// Case-sensitive natural comparison: "A" sorts before "a".
VXBASE_EXPORT int CompareDINTextCS(CString* a, CString* b);
VXBASE_EXPORT int CompareDINTextCS(CString* a, int ia, CString* b, int ib);
VXBASE_EXPORT int CompareDINTextBezugCS(CString* a, CString* b);
VXBASE_EXPORT int CompareDINTextBezugCS(CString* a, int ia, CString* b, int ib);

// Compares reference designators of the form number, letters, number,
// case-sensitively. If `prefix` is not 0 and both texts start with it, it
// is skipped. `mode` 0 reads the leading numbers only where the character
// after them agrees; any other `mode` compares the leading digit runs and
// then the rest as plain text. Positions are 16-bit counters and the result
// is cut to 16 bits; text beyond the first 32,767 bytes takes no part.
VXBASE_EXPORT int BezugComp(const char* a, const char* b, char prefix, int mode);

// 1 when no character of `s` from `start` on lies outside "0" to "9"
// (1 for an empty range or a null `s`).
VXBASE_EXPORT int IsAllNumber(CString* s, int start);
// As IsAllNumber, but "." is allowed too, anywhere but at position 0 of
// the string; any number of points passes.
VXBASE_EXPORT int IsAllRealNumber(CString* s, int start);
// 1 when no character of `s` from `start` on is a digit.
VXBASE_EXPORT int IsAllNotNumber(CString* s, int start);
// 1 for an ASCII letter or a character of string resource 6726 (the German
// letters "ÄäÖöÜüß" in the code page), whatever the locale.
VXBASE_EXPORT int IsLetter(char c);
