// Test support: a private PostgreSQL cluster for the server tests. Under
// ctest, one cluster serves the whole run: the "pgcluster.start" fixture
// starts it in the directory VXBASE_TEST_PGDIR names, and "pgcluster.stop"
// ends it. A test binary run by hand starts its own on first use, in a
// temporary directory, and stops it when it ends. Either way the server
// listens only on a Unix socket in that directory (no TCP port), and as
// root it runs as the unprivileged "postgres" user, as the server refuses
// to run as root.
//
//   vxtest::PgServer* server = vxtest::PgServer::Get(&why);
//   if (!server) GTEST_SKIP() << why;
//   db.Create(server->Connect("parts").c_str());
#pragma once

#include <fcntl.h>
#include <glob.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace vxtest {

class PgServer {
public:
    // The running server, or null with `why` telling what is missing.
    static PgServer* Get(std::string* why = nullptr)
    {
        static std::unique_ptr<PgServer> server;
        static std::string failure;
        static bool tried = false;
        if (!tried) {
            tried = true;
            auto s = std::unique_ptr<PgServer>(new PgServer);
            const char* shared = std::getenv("VXBASE_TEST_PGDIR");
            failure = shared && *shared ? s->Adopt(shared) : s->Start(std::string());
            if (failure.empty())
                server = std::move(s);
        }
        if (!server && why)
            *why = failure;
        return server.get();
    }

    ~PgServer() { Stop(); }

    // A cluster of the caller's own, apart from the run's (for a test that
    // stops its server); null with `why` if it can't start.
    static std::unique_ptr<PgServer> StartOwn(std::string* why)
    {
        auto s = std::unique_ptr<PgServer>(new PgServer);
        const std::string failure = s->Start(std::string());
        if (failure.empty())
            return s;
        if (why)
            *why = failure;
        return nullptr;
    }
    // Stops the server at once, as a crash or a power cut would: its
    // processes end without a word to their clients.
    void Halt()
    {
        if (m_running)
            Run({m_bin + "/pg_ctl", "-D", m_dir + "/data", "-m", "immediate", "-w", "stop"}, true);
        m_running = false;
    }

    // A connect text for database `database` as the superuser, in the
    // given form: "odbc" (KEY=value pairs), "libpq" or "uri".
    std::string Connect(const std::string& database, const std::string& form = "odbc") const
    {
        if (form == "libpq")
            return "ODBC;host=" + m_dir + " port=" + kPort + " dbname=" + database + " user=postgres";
        if (form == "uri")
            return "ODBC;postgresql://postgres@/" + database + "?host=" + m_dir + "&port=" + kPort;
        return "ODBC;DATABASE=" + database + ";SERVER=" + m_dir + ";PORT=" + kPort + ";UID=postgres";
    }
    // A database name no other test of this binary uses.
    std::string FreshName(const std::string& stem)
    {
        static std::atomic<int> next{0};
        return stem + "_" + std::to_string(getpid()) + "_" + std::to_string(++next);
    }
    const std::string& SocketDir() const { return m_dir; }
    static constexpr const char* kPort = "5432";

    // Runs `sql` as the superuser through psql; true on success.
    bool Psql(const std::string& sql, const std::string& database = "postgres") const
    {
        return Run({m_bin + "/psql", "-q", "-X", "-h", m_dir, "-p", kPort, "-U", "postgres", "-d", database,
                    "-v", "ON_ERROR_STOP=1", "-c", sql},
                   false) == 0;
    }

private:
    PgServer() = default;

    static std::string FindBin()
    {
        if (const char* dir = std::getenv("VXBASE_PG_BINDIR"); dir && *dir)
            return dir;
        glob_t g{};
        std::string best;
        if (glob("/usr/lib/postgresql/*/bin/pg_ctl", 0, nullptr, &g) == 0) {
            std::vector<std::string> found(g.gl_pathv, g.gl_pathv + g.gl_pathc);
            std::sort(found.begin(), found.end(), [](const std::string& a, const std::string& b) {
                return std::atoi(a.c_str() + 20) < std::atoi(b.c_str() + 20);
            });
            best = found.back().substr(0, found.back().size() - 7);
        }
        globfree(&g);
        return best;
    }

