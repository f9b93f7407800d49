// Builds against the installed headers and library only.
#include <vxbase.h>

#include <cstdio>

int main()
{
    CString s("K12");
    s += ".3";
    if (s.Find('.') != 3 || GetDllVersionVxBase(0) != 8)
        return 1;
    std::printf("consumer: %s\n", s.GetString());
    return 0;
}
