// Which input methods begin in Latin letters: the tables with what settings may say, and the real daemon with
// its Korean engine.
#include "platform/linux/latin_start/latin_start.h"

#include "platform/linux/ibus/ibus_rig.h"
#include "platform/linux/latin_start/fcitx_latin_start.h"
#include "platform/linux/latin_start/ibus_latin_start.h"
#include "platform/linux/latin_start/text_proto.h"
#include "platform/linux/sources/linux_input_sources.h"
#include "support/framework_watch.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <map>

namespace hopsel::test {
namespace {

constexpr auto none = SourceLimit::none, latin = SourceLimit::startsInLatin,
               byFile = SourceLimit::startsInLatinByFile;

TEST(LatinStart, OfAnEngineOfIbusIsWhatItsSettingsSay) {
    const auto limit = [](std::string_view engine, const std::map<std::string, std::string>& stored,
                          const std::string& file = {}) {
        return ibusLatinStart(engine, {[&](const char*, const char* key) {
                                           const auto found = stored.find(key);
                                           return found != stored.end() ? std::optional(found->second)
                                                                        : std::nullopt;
                                       },
                                       [&] { return file; }});
    };
    EXPECT_EQ(limit("hangul", {}), latin);
    EXPECT_EQ(limit("hangul", {{"initial-input-mode", "'latin'"}}), latin);
    EXPECT_EQ(limit("hangul", {{"initial-input-mode", "'hangul'"}}), none);
    EXPECT_EQ(limit("hangul", {{"initial-input-mode", "'latin'"}, {"disable-latin-mode", "true"}}), none);
    EXPECT_EQ(limit("anthy", {}), latin);
    EXPECT_EQ(limit("anthy", {{"input-mode", "3"}}), latin);
    EXPECT_EQ(limit("anthy", {{"input-mode", "0"}}), none);
    EXPECT_EQ(limit("libpinyin", {}), none);
    EXPECT_EQ(limit("libpinyin", {{"init-chinese", "false"}}), latin);
    for (const char* other : {"xkb:us::eng", "kkc", "chewing", "rime", ""}) EXPECT_EQ(limit(other, {}), none);

    const std::string block = "engines {\n  name : \"mozc-jp\"\n  rank : 80\n";
    EXPECT_EQ(limit("mozc-jp", {}), byFile);
    EXPECT_EQ(limit("mozc-jp", {}, block + "}\nactive_on_launch: False\n"), byFile);
    EXPECT_EQ(limit("mozc-jp", {}, block + "}\n# active_on_launch: True\n"), byFile);
    EXPECT_EQ(limit("mozc-jp", {}, block + "}\nactive_on_launch:True # always"), none);
    EXPECT_EQ(limit("mozc-jp", {}, "active_on_launch: False active_on_launch: True"), byFile) << "unreadable";
    EXPECT_EQ(limit("mozc-jp", {}, block + "  composition_mode: HIRAGANA }"), none);
    EXPECT_EQ(limit("mozc-on", {}, block + "  composition_mode: HIRAGANA }"), byFile) << "another engine's";
}

TEST(LatinStart, OfAMethodOfFcitxIsWhatItsFileSays) {
    const auto limit = [](std::string_view method, const std::string& file) {
        return fcitxLatinStart(method, [&](std::string_view) { return file; });
    };
    const std::vector<std::tuple<std::string, std::string, SourceLimit>> cases{
        {"mozc", "", none},
        {"mozc", "# Initial Mode\nInitialMode=Hiragana\n", none},
        {"mozc", "InitialMode = \"Half ASCII\"\r\nVertical=True", latin},
        {"mozc", "[Other]\nInitialMode=Direct\n", none},
        {"anthy", "[General]\nInputMode=Latin\n[Key]\n", latin},
        {"anthy", "InputMode=Latin\n[\n=\n[General", none},
        {"kkc", "InitialInputMode=Direct input", latin},
        {"skk", "InitialInputMode=", none},
        {"hangul", "InitialMode=Direct\n", none},
    };
    for (const auto& [method, file, expected] : cases) EXPECT_EQ(limit(method, file), expected) << file;
}

TEST(LatinStart, ReadsFieldsOutOfAnything) {
    using testing::ElementsAre;
    const auto field = [](const char* name, const char* value) { return TextProtoField{name, value}; };
    EXPECT_THAT(textProtoFields("a:1 b { c : 'x # y' d: Yes, } # e: 2\n f:\"open"),
                ElementsAre(field("a", "1"), field("c", "x # y"), field("d", "Yes"), field("f", "open")));
    for (const char* wrong : {"", ":", "::", "a:", "a::b", "{:}", "\"", "'a':", "#"})
        EXPECT_LE(textProtoFields(wrong).size(), 1U) << wrong;
}

class LatinStartTest : public testing::Test {
  protected:
    SourceLimit limit(const std::string& id) {
        for (const InputSourceInfo& source : sources.enabledKeyboardSources())
            if (source.id == id) return source.limit;
        return SourceLimit::none;
    }
    static std::vector<std::unique_ptr<InputFramework>> only(std::unique_ptr<InputFramework> framework) {
        std::vector<std::unique_ptr<InputFramework>> all;
        all.push_back(std::move(framework));
        return all;
    }

