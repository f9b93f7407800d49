#include "ui/desktop/playsound.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

TEST(PlaySound, DefaultPlayerRunsAnInstalledCommandLinePlayer)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::string bin = dir.path().toStdString();
    const std::string log = bin + "/played.txt";
    {
        std::ofstream script(bin + "/fakeplay");
        script << "#!/bin/sh\necho \"$1\" >> '" << log << "'\n";
    }
    ASSERT_EQ(chmod((bin + "/fakeplay").c_str(), 0755), 0);
    const std::string sound = bin + "/ding.wav";
    std::ofstream(sound) << "RIFF";
    const char* oldPath = std::getenv("PATH");
    const std::string saved = oldPath ? oldPath : "";
    setenv("PATH", (bin + ":" + saved).c_str(), 1);
    vx::CommandSoundPlayer player({"no-such-player", "fakeplay"});
    setenv("PATH", saved.c_str(), 1);
    EXPECT_EQ(player.Program(), bin + "/fakeplay");
    vx::SoundPlayer* old = vx::SetSoundPlayer(&player);
    EXPECT_TRUE(PlaySoundA(sound.c_str(), nullptr, SND_FILENAME | SND_SYNC));
    EXPECT_FALSE(PlaySoundA((bin + "/missing.wav").c_str(), nullptr, SND_FILENAME));
    EXPECT_FALSE(PlaySoundA("SystemStart", nullptr, SND_ALIAS)); // only files can play
    EXPECT_TRUE(PlaySoundA(nullptr, nullptr, 0));
    vx::SetSoundPlayer(old);
    std::ifstream in(log);
    std::stringstream content;
    content << in.rdbuf();
    EXPECT_EQ(content.str(), sound + "\n");
    // Without any player, sounds are silent.
    vx::CommandSoundPlayer none({"no-such-player"});
    EXPECT_TRUE(none.Program().empty());
    EXPECT_FALSE(none.Play(sound.c_str(), nullptr, SND_FILENAME));
}
