#include "platform/linux/desktop/autostart_login_item.h"

#include "platform/linux/desktop/desktop_rig.h"
#include "session/child_process.h"

using hopsel::AutostartLoginItem;
using hopsel::contents;
using hopsel::LoginItemStatus;
using testing::HasSubstr;

namespace fs = std::filesystem;

namespace {

/// Blank lines move when an entry is written back; nobody minds.
std::string linesOf(const fs::path& file) {
    std::string text = contents(file);
    for (auto gap = text.find("\n\n"); gap != std::string::npos; gap = text.find("\n\n")) text.erase(gap, 1);
    return text;
}

class LoginItem : public hopsel::FolderTest {
  protected:
    /// A program that notes how it was started.
    fs::path install(const std::string& name) const {
        hopsel::put(folder / name, "#!/bin/sh\necho \"$@\" > '" + (folder / "started").string() + "'\n");
        fs::permissions(folder / name, fs::perms(0755));
        return folder / name;
    }

    fs::path entry = folder / "autostart" / "hopsel.desktop";
    fs::path program = install("bin/hopsel");
    AutostartLoginItem item{entry.parent_path(), program};
};

TEST_F(LoginItem, TheDesktopStartsTheProgramWhateverItsPathContains) {
    for (const std::string name : {"with space", "a\"b`c$HOME\\d", "it's", "t\tab", "한글", "a;b&c|d"}) {
        AutostartLoginItem odd(entry.parent_path(), install(name + "/hop sel"));
        fs::remove(entry);
        fs::remove(folder / "started");
        odd.setEnabled(true);
        EXPECT_EQ(odd.status(), LoginItemStatus::enabled) << name;
        hopsel::session::ChildProcess::Options launch;
        launch.program = "gio";
        launch.arguments = {"launch", entry.string()};
        launch.package = "libglib2.0-bin";
        ASSERT_NO_THROW(hopsel::session::runProgram(launch)) << contents(entry);
        EXPECT_TRUE(hopsel::test::runLoopUntil([&] {
            return contents(folder / "started") == "--background\n";
        })) << name;
        odd.setEnabled(false);
        EXPECT_TRUE(fs::is_empty(entry.parent_path())) << "nothing is left behind";
    }
}

TEST_F(LoginItem, OnlyTheSwitchIsTurnedInAnEntryThatTheUserEdited) {
    const std::string before =
        "# mine\n[Desktop Entry]\nType=Application\nName=Hopsel\nName[de]=Hüpfer\n# slowly\n"
        "Exec=sh -c \"sleep 5; hopsel\"\n";
    const std::string after = "[Desktop Action Other]\nName=Other\n# the end\n";
    hopsel::put(entry, before + after);
    item.setEnabled(true);
    EXPECT_EQ(contents(entry), before + after) << "it was on already";
    item.setEnabled(false);
    EXPECT_EQ(item.status(), LoginItemStatus::disabled);
    EXPECT_EQ(linesOf(entry), before + "Hidden=true\n" + after);
    item.setEnabled(true);
    EXPECT_EQ(linesOf(entry), before + "Hidden=false\n" + after);
}

TEST_F(LoginItem, WhatStartsNothingIsOffAndIsMendedBySwitchingItOn) {
    AutostartLoginItem(entry.parent_path(), install("100%f/hopsel")).setEnabled(true);
    EXPECT_THAT(contents(entry), HasSubstr("100%%f"));
    EXPECT_EQ(item.status(), LoginItemStatus::enabled) << "another copy of the program";
    fs::remove_all(folder / "100%f");
    EXPECT_EQ(item.status(), LoginItemStatus::disabled);
    item.setEnabled(true);
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);

    std::string copy = entry.string() + ".damaged";
    for (const std::string& text :
         {std::string("[Other]\nExec=sh\n"), std::string("[Desktop Entry]\nExec\0\xff=x\n", 25)}) {
        hopsel::put(entry, text);
        EXPECT_EQ(item.status(), LoginItemStatus::disabled);
        item.setEnabled(true);
        EXPECT_EQ(item.status(), LoginItemStatus::enabled);
        EXPECT_EQ(contents(copy), text);
        copy += "-2";
    }
}

TEST_F(LoginItem, IsUnavailableWhereNothingCanBeWrittenAndSaysWhyInOneLine) {
    hopsel::put(folder / "file", "");
    fs::create_directories(folder / "taken" / "hopsel.desktop");
    fs::create_directories(folder / "locked");
    fs::permissions(folder / "locked", fs::perms(0555));
    hopsel::asOrdinaryUser([&] {
        for (const char* name : {"file", "file/autostart", "taken", "locked", "locked/autostart"}) {
            AutostartLoginItem refused(folder / name, program);
            EXPECT_EQ(refused.status(), LoginItemStatus::unavailable) << name;
            EXPECT_THAT([&] { refused.setEnabled(true); },
                        testing::ThrowsMessage<std::runtime_error>(testing::AllOf(
                            HasSubstr((folder / name).string()), testing::Not(HasSubstr("\n")))));
            EXPECT_NO_THROW(refused.setEnabled(false));
        }
    });
}

} // namespace
