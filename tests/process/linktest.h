// Test support of the link: one private settings directory, window bus and
// program directory for the whole test program (set before the library
// attaches), links named "AT" and "IT" to the peer program, a fixture whose
// frame is this process's program, peers started and ended, and pumping.
#pragma once

#include "partnerhost.h"
#include "support/testenv.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern char** environ;

namespace linktest {

struct Dirs {
    vxtest::TempDir root;
    std::string settings;
    std::string programs;
    std::string run;
};

// Made on first use, before anything reads the environment; removed when
// the test program ends.
inline const Dirs& Environment()
{
    static std::unique_ptr<Dirs> dirs = [] {
        auto d = std::make_unique<Dirs>();
        const std::string root = d->root.Path();
        d->settings = root + "/settings";
        d->programs = root + "/programs";
        d->run = root + "/run";
        for (const auto& dir : {d->settings, d->programs, d->run, root + "/config"})
            mkdir(dir.c_str(), 0700);
        symlink(VX_PARTNER_PEER, (d->programs + "/AT").c_str());
        symlink(VX_PARTNER_PEER, (d->programs + "/IT").c_str());
        setenv("VXBASE_WINDOWS_DIR", d->settings.c_str(), 1);
        setenv("XDG_CONFIG_HOME", (root + "/config").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (root + "/config").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", d->run.c_str(), 1);
        return d;
    }();
    return *dirs;
}

// Every test program of the link sets its environment at its start.
inline const bool kEnvironmentReady = (Environment(), true);

inline bool PumpUntil(const std::function<bool()>& done, int milliseconds = 5000)
{
    return vx::PumpFor(milliseconds, done);
}

// Whether "VxProcess.log" shows `text` within three seconds (the other
// program may still be writing it).
inline bool LogShows(const char* text)
{
    return PumpUntil(
        [text] { return vxtest::ReadBytes(Environment().settings + "/VxProcess.log").find(text) != std::string::npos; }, 3000);
}

// A peer started by the test itself (not by the link): the test is its
// parent and reaps it.
struct Peer {
    pid_t pid = 0;
    HWND window = nullptr;
};

// The published windows of a process, as the bus shows them.
inline HWND WindowOfProcess(pid_t pid)
{
    struct Find {
        pid_t pid;
        HWND found = nullptr;
    } find{pid};
    EnumWindows(
        [](HWND h, LPARAM l) -> BOOL {
            auto& f = *reinterpret_cast<Find*>(l);
            DWORD owner = 0;
            GetWindowThreadProcessId(h, &owner);
            if (static_cast<pid_t>(owner) != f.pid)
                return TRUE;
            f.found = h;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&find));
    return find.found;
}

class LinkTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        const Dirs& dirs = Environment();
        for (const char* name : {"VEXAL55.INI", "VxProcess.log", "VXWIN55AT.INI", "VXWIN55IT.INI", "PROJEKTAT.INI",
                                 "PROJEKTIT.INI"})
            unlink((dirs.settings + "/" + name).c_str());
        vx::AttachLibrary();
        vxhost::UseSuiteDirectoryForProgramFiles();
        m_oldBoxes = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            m_boxes.push_back(r.text);
            return vx::DefaultButtonOf(r.type);
        });
        m_oldBeep = vx::SetBeepHook([this](UINT) { ++m_beeps; });
    }

    void TearDown() override
    {
        if (m_frame)
            m_frame->Close();
        // Peers of this test: those it started and those the link started.
        for (const auto& record : vx::GetRemoteWindows() ? vx::GetRemoteWindows()->Enumerate()
                                                          : std::vector<vx::WindowRecord>{})
            kill(record.processId, SIGKILL);
        for (const Peer& p : m_peers) {
            kill(p.pid, SIGKILL);
            waitpid(p.pid, nullptr, 0);
        }
        m_frame.reset();
        vx::ResetPartnerLink();
        vx::StopWindowBus();
        vx::ResetMessageQueue();
        vx::SetMessageBoxHandler(m_oldBoxes);
        vx::SetBeepHook(m_oldBeep);
    }

    // This process as a program of the suite, with its frame published.
    vxhost::PartnerFrame& OpenFrame(MainframeType type, const char* commandLine = "")
    {
        m_frame = std::make_unique<vxhost::PartnerFrame>(type);
        m_frame->m_say = [this](const std::string& line) { m_said.push_back(line); };
        m_frame->m_quitOnClose = false;
        m_frame->Open(commandLine, (Environment().programs + "/").c_str());
        return *m_frame;
    }

    // Starts the peer program as `name` ("AT" or "IT") with `args` and the
    // extra environment `env`, and waits for its window.
    Peer StartPeer(const char* name, std::vector<std::string> args = {}, std::vector<std::string> env = {})
    {
        const std::string program = Environment().programs + "/" + name;
        std::vector<char*> argv{const_cast<char*>(program.c_str())};
        for (auto& a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        std::vector<std::string> entries;
        for (char** e = environ; *e; ++e)
            entries.emplace_back(*e);
        entries.insert(entries.end(), env.begin(), env.end());
        std::vector<char*> envp;
        for (auto& e : entries)
            envp.push_back(e.data());
        envp.push_back(nullptr);
        // Other processes' windows are seen through this process's bus.
        vx::StartWindowBus();
        Peer peer;
        if (posix_spawn(&peer.pid, program.c_str(), nullptr, nullptr, argv.data(), envp.data()) != 0)
            return peer;
        m_peers.push_back(peer);
        PumpUntil([&] { return (peer.window = WindowOfProcess(peer.pid)) != nullptr; });
        m_peers.back().window = peer.window;
        return peer;
    }

    std::string Suite(const char* section, const char* key)
    {
        char value[256] = {};
        GetPrivateProfileStringA(section, key, "", value, sizeof value, g_vexalprofiledir);
        return value;
    }

    void SetSuite(const char* section, const char* key, const char* value)
    {
        WritePrivateProfileStringA(section, key, value, g_vexalprofiledir);
    }

    std::string Log() { return vxtest::ReadBytes(Environment().settings + "/VxProcess.log"); }

    std::unique_ptr<vxhost::PartnerFrame> m_frame;
    std::vector<Peer> m_peers;
    std::vector<std::string> m_said;
    std::vector<std::string> m_boxes;
    int m_beeps = 0;

private:
    vx::MessageBoxHandler m_oldBoxes;
    vx::BeepHook m_oldBeep;
};

} // namespace linktest
