// xml: the library's two XML writers, KXmlOut (a TinyXML tree saved in
// ISO-8859-1) and xmlwriter (text streamed straight to a file, UTF-8).
//
//   vxhost xml DIR      writes DIR/Stueckliste.XML and DIR/stream.xml
#include "democommand.h"

#include <vxbase.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

std::string ReadAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// A parts list: the element names carry umlauts, which KXmlOut replaces.
bool WriteTree(const std::string& dir)
{
    KXmlOut out;
    out.SetPath((dir + "/").c_str(), "Stueckliste");
    if (!out.Open("Stueckliste", nullptr, 1))
        return false;
    out.GetLast()->SetAttribute("Projekt", "Demo");
    for (int page = 1; page <= 2; ++page) {
        out.Begin(page)->SetAttribute("Blatt", page * 10);
        TiXmlElement* part = out.Begin("Ger\xE4t");
        part->SetAttribute("BMK", page == 1 ? "-K1" : "-Q2");
        part->InsertEndChild(TiXmlText(page == 1 ? "Sch\xFCtz 3 < 4 kW" : "Leistungsschalter"));
        out.End();
        out.End();
    }
    return out.Save() == 1;
}

bool WriteStream(const std::string& dir)
{
    xmlwriter w(dir + "/stream.xml");
    if (!w.IsOpen())
        return false;
    w.AddComment(" written by vxhost ");
    w.AddAtributes("name", "Demo");
    w.AddAtributes("version", "5.5");
    w.Createtag("project");
    w.AddAtributes("nr", "10");
    w.CreateChild("sheet", "Stromlaufplan");
    w.AddAtributes("nr", "20");
    w.CreateChild("sheet", "Klemmenplan");
    w.CloseAlltags();
    return true;
}

int Write(const std::string& dir)
{
    if (!WriteTree(dir) || !WriteStream(dir)) {
        std::fprintf(stderr, "xml: cannot write into %s\n", dir.c_str());
        return 1;
    }
    std::printf("-- %s/Stueckliste.XML (KXmlOut, ISO-8859-1):\n", dir.c_str());
    // The tree's bytes are in the code page; the terminal wants UTF-8.
    vxhost::Print(ReadAll(dir + "/Stueckliste.XML"));
    std::printf("-- %s/stream.xml (xmlwriter; attributes come out last first):\n%s\n", dir.c_str(),
                ReadAll(dir + "/stream.xml").c_str());
    return 0;
}

int RunXml(vxhost::Args& args)
{
    if (!args.tour) {
        if (args.words.size() != 1 || vxhost::IsOption(args.words[0])) {
            std::fprintf(stderr, "xml: give the directory to write into\n");
            return vxhost::Usage("xml");
        }
        return Write(args.words[0]);
    }
    vxhost::Heading("XML output");
    std::string pattern = (std::filesystem::temp_directory_path() / "vxhost-xml-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        return 1;
    int rc = Write(pattern);
    std::filesystem::remove_all(pattern);
    return rc;
}

} // namespace

VXHOST_COMMAND("xml", "DIR  write a file with each of the two XML writers", 61, RunXml);
