// Builds against the installed headers and library only.
#include <vxbase.h>

#include <cstdio>
#include <string>

int main()
{
    CString s("K12");
    s += ".3";
    if (s.Find('.') != 3 || GetDllVersionVxBase(0) != 8)
        return 1;
    // TinyXML comes with the package: KXmlOut hands out its elements.
    TiXmlElement element("N1");
    element.SetAttribute("Blatt", 12);
    if (std::string(element.Attribute("Blatt")) != "12")
        return 1;
    std::printf("consumer: %s\n", s.GetString());
    return 0;
}
