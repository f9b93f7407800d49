#include "xml/kxmlout.h"

#include "platform/files/filefind.h"
#include "platform/files/hostpath.h"

#include <new>

namespace {

// ä ö ü Ä Ö Ü ß in ISO-8859-1, which Windows-1250 shares.
const char kUmlauts[] = "\xE4\xF6\xFC\xC4\xD6\xDC\xDF";

} // namespace

KXmlOut::~KXmlOut()
{
    Discard();
}

void KXmlOut::Discard()
{
    for (int i = 0; i < m_Elements.GetSize(); ++i)
        delete m_Elements[i];
    m_Elements.RemoveAll();
    delete m_pDocument;
    m_pDocument = nullptr;
}

void KXmlOut::SetPath(const char* directory, const char* name)
{
    m_Directory = directory;
    m_FileName = name;
}

int KXmlOut::Open(const char* rootName, const char* file, int overwrite)
{
    // A refused Open must not redirect a document that is still open.
    CString fullName = file ? CString(file) : m_Directory + m_FileName;
    fullName += ".XML";

    if (!overwrite) {
        CFileFind finder;
        if (finder.FindFile(fullName))
            return 0;
    }

    TiXmlDocument* document = new (std::nothrow) TiXmlDocument(fullName.GetString());
    if (!document)
        return 0;
    Discard();
    m_pDocument = document;
    m_FullName = fullName;
    m_pDocument->Parse("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>");
    m_Elements.Add(new TiXmlElement(rootName ? rootName : ""));
    return 1;
}

TiXmlElement* KXmlOut::Begin(const char* name)
{
    CString safe(name);
    for (int at = safe.FindOneOf(kUmlauts); at >= 0; at = safe.FindOneOf(kUmlauts))
        safe.SetAt(at, '_');
    auto* element = new TiXmlElement(safe.GetString());
    m_Elements.Add(element);
    return element;
}

TiXmlElement* KXmlOut::Begin(int number)
{
    CString name;
    name.Format("N%d", number);
    return Begin(name);
}

int KXmlOut::End()
{
    // The root stays: it goes into the document at Save.
    int count = m_Elements.GetSize();
    if (count < 2)
        return 1;
    TiXmlElement* last = m_Elements[count - 1];
    m_Elements.RemoveAt(count - 1);
    m_Elements[count - 2]->InsertEndChild(*last);
    delete last;
    return 1;
}

TiXmlElement* KXmlOut::GetLast()
{
    int count = m_Elements.GetSize();
    return count ? m_Elements[count - 1] : nullptr;
}

int KXmlOut::Save()
{
    int result = 0;
    if (m_pDocument && m_Elements.GetSize() > 0) {
        m_pDocument->InsertEndChild(*m_Elements[0]);
        result = m_pDocument->SaveFile(vx::DiskPath(m_FullName.View()).c_str()) ? 1 : 0;
    }
    Discard();
    return result;
}
