// Tour step: element lists, delimited lists and the host queries.
#include "democommand.h"

#include <vxbase.h>

namespace {

int RunStrings(vxhost::Args& args)
{
    if (args.words.size() > 1 || (args.words.size() == 1 && vxhost::IsOption(args.words[0])))
        return vxhost::Usage("strings");
    vxhost::Heading("Strings and lists");
    XString row(args.words.empty() ? "K1|Relay|3|24V" : args.words[0].c_str());
    std::printf("row                 %s\n", row.GetString());
    std::printf("Element(1)          %s\n", row.Element(1).GetString());
    std::printf("Elements(2, 5)      %s   (always the count asked for)\n", row.Elements(2, 5).GetString());
    std::printf("SetElement(6, 2.5)  %s\n", row.SetElement(6, 2.5).GetString());
    std::printf("ElementSortInt      %s\n", XString("10|9|100|-1").ElementSortInt().GetString());
    std::printf("ElementSortString   %s\n", XString("10|9|100|-1").ElementSortString().GetString());
    std::printf("MatchString(K*^y)   %d\n", XString("K1").MatchString("K*^y"));

    CString list("a;b");
    std::printf("GetSubString(2)     %s\n", GetSubString(2, list, ';').GetString());
    std::printf("GetSubString(3)     %s   (beyond the end: the whole list)\n", GetSubString(3, list, ';').GetString());
    std::printf("GetSubString1(3)    %s   (beyond the end: the last element)\n", GetSubString1(3, list, ';').GetString());
    CString ints;
    AddRectToStringList(ints, RECT{10, 20, 300, 200});
    std::printf("rectangle as list   %s\n", ints.GetString());
    CString part;
    const int quantity = GetAnzAndPartNumber("3 Relay 24V", part, ';');
    std::printf("quantity and part   %d x %s\n", quantity, part.GetString());

    vxhost::Heading("Host queries");
    std::printf("GetActProject       %s\n", GetActProject().GetString());
    std::printf("GetDlgSkinID(477)   %ld\n", static_cast<long>(GetDlgSkinID(477)));
    CommonMessage("a message through the host", MB_OK, 0, nullptr, 0, 0);
    CString text = GetString(6709);
    text.Replace("\n", " ");
    vxhost::Print((CString("string 6709         ") + text + "\n").StdString());
    return 0;
}

} // namespace

VXHOST_COMMAND("strings", "[ROW]  element lists, delimited lists and host queries", 10, RunStrings);