    // Runs a program (as the server's user when `asServer`); its exit code.
    int Run(const std::vector<std::string>& args, bool asServer) const
    {
        const pid_t pid = fork();
        if (pid == 0) {
            if (asServer && m_uid != static_cast<uid_t>(-1)) {
                if (setgid(m_gid) != 0 || setuid(m_uid) != 0)
                    _exit(126);
            }
            const int null = open("/dev/null", O_WRONLY);
            if (null >= 0) {
                dup2(null, 1);
                dup2(null, 2);
            }
            std::vector<char*> argv;
            for (const auto& a : args)
                argv.push_back(const_cast<char*>(a.c_str()));
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
        int status = 0;
        if (pid < 0 || waitpid(pid, &status, 0) < 0)
            return -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // The cluster the fixture started in `dir` (its message if it couldn't).
    std::string Adopt(const std::string& dir)
    {
        m_bin = FindBin();
        m_dir = dir;
        if (access((dir + "/.s.PGSQL." + kPort).c_str(), F_OK) == 0)
            return std::string();
        std::ifstream why(dir + "/why");
        std::string text;
        std::getline(why, text);
        return text.empty() ? "the test cluster in " + dir + " is not running" : text;
    }

    // Starts a cluster in `dir` ("": a new temporary directory); "" or why not.
    std::string Start(const std::string& dir)
    {
        m_owned = dir.empty();
        m_bin = FindBin();
        if (m_bin.empty() || access((m_bin + "/initdb").c_str(), X_OK) != 0)
            return "the PostgreSQL server programs (initdb, pg_ctl) are not installed; run scripts/bootstrap";
        if (geteuid() == 0) {
            const passwd* pw = getpwnam("postgres");
            if (!pw)
                return "running as root and there is no 'postgres' user to run the server as";
            m_uid = pw->pw_uid;
            m_gid = pw->pw_gid;
        }
        if (dir.empty()) {
            std::string pattern = "/tmp/vxpg-XXXXXX";
            if (!mkdtemp(pattern.data()))
                return "no temporary directory for the cluster";
            m_dir = pattern;
        } else {
            m_dir = dir;
            if (mkdir(m_dir.c_str(), 0700) != 0 && errno != EEXIST)
                return "can't make the cluster's directory " + m_dir;
        }
        if (m_uid != static_cast<uid_t>(-1) && chown(m_dir.c_str(), m_uid, m_gid) != 0)
            return "can't give the cluster's directory to 'postgres'";
        const std::string data = m_dir + "/data";
        if (Run({m_bin + "/initdb", "-D", data, "-U", "postgres", "-A", "trust", "-E", "SQL_ASCII", "--locale=C",
                 "--no-sync", "--no-instructions"},
                true) != 0)
            return "initdb failed in " + m_dir;
        {
            // The superuser gets in without a password; everyone else needs one.
            std::ofstream hba(data + "/pg_hba.conf", std::ios::trunc);
            hba << "local all postgres trust\nlocal all all scram-sha-256\n";
        }
        if (Run({m_bin + "/pg_ctl", "-D", data, "-l", m_dir + "/server.log", "-w", "-t", "60", "-o",
                 "-k " + m_dir + " -p " + kPort +
                     " -c listen_addresses='' -c fsync=off -c full_page_writes=off -c shared_buffers=32MB "
                     "-c max_connections=50",
                 "start"},
                true) != 0)
            return "the server did not start (see " + m_dir + "/server.log)";
        m_running = true;
        return std::string();
    }

public:
    // Stops the cluster in `dir` (and removes the directory).
    static void StopIn(const std::string& dir)
    {
        PgServer s;
        s.m_bin = FindBin();
        s.m_dir = dir;
        s.m_running = access((dir + "/data/postmaster.pid").c_str(), F_OK) == 0;
        s.m_owned = true;
        if (geteuid() == 0)
            if (const passwd* pw = getpwnam("postgres")) {
                s.m_uid = pw->pw_uid;
                s.m_gid = pw->pw_gid;
            }
        s.Stop();
    }
    // Starts a cluster in `dir` for a whole test run; "" or why not.
    static std::string StartIn(const std::string& dir)
    {
        StopIn(dir); // what a run that broke off left behind
        PgServer s;
        const std::string why = s.Start(dir);
        s.m_running = false; // it outlives this program
        s.m_owned = false;
        return why;
    }

private:
    void Stop()
    {
        if (m_running)
            Run({m_bin + "/pg_ctl", "-D", m_dir + "/data", "-m", "immediate", "-w", "stop"}, true);
        m_running = false;
        if (m_owned && !m_dir.empty()) {
            std::error_code ec;
            std::filesystem::remove_all(m_dir, ec);
        }
    }

    std::string m_bin, m_dir;
    uid_t m_uid = static_cast<uid_t>(-1);
    gid_t m_gid = static_cast<gid_t>(-1);
    bool m_running = false;
    bool m_owned = false; // the directory goes with the server
};

} // namespace vxtest
