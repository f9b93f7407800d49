// PlaySoundA and the sound interface behind it.
//
// Sounds go to a vx::SoundPlayer. The default one plays a sound file
// (SND_FILENAME) with the first command-line player it finds on PATH
// (pw-play, paplay, aplay): in the background with SND_ASYNC, waiting for
// the end otherwise. With no player, for sounds from resources or aliases,
// and for a missing file it stays silent and answers FALSE. Tests and hosts
// install their own player.
//
//   PlaySoundA("C:\\Sounds\\click.wav", nullptr, SND_FILENAME | SND_ASYNC | SND_NODEFAULT);
//   PlaySoundA(nullptr, nullptr, 0);   // stops a sound started here
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

#include <string>
#include <vector>

constexpr DWORD SND_SYNC = 0x00000000;
constexpr DWORD SND_ASYNC = 0x00000001;
constexpr DWORD SND_NODEFAULT = 0x00000002;
constexpr DWORD SND_MEMORY = 0x00000004;
constexpr DWORD SND_LOOP = 0x00000008;
constexpr DWORD SND_NOSTOP = 0x00000010;
constexpr DWORD SND_PURGE = 0x00000040;
constexpr DWORD SND_NOWAIT = 0x00002000;
constexpr DWORD SND_ALIAS = 0x00010000;
constexpr DWORD SND_FILENAME = 0x00020000;
constexpr DWORD SND_RESOURCE = 0x00040004;

// Plays a sound; a null sound stops the one playing. FALSE when nothing plays.
VXBASE_UI_EXPORT BOOL PlaySoundA(LPCSTR sound, HMODULE module, DWORD flags);

namespace vx {

class VXBASE_UI_EXPORT SoundPlayer {
public:
    virtual ~SoundPlayer();
    // `sound` is a path text with SND_FILENAME, else a resource or alias
    // name (or a number as MAKEINTRESOURCE gives it); null stops.
    virtual bool Play(const char* sound, HMODULE module, DWORD flags) = 0;
};

// The default player: a command-line player started as a child process.
class VXBASE_UI_EXPORT CommandSoundPlayer : public SoundPlayer {
public:
    // `candidates` are the programs tried on PATH, in order.
    explicit CommandSoundPlayer(std::vector<std::string> candidates = {"pw-play", "paplay", "aplay"});
    ~CommandSoundPlayer() override;
    bool Play(const char* sound, HMODULE module, DWORD flags) override;
    // The program found, or "" when none is installed.
    const std::string& Program() const { return m_program; }

private:
    void Stop();
    void Reap();
    std::string m_program;
    int m_child = -1;
};

// Installs a player (null: the default); returns the one it replaces. Not owned.
VXBASE_UI_EXPORT SoundPlayer* SetSoundPlayer(SoundPlayer* player);

} // namespace vx
