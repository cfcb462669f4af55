#include "platform/linux/applications/proc_running_apps.h"

#include "platform/linux/desktop/desktop_rig.h"

using hopsel::ProcRunningApps;
using testing::ElementsAre;

namespace fs = std::filesystem;

namespace {

class RunningApps : public hopsel::FolderTest {
  protected:
    void run(int number, const std::string& executable, const std::string& name) const {
        const fs::path process = folder / "proc" / std::to_string(number);
        hopsel::put(process / "comm", name + "\n");
        if (!executable.empty()) fs::create_symlink(executable, process / "exe");
    }
    void install(const std::string& file, const std::string& exec, const std::string& more = {}) const {
        hopsel::put(folder / file, "[Desktop Entry]\nName=x\nExec=" + exec + "\n" + more);
    }
    std::vector<std::string> names() const {
        return ProcRunningApps(folder / "proc", {folder / "home", folder / "usr"}).runningBundleIDs();
    }
};

TEST_F(RunningApps, AreListedByExecutableNameAndDesktopFileInTheOrderOfTheProcesses) {
    run(100, "/usr/bin/Editor", "main thread");
    run(9, "", "remapper-daemon"); // someone else's: the executable cannot be read
    run(30, "/usr/bin/python3", "a-very-long-scr");
    run(31, "/usr/bin/python3", "a-very-long-scr");
    run(200, "/opt/we ird/player (deleted)", "player");
    fs::create_directories(folder / "proc/300"); // ended meanwhile
    install("usr/applications/org.example.Editor.desktop", "Editor %U");
    install("usr/applications/kde/player.desktop", "\"/opt/we ird/player\" --play %f");
    install("usr/applications/script.desktop", "/usr/bin/a-very-long-script-name");
    install("usr/applications/unrelated.desktop", "python3 /usr/bin/unrelated");
    install("usr/applications/mine.desktop", "player");
    install("home/applications/mine.desktop", "Editor");
    install("usr/applications/removed.desktop", "Editor");
    install("home/applications/removed.desktop", "Editor", "Hidden=true\n");
    EXPECT_THAT(names(), ElementsAre("remapper-daemon", "python3", "a-very-long-scr", "script", "Editor",
                                     "main thread", "mine", "org.example.Editor", "player", "kde-player"));
}

TEST_F(RunningApps, StrangeBytesAndSizesDoNotMatter) {
    run(1, "/bin/\xff\xfe", "\xc3\x28 \n\x01");
    run(2, "/bin/", std::string(100'000, 'c'));
    hopsel::put(folder / "usr/applications/1.desktop", "\xff\xfe");
    hopsel::put(folder / "usr/applications/2.desktop", std::string(2 << 20, '['));
    install("usr/applications/3.desktop", "\xff\xfe");
    install("usr/applications/4.desktop", "\"");
    fs::create_directory_symlink("..", folder / "usr/applications/5.desktop");
    ASSERT_EQ(::mkfifo((folder / "usr/applications/6.desktop").c_str(), 0600), 0);
    EXPECT_THAT(names(),
                ElementsAre("\xff\xfe", "\xc3\x28 \n\x01", std::string(ProcRunningApps::maxLength, 'c')));
}

} // namespace
