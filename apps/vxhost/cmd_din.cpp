// Tour step: designators in DIN order next to plain order, page numbers in
// their text forms, and a sorted list stored and read back.
#include "democommand.h"

#include <vxbase.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

int RunDin(vxhost::Args& args)
{
    if (std::any_of(args.words.begin(), args.words.end(), vxhost::IsOption))
        return vxhost::Usage("din");
    std::vector<CString> designators;
    for (const std::string& word : args.words)
        designators.emplace_back(word.c_str());
    if (designators.empty()) {
        for (const char* d : {"K10", "-K12", "K2", "X3:14", "X3:9", "K10a", "M2.1", "007", "7", "k1", "M2.10", "-K3"})
            designators.emplace_back(d);
    }

    vxhost::Heading("DIN order");
    std::vector<CString> plain = designators;
    std::sort(plain.begin(), plain.end(), [](const CString& a, const CString& b) { return a.Compare(b) < 0; });
    KQuickArray<CString> din;
    for (const CString& d : designators)
        din.Add(d);
    din.m_pfnCompare = CompareDINText;
    din.QuickSort();
    std::printf("%-12s %s\n", "plain", "DIN (CompareDINText)");
    for (int i = 0; i < din.GetSize(); ++i) {
        CString row;
        row.Format("%-12s %s\n", plain[static_cast<std::size_t>(i)].GetString(), din.GetAt(i).GetString());
        vxhost::Print(row.StdString());
    }
    std::printf("BezugComp(\"-12K\", \"-3K\", '-', 0)  %d\n", BezugComp("-12K", "-3K", '-', 0));
    std::printf("BezugComp(\"12K1\", \"3Q1\", 0, 0)    %d   (the letters decide)\n", BezugComp("12K1", "3Q1", 0, 0));

    if (!args.words.empty())
        return 0;

    vxhost::Heading("Page numbers");
    std::printf("%-8s %-8s %-8s %-8s %s\n", "text", "mode 0", "mode 1", "mode 3", "words");
    for (const char* text : {"7a", "12AB", "0012", "1234zz", "12345", "12a3"}) {
        const VXPAGENUM page(text);
        std::printf("%-8s %-8s %-8s %-8s (%d, 0x%08X)\n", text, page.GetPageText(0).GetString(),
                    page.GetPageText(1).GetString(), page.GetPageText(3).GetString(), static_cast<int>(page.GetPage()),
                    static_cast<unsigned>(page.GetSubPage()));
    }
    VXKTPPAGENUM ktp(VXPAGENUM("12"), 3);
    std::printf("KTP 3, page 12      packed 0x%08X, text \"%s\"\n", static_cast<unsigned>(ktp.GetPageAndKtp()),
                ktp.GetFormatText().GetString());

    vxhost::Heading("Sorted list on disk");
    char dir[] = "/tmp/vxhost_din_XXXXXX";
    if (!mkdtemp(dir)) {
        std::perror("mkdtemp");
        return 1;
    }
    const std::string file = std::string(dir) + "/names.dat";
    QuickStringArray names;
    for (const char* name : {"Relay", "motor", "Fuse", "lamp"})
        names.Add(name);
    {
        CArchive ar(file.c_str(), CArchive::store);
        names.Serialize(ar);
        ar.Close();
    }
    QuickStringArray loaded;
    {
        CArchive ar(file.c_str(), CArchive::load);
        loaded.Serialize(ar);
    }
    std::string line;
    for (int i = 0; i < loaded.GetSize(); ++i)
        line += std::string(i ? ", " : "") + loaded.GetAt(i).GetString();
    std::printf("stored and read     %s\n", line.c_str());
    std::printf("Find(\"MOTOR\")       %d\n", loaded.Find("MOTOR"));
    unlink(file.c_str());
    rmdir(dir);
    return 0;
}

} // namespace

VXHOST_COMMAND("din", "[TEXT...]  sort designators the DIN way next to plain order; page number forms", 12, RunDin);
