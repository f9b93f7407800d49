// pages: the pages of one drawing in a directory, in page order, with the
// date of the newest page file.
//
//   vxhost pages DIR NAME    NAME is the drawing's title or one of its files
//
// The directory is reached as the drive P:, the way the suite's project
// paths name it, so the path texts printed are those the programs store.
#include "democommand.h"

#include <vxbase.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string DosDateTimeText(WORD date, WORD time)
{
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", 1980 + (date >> 9), (date >> 5) & 0x0F,
                  date & 0x1F, time >> 11, (time >> 5) & 0x3F, (time & 0x1F) * 2);
    return text;
}

int ListPages(const std::string& dir, const std::string& name)
{
    vx::SetDriveRoot('P', dir);
    const CString path = CString("P:\\") + vx::PathTextFromHost(name).c_str();
    KVxFileList list(path);
    const short count = list.CollectPages(1);
    vxhost::Print("Drawing " + std::string(list.GetFileTitle()) + " in " + vx::PathTextFromHost(dir) + " (as P:\\): " +
                  std::to_string(count) + (count == 1 ? " page\n" : " pages\n"));
    for (unsigned i = 0; i < list.GetCount(); ++i) {
        const VXPAGENUM page = list.GetIndexedPage(i);
        vxhost::Print("  " + std::string(page.GetPageText(0)) + "\t" + std::string(list.GetIndexedFilePath(i)) +
                      "\n");
    }
    WORD date = 0, time = 0;
    if (list.GetLastDateAndTime(&date, &time))
        std::printf("  newest page written %s\n", DosDateTimeText(date, time).c_str());
    vx::SetDriveRoot('P', "");
    return 0;
}

void Touch(const std::filesystem::path& file, std::time_t when)
{
    std::ofstream(file) << "page";
    std::filesystem::last_write_time(
        file, std::filesystem::file_time_type::clock::now() -
                  std::chrono::duration_cast<std::filesystem::file_time_type::duration>(
                      std::chrono::seconds(std::time(nullptr) - when)));
}

int Tour()
{
    vxhost::Heading("Pages of a drawing");
    std::string pattern = (std::filesystem::temp_directory_path() / "vxhost-pages-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        return 1;
    const std::filesystem::path dir = pattern;
    const std::time_t day = 24 * 3600;
    const std::time_t base = 1718000000; // June 2024
    const char* pages[] = {"plan.0010", "plan.0002a", "plan.0001", "PLAN.0002", "plan.0003b"};
    for (int i = 0; i < 5; ++i)
        Touch(dir / pages[i], base + i * day);
    // Neighbours that are not pages of "plan": another drawing, a foreign
    // and an old-style extension, and a directory named like a page.
    for (const char* other : {"haus.0001", "plan.dxf", "plan.012"})
        Touch(dir / other, base + 30 * day);
    std::filesystem::create_directory(dir / "plan.0004");
    std::printf("Sample files: plan.0010 plan.0002a plan.0001 PLAN.0002 plan.0003b, and haus.0001 plan.dxf "
                "plan.012 plan.0004/\n");

    int rc = ListPages(dir.string(), "plan");

    vx::SetDriveRoot('P', dir.string());
    const VXPAGENUM next = KVxFile("P:\\plan.0002").FindNextPage();
    std::printf("Next sub-page after 2: %s\n", next.GetPageText(0).GetString());
    g_KVxFileList_optimize = 1;
    KVxFileList cached("P:\\plan.0001");
    cached.CollectPages(0);
    const unsigned long opens = vx::DirectoryOpenCount();
    cached.CollectPages(0);
    std::printf("With the cache on, a second scan found %u pages and opened %lu directories\n", cached.GetCount(),
                vx::DirectoryOpenCount() - opens);
    g_KVxFileList_optimize = 0;
    KVxFileList::ResetOptimization();
    vx::SetDriveRoot('P', "");

    std::filesystem::remove_all(dir);
    return rc;
}

int RunPages(vxhost::Args& args)
{
    if (args.tour)
        return Tour();
    if (args.words.size() != 2 || vxhost::IsOption(args.words[0]) || vxhost::IsOption(args.words[1])) {
        std::fprintf(stderr, "pages: give the directory and the drawing's name\n");
        return vxhost::Usage("pages");
    }
    if (!std::filesystem::is_directory(args.words[0])) {
        std::fprintf(stderr, "pages: %s is not a directory\n", args.words[0].c_str());
        return 1;
    }
    return ListPages(std::filesystem::absolute(args.words[0]).string(), args.words[1]);
}

} // namespace

VXHOST_COMMAND("pages", "DIR NAME  list the pages of a drawing, with the newest date", 20, RunPages);
