// Delimited string lists: small lists kept in one CString.
//
// Separated lists have elements between single separator characters given
// on every call; "" is a list of 0 elements, any other text has one more
// element than separators. Integer lists write each value followed by "#"
// ("12#-3#"), and are read from the front.
//
//   CString list;
//   AddStringToList(list, "K1", ';');         // "K1"
//   AddStringToList(list, "K2", ';');         // "K1;K2"
//   GetSubString(2, list, ';');               // "K2"
//   GetSubString(3, list, ';');               // "K1;K2": beyond the end
//   CString ints;
//   AddIntToStringList(ints, -3);             // "-3#"
//
// The two readers by number differ at their edges on purpose; callers rely
// on each.
#pragma once

#include "platform/framework/cstring.h"
#include "platform/framework/rect.h"
#include "vxbase_export.h"

class CComboBox;

// --- building ------------------------------------------------------------------
// Appends `sep` unless `list` is empty, then `text`.
VXBASE_EXPORT void AddStringToList(CString& list, CString text, char sep);
// Appends the decimal digits of `value` and "#".
VXBASE_EXPORT void AddIntToStringList(CString& list, int value);
// Left, top, right and bottom as four integers.
VXBASE_EXPORT void AddRectToStringList(CString& list, const RECT& rect);
// Appends each element of `src` that IsSubStringIncluded reports missing
// from `dest`, with a `sep` in front unless `dest` ends with one (so an
// empty `dest` gets a leading separator). Returns the number added.
VXBASE_EXPORT int MergeSubStrings(CString& dest, const CString& src, int sep);

// --- reading by number -----------------------------------------------------------
// 0 for "", else separators + 1.
VXBASE_EXPORT int GetAnzahlSubStrings(const CString& list, int sep);
// Element `n`, counted from 1. 0 gives the whole list, and so does a
// number beyond the end or below 0.
VXBASE_EXPORT CString GetSubString(int n, const CString& list, int sep);
// The same on string resource `stringId`.
VXBASE_EXPORT CString GetSubString(int n, int stringId, int sep);
// Element `n`, counted from 1. 0 gives "", a number beyond the end the
// last element, a negative one the first. With an empty first element,
// every element from the second on reads as "".
VXBASE_EXPORT CString GetSubString1(int n, const CString& list, int sep);
// GetSubString, then "%d" / "%f"; 0 if nothing converts.
VXBASE_EXPORT int GetIndexedIntFromStringList(const CString& list, int n, int sep);
VXBASE_EXPORT float GetIndexedFloatFromStringList(const CString& list, int n, int sep);

// --- reading in sequence ---------------------------------------------------------
// Empties `out`; null if `p` is null or at the terminator. Otherwise copies
// up to `sep` or the end into `out` and returns the place after the
// separator (the terminator itself once the text has ended).
VXBASE_EXPORT char* GetNextSubstring(char* p, CString& out, int sep);
VXBASE_EXPORT const char* GetNextSubstring(const char* p, CString& out, int sep);
// 0 if `rest` is empty; otherwise moves the text before the first `sep`
// to `out`, drops that `sep` from `rest`, returns 1. Without a `sep`, `out`
// takes all of `rest`.
VXBASE_EXPORT int ExtractNextString(CString& out, CString& rest, char sep);
// Reads the leading run of "-0123456789" and drops it and one character
// (the "#") from `list`. 0 and no change if the run is empty.
VXBASE_EXPORT int GetIntFromStringList(CString& list, int& value);
// Left, top, right, bottom; 0 at the first failure, with the fields and
// the list as far as they were read.
VXBASE_EXPORT int GetRectFromStringList(CString& list, RECT& rect);

// --- searching and removing --------------------------------------------------------
// 0-based number of the first element equal to `text` (_mbscoll); -1.
VXBASE_EXPORT int GetSubStringIndex(const CString& text, const CString& list, int sep);
// The character position of `text` as a whole element, judged by its
// first plain occurrence only; -1. So "B" in "AB;B" gives -1.
VXBASE_EXPORT int IsSubStringIncluded(const CString& text, const CString& list, int sep);
// Removes the element at character `position` with the separator behind
// it; the last element goes with the separator before it.
VXBASE_EXPORT void RemoveSubStringFromList(int position, CString& list, int sep);

// --- other helpers --------------------------------------------------------------------
// Reads "3 Relay": the first word's number (at least 1) is the result and
// the rest goes to `part`; 0 if there is no rest.
VXBASE_EXPORT int GetAnzAndPartNumber(const CString& text, CString& part, int sep);
// The text after the last line feed, or all of it.
VXBASE_EXPORT CString GetTooltip(CString text);

// --- combo boxes as maps from item data to item ---------------------------------------
// Index of the first item with this data; -1 (also for a null combo).
VXBASE_EXPORT int FindComboItem(CComboBox* combo, int data);
// Selects the item with this data, else the last item; 0 if the combo is
// empty (or null), else 1.
VXBASE_EXPORT int SelectComboItem(CComboBox* combo, int data);
// Deletes the first item with this data; 1 if there was one.
VXBASE_EXPORT int RemoveFromCombo(CComboBox* combo, int data);
// Adds `text` with this data unless an item has the data already (which
// then keeps its text).
VXBASE_EXPORT void AddToCombo(CComboBox* combo, int data, const char* text);
