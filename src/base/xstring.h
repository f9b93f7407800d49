// XString: a CString with number conversions, case-insensitive editing and
// element access.
//
// One string is read as a list of elements divided by the process-wide
// separator XString::SEP ("|" by default). Nearly every operation returns a
// new string and leaves the object unchanged, so calls chain:
//
//   XString row("K1|Relay|3");
//   row.Element(1);               // "Relay"
//   row.SetElement(4, 7);         // "K1|Relay|3||7"
//   row.Elements(0, 3);           // "K1|Relay|3|": always the count asked for
//   XString("10|9").ElementSortInt();   // "9|10"
//
// Only the two operator--, ReplaceAll and NCReplaceAll change the object.
// Case folding touches ASCII letters only (see CString).
#pragma once

#include "platform/framework/cstring.h"
#include "vxbase_export.h"

class VXBASE_EXPORT XString : public CString {
public:
    // The current element separator, and the one before the last
    // SetSeparator. Process-wide and without a lock.
    static char SEP;
    static char OLDSEP;

    XString() = default;
    XString(const XString&) = default;
    XString(XString&&) noexcept = default;
    XString(const CString& text) : CString(text) {}
    XString(char c, int count) : CString(c, count) {}
    XString(const char* text, int length) : CString(text, length) {}
    XString(const char* text) : CString(text) {}
    XString(const unsigned char* text) : CString(text) {}
    // A wide (UTF-16) text, converted to the code page.
    XString(const unsigned short* text);
    XString(int value);
    XString(unsigned value);
    // "%g".
    XString(double value);
    ~XString() = default;

    XString& operator=(const XString& other) = default;
    XString& operator=(XString&&) noexcept = default;

    // --- conversions ----------------------------------------------------------
    int operator!() const { return IsEmpty() ? 1 : 0; }
    double Double() const;
    int Int() const;
    // The first character, 0 if empty.
    char Char() const;
    bool Bool() const;
    // Remove the last character (none if empty); the prefix form returns the
    // new value, the postfix form the old one.
    XString operator--();
    XString operator--(int);

    // --- editing: each returns a new string -------------------------------------
    XString Reverse() const;
    XString Lower() const;
    XString Upper() const;
    XString Trim() const;
    XString Left(int count) const;
    XString Right(int count) const;
    XString Mid(int first) const;
    XString Mid(int first, int count) const;
    // Both ends included: Mid(a, b - a + 1).
    XString FromTo(int a, int b) const;
    // Blanks added at the right up to `length`; a longer string is kept.
    XString Fill(int length) const;
    // Each tab at position p becomes (n - p mod n) blanks, positions counted
    // in the string as changed so far. A width below 1 leaves tabs alone.
    XString ReplaceTabs(int n) const;
    // `text` put in at `position`; a copy if `position` is below 0 or above
    // the length.
    XString Insert(const char* text, int position) const;
    // The characters from `from` up to, not including, `to` removed. A
    // negative `to` removes nothing; a negative `from` or `to` below `from`
    // gives a copy.
    XString Remove(int from, int to) const;
    // The first occurrence removed (NC: without regard to case).
    XString Remove(const char* text) const;
    XString Remove(char c) const;
    XString NCRemove(const char* text) const;
    XString NCRemove(char c) const;
    // All occurrences removed.
    XString RemoveAll(const char* text) const;
    XString RemoveAll(char c) const;
    XString NCRemoveAll(const char* text) const;
    XString NCRemoveAll(char c) const;
    // The first occurrence of `oldText` replaced by `newText`; a copy if
    // there is none or `oldText` is empty. The replacement comes first.
    XString Replace(const char* newText, const char* oldText) const;
    XString NCReplace(const char* newText, const char* oldText) const;
    // Remove(from, to), then Insert(newText, from).
    XString Replace(const char* newText, int from, int to) const;
    // Fills the template: each element of `args` in turn (up to the first
    // empty one) replaces the first "*" left; then every "\xA7" (the
    // section sign) becomes "*".
    XString ReplaceTextA(const XString& args) const;

    // --- searching ------------------------------------------------------------
    int NCFind(const char* text) const;
    int NCFind(char c) const;
    int Count(char c) const;
    // Occurrences of `text`, not overlapping; 0 for an empty text.
    int Count(const char* text) const;
    // Position of the n-th `c`, counted from 1; 0 for n of 0 or below; -1 if
    // there are fewer.
    int FindIndex(char c, int n) const;
    // 1 if the text matches `pattern`: "*" any run, "?" one character, "^"
    // makes the next pattern character optional; exact case, left to right,
    // no backtracking.
    int MatchString(CString pattern) const;
    // In place: every occurrence of `oldText` replaced, left to right, the
    // replacement not searched again. Returns the count; 0 and no change for
    // an empty `oldText`.
    int ReplaceAll(const char* newText, const char* oldText);
    int NCReplaceAll(const char* newText, const char* oldText);

    // --- elements ---------------------------------------------------------------
    // Stores SEP in OLDSEP, sets SEP to `c`, returns `c`.
    static char SetSeparator(char c);
    // Sets SEP back to OLDSEP and returns it.
    static char RestoreSeparator();
    // Elements `from` to `to` (a negative `to`: the last), always with the
    // requested number of elements: missing ones are empty.
    XString Elements(int from, int to) const;
    XString Elements(int from, int to, char sep) const;
    XString operator()(int from, int to) const { return Elements(from, to); }
    XString Element(int i) const { return Elements(i, i); }
    XString Element(int i, char sep) const { return Elements(i, i, sep); }
    XString operator()(int i) const { return Element(i); }

    using CString::GetString;
    XString GetString(int i) const { return Element(i); }
    double GetDouble(int i) const;
    int GetInt(int i) const;
    char GetChar(int i) const;
    bool GetBool(int i) const;
    XString GetString(int i, char sep) const;
    double GetDouble(int i, char sep) const;
    char GetChar(int i, char sep) const;
    int GetInt(int i, char sep) const;
    bool GetBool(int i, char sep) const;
    void Get(XString& out, int i) const;
    void Get(double& out, int i) const;
    void Get(char& out, int i) const;
    void Get(int& out, int i) const;
    void Get(bool& out, int i) const;

    // A copy with element `i` set to `value`; past the end the list grows
    // with empty elements. A negative `i` gives a copy. Numbers go in as
    // their constructors write them ("%g" for doubles, "1"/"0" for bool).
    XString SetElement(int i, const XString& value) const;
    XString SetElement(int i, const char* value) const { return SetElement(i, XString(value)); }
    XString SetElement(int i, double value) const;
    XString SetElement(int i, char value) const;
    XString SetElement(int i, int value) const;
    XString SetElement(int i, bool value) const;

    // The first element equal to `value`, counted from 0, or -1. Text
    // compares by _mbscmp, the other forms by the elements' read values.
    int ElementIndex(const XString& value) const;
    int ElementIndex(const char* value) const { return ElementIndex(XString(value)); }
    int ElementIndex(double value) const;
    int ElementIndex(int value) const;
    int ElementIndex(char value) const;
    int ElementIndex(bool value) const;

    // The elements sorted and joined with SEP again.
    XString ElementSort() const { return ElementSortString(); }
    XString ElementSortString() const;
    XString ElementSortDouble() const;
    // By the signed value of each element's first character; an empty
    // element (character 0) stays empty.
    XString ElementSortChar() const;
    XString ElementSortInt() const;

    // A printf format that fits the string read as a sample number:
    // "%<length>.<digits after the first '.'>lf", so 12.345 gives "%6.3lf".
    XString GetDoubleFormatString() const;
};
