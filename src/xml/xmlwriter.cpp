#include "xml/xmlwriter.h"

#include "platform/files/hostpath.h"

#include <utility>

xmlwriter::xmlwriter(std::string fileName) : m_FileName(std::move(fileName))
{
    if (FILE* file = std::fopen(vx::DiskPath(m_FileName).c_str(), "w")) {
        m_File.reset(file, [](FILE* f) { std::fclose(f); });
        std::fprintf(file, "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>");
    } else {
        std::puts("Unable to open output file");
    }
}

xmlwriter::xmlwriter(const xmlwriter& other) = default;
xmlwriter& xmlwriter::operator=(const xmlwriter& other) = default;
xmlwriter::~xmlwriter() = default;

void xmlwriter::StartItem()
{
    std::fputc('\n', m_File.get());
    for (int i = 0; i < m_Level; ++i)
        std::fputc('\t', m_File.get());
}

void xmlwriter::WriteOpening(const std::string& tag)
{
    StartItem();
    std::fprintf(m_File.get(), "<%s", tag.c_str());
    while (m_Attributes.size() >= 2) {
        std::fprintf(m_File.get(), " %s=", m_Attributes.back().c_str());
        m_Attributes.pop_back();
        std::fprintf(m_File.get(), "\"%s\"", m_Attributes.back().c_str());
        m_Attributes.pop_back();
    }
    m_Attributes.clear();
}

void xmlwriter::AddAtributes(std::string name, std::string value)
{
    m_Attributes.push_back(std::move(value));
    m_Attributes.push_back(std::move(name));
}

void xmlwriter::Createtag(std::string tag)
{
    if (!m_File)
        return;
    WriteOpening(tag);
    std::fputc('>', m_File.get());
    m_Tags.push(std::move(tag));
    ++m_Level;
}

void xmlwriter::CreateChild(std::string tag, std::string value)
{
    if (!m_File)
        return;
    WriteOpening(tag);
    std::fprintf(m_File.get(), ">%s</%s>", value.c_str(), tag.c_str());
}

void xmlwriter::AddComment(std::string text)
{
    if (!m_File)
        return;
    StartItem();
    std::fprintf(m_File.get(), "<!--%s-->", text.c_str());
}

void xmlwriter::CloseLasttag()
{
    if (!m_File || m_Tags.empty())
        return;
    --m_Level;
    StartItem();
    std::fprintf(m_File.get(), "</%s>", m_Tags.top().c_str());
    m_Tags.pop();
}

void xmlwriter::CloseAlltags()
{
    while (m_File.get() && !m_Tags.empty())
        CloseLasttag();
}
