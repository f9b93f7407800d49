// The test run's PostgreSQL cluster, as ctest's fixture starts and stops it
// (tests/support/pgserver.h).
//
//   pgcluster start DIR    a fresh cluster in DIR; without the server
//                          programs it leaves DIR/why for the tests to skip
//   pgcluster stop DIR     stops it and removes DIR
#include "support/pgserver.h"

#include <cstdio>
#include <cstring>
#include <fstream>

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const std::string dir = argv[2];
    if (std::strcmp(argv[1], "stop") == 0) {
        vxtest::PgServer::StopIn(dir);
        return 0;
    }
    const std::string why = vxtest::PgServer::StartIn(dir);
    if (!why.empty()) {
        // The server tests skip with this reason rather than fail.
        std::ofstream(dir + "/why") << why << "\n";
        std::printf("no PostgreSQL cluster for the server tests: %s\n", why.c_str());
    }
    return 0;
}
