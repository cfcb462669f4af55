// The preview renderer as a user of the command line meets it. Its menus are compared with those in
// references/, and its pictures, at a sixth of their size, as well: no channel of any pixel may be off by
// more than 24 of 255, which lets another version of a font through but not a moved, missing or recoloured
// part. After a wanted change, run this test with HOPSEL_WRITE_REFERENCES=1, and look at what changed.
#include "core/rules/temporary_folder.h"
#include "session/child_process.h"
#include "session/temporary_folder.h"

#include <QDir>
#include <QImage>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <numeric>

using namespace hopsel::session;
using namespace std::chrono_literals;

namespace {

constexpr int tolerance = 24;

ChildProcess::Options renderer(const std::filesystem::path& folder) {
    ChildProcess::Options options;
    options.program = HOPSEL_EXECUTABLE;
    options.arguments = {"--render-ui", folder.string()};
    options.environment = {{"LC_ALL", "C.UTF-8"},
                           {"LANGUAGE", "en"},
                           {"DISPLAY", std::nullopt},
                           {"DBUS_SESSION_BUS_ADDRESS", std::nullopt}};
    options.output = ChildProcess::Output::capture;
    return options;
}

int largestDifference(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 255;
    return std::transform_reduce(
        a.constBits(), a.constBits() + a.sizeInBytes(), b.constBits(), 0,
        [](int one, int other) { return std::max(one, other); },
        [](int p, int q) { return std::abs(p - q); });
}

TEST(Preview, DrawsAndPrintsWhatItDidBeforeAndLeavesTheUsersFilesAlone) {
    const TemporaryFolder folder;
    const auto settings = folder.write("config.json", "{}");
    auto options = renderer(folder.path());
    options.environment["HOPSEL_CONFIG"] = settings.string();
    const std::string said = runProgram(options, 60s);
    EXPECT_EQ(hopsel::contents(settings), "{}");

    const QDir references(HOPSEL_REFERENCES);
    const bool writes = std::getenv("HOPSEL_WRITE_REFERENCES") != nullptr;
    const std::string menus = said.substr(said.find("\n--- menu"));
    if (writes) std::ofstream(references.filePath("menus.txt").toStdString()) << menus;
    EXPECT_EQ(menus, hopsel::contents(references.filePath("menus.txt").toStdString()));
    const QDir pictures(QString::fromStdString(folder.path().string()));
    const QStringList names = pictures.entryList({"*.png"}, QDir::Files, QDir::Name);
    EXPECT_EQ(names.size(), 32);
    for (const QString& name : names) {
        const QImage picture(pictures.filePath(name));
        const QImage small =
            picture.scaled(picture.size() / 6, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .convertToFormat(QImage::Format_RGB32);
        if (writes) small.save(references.filePath(name), "PNG");
        const QImage reference = QImage(references.filePath(name)).convertToFormat(QImage::Format_RGB32);
        EXPECT_LE(largestDifference(small, reference), tolerance) << name.toStdString();
    }
}

} // namespace
