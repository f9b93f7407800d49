// Builds against the installed UI headers and library only.
#include <vxbase_ui.h>

int main()
{
    return 0;
}
