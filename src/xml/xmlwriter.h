// xmlwriter: streams XML text straight to a file, declared as UTF-8. It
// checks and escapes nothing: tags, values, attributes and comments are
// written exactly as given, so the caller hands in well-formed text.
//
//   xmlwriter w("/tmp/out.xml");
//   w.AddAtributes("id", "7");
//   w.Createtag("part");              // <part id="7">
//   w.CreateChild("name", "K1");      //     <name>K1</name>
//   w.CloseAlltags();                 // </part>
//
// Every item starts on a new line, indented by one tab per open tag, and
// the file does not end with a line feed. Attributes collect until the next
// tag and come out in the reverse order of the calls.
//
// If the file cannot be opened, "Unable to open output file" goes to the
// standard output and the object writes nothing at all; IsOpen() tells.
#pragma once

#include "vxbase_export.h"

#include <cstdio>
#include <memory>
#include <stack>
#include <string>
#include <vector>

class VXBASE_EXPORT xmlwriter {
public:
    // Creates (or overwrites) the file `fileName`, a path text, and writes
    // the declaration.
    xmlwriter(std::string fileName);
    // A copy writes into the same open file, continuing from the state
    // (open tags, pending attributes, depth) of the original; the file is
    // closed when the last copy goes.
    xmlwriter(const xmlwriter& other);
    xmlwriter& operator=(const xmlwriter& other);
    // Closes the file. Open tags are not closed: call CloseAlltags first.
    ~xmlwriter();

    // Whether the file was opened; if not, every call writes nothing.
    bool IsOpen() const { return m_File != nullptr; }

    // Keeps an attribute for the next Createtag or CreateChild.
    void AddAtributes(std::string name, std::string value);
    // Opens `tag` with the pending attributes; what follows is nested in it.
    void Createtag(std::string tag);
    // Writes `<tag attributes>value</tag>` on one line.
    void CreateChild(std::string tag, std::string value);
    // Writes `<!--text-->`.
    void AddComment(std::string text);
    // Closes the innermost open tag; nothing if none is open.
    void CloseLasttag();
    void CloseAlltags();

private:
    void StartItem();
    void WriteOpening(const std::string& tag);

    std::string m_FileName;
    std::vector<std::string> m_Attributes; // value, name, value, name, ...
    std::shared_ptr<FILE> m_File;          // shared by the copies; null if not opened
    int m_Level = 0;
    std::stack<std::string> m_Tags;
};
