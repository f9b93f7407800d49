// KXmlOut: an XML file built as a TinyXML tree in memory and saved whole at
// the end, declared as ISO-8859-1. Elements are made on a stack: Begin
// opens one, the caller fills it in through TinyXML, End closes it into its
// parent. TinyXML's classes are part of this interface on purpose: a host
// sets attributes and text on the elements it gets.
//
//   KXmlOut out;
//   out.SetPath("/srv/export/", "plan");
//   if (out.Open("Plan", nullptr, 1)) {           // "/srv/export/plan.XML"
//       out.Begin("Blatt")->SetAttribute("Nr", 12);
//       out.GetLast()->InsertEndChild(TiXmlText("Schaltplan"));
//       out.End();
//       out.Save();
//   }
//
// The bytes of names and texts are written as they are (the suite's code
// page); TinyXML escapes the markup characters of texts and attributes.
#pragma once

#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

#include <tinyxml.h>

class VXBASE_EXPORT KXmlOut {
public:
    KXmlOut() = default;
    // Frees an unsaved document and its open elements; nothing is written.
    ~KXmlOut();
    KXmlOut(const KXmlOut&) = delete;
    KXmlOut& operator=(const KXmlOut&) = delete;

    // The directory and name that Open joins when it is given no file.
    // The two are joined as they stand, so the directory ends in its
    // separator. Null counts as empty.
    void SetPath(const char* directory, const char* name);

    // Starts a document with the root element `rootName`, to be saved as
    // `file` (or directory + name of SetPath if `file` is null) with ".XML"
    // appended, also after an extension. Returns 0 and changes nothing if
    // that file exists and `overwrite` is 0; otherwise 1. An unsaved
    // document of an earlier Open is dropped.
    int Open(const char* rootName, const char* file, int overwrite);

    // Opens a new element under the last one and returns it for the caller
    // to fill in. In `name`, each of the bytes of "äöüÄÖÜß" (ISO-8859-1)
    // becomes "_"; other bytes are not checked.
    TiXmlElement* Begin(const char* name);
    // The element "N" followed by the decimal digits of `number`, as an
    // element name may not start with a digit.
    TiXmlElement* Begin(int number);

    // Closes the last element: a copy of it goes to the end of its parent.
    // The root is never closed this way. Returns 1.
    int End();

    // The element under construction (the root right after Open), or null
    // if there is none.
    TiXmlElement* GetLast();

    // Puts the root into the document, saves the file and ends the
    // document. Elements still open above the root are not written. The
    // result of TinyXML's SaveFile, or 0 if no document was open (elements
    // begun without one are dropped).
    int Save();

private:
    void Discard();

    TiXmlDocument* m_pDocument = nullptr;
    CArray<TiXmlElement*, TiXmlElement*> m_Elements;
    CString m_Directory;
    CString m_FileName;
    CString m_FullName;
};