    IbusRig session;
    std::shared_ptr<LatinStart> limits = std::make_shared<LatinStart>(session.bus());
    LinuxInputSources sources{only(std::make_unique<IbusInputSources>(session.bus(), session.log)), nullptr,
                              limits};
};

TEST_F(LatinStartTest, IsListedWithTheSourcesAndFollowsTheSettings) {
    IbusRig::setEngines("['xkb:us::eng', 'hangul']");
    IbusRig::setHangulStart("latin");
    session.startDaemon();
    ASSERT_TRUE(retryUntil(sources, [&] { return sources.enabledKeyboardSources().size() == 2; }));
    EXPECT_EQ(limit("ibus:xkb:us::eng"), none);
    EXPECT_EQ(limit("ibus:hangul"), latin);
    // Asked when something is told only: whoever asks by itself sees it anyway.
    SourceLimit told = latin;
    sources.onSourcesChanged = [&] { told = limit("ibus:hangul"); };
    IbusRig::setHangulStart("hangul");
    EXPECT_TRUE(runLoopUntil([&] { return told == none; }));
    IbusRig::set("/org/freedesktop/ibus/engine/hangul/initial-input-mode", "'latin'");
    EXPECT_TRUE(runLoopUntil([&] { return told == latin; }));

    EXPECT_FALSE(sources.canSetStart("ibus:xkb:us::eng"));
    EXPECT_FALSE(sources.canSetStart("fcitx:hangul"));
    ASSERT_TRUE(sources.canSetStart("ibus:hangul"));
    sources.setStartsInOwnScript("ibus:hangul", false); // never changed here: stays as it is
    sources.setStartsInOwnScript("ibus:hangul", true);
    EXPECT_TRUE(runLoopUntil([&] { return told == none; }));
    sources.setStartsInOwnScript("ibus:hangul", false);
    EXPECT_TRUE(runLoopUntil([&] { return told == latin; })) << "as it was before";
}

TEST_F(LatinStartTest, LooksAtFilesAgain) {
    EXPECT_EQ(limits->limitOf("kde:mozc"), none);
    EXPECT_FALSE(limits->needsCheck());
    EXPECT_EQ(limits->limitOf("ibus:mozc-jp"), byFile);
    EXPECT_TRUE(limits->needsCheck()) << "nothing tells of files";
    EXPECT_EQ(limits->limitOf("fcitx:mozc"), none);
    int changes = 0;
    limits->onChanged = [&] { ++changes; };
    limits->check();
    EXPECT_EQ(changes, 0);
    const std::filesystem::path config = std::getenv("XDG_CONFIG_HOME");
    std::filesystem::create_directories(config / "mozc");
    std::ofstream(config / "mozc/ibus_config.textproto") << "active_on_launch: True";
    limits->check();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(limits->limitOf("ibus:mozc-jp"), none);
    std::filesystem::create_directories(config / "fcitx5/conf");
    std::ofstream(config / "fcitx5/conf/mozc.conf") << "InitialMode=Direct";
    EXPECT_EQ(limits->limitOf("fcitx:mozc"), latin);
}

} // namespace
} // namespace hopsel::test
