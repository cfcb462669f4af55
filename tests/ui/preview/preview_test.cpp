// The preview renderer as a user of the command line meets it. Its pictures are compared, at a sixth of their
// size, with those in references/: no channel of any pixel may be off by more than 24 of 255, which lets
// another version of a font through but not a moved, missing or recoloured part. After a wanted change, run
// this test with HOPSEL_WRITE_REFERENCES=1, and look at what changed.
#include "session/child_process.h"
#include "session/temporary_folder.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>

using namespace hopsel::session;
using namespace std::chrono_literals;
using testing::HasSubstr;

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
    options.errors = ChildProcess::Output::capture;
    return options;
}

QByteArray bytes(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

int largestDifference(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 255;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return largest;
}

TEST(Preview, DrawsWhatItDrewBeforeAndTheSameBytesEachTime) {
    const TemporaryFolder first;
    const TemporaryFolder second;
    const std::string said = runProgram(renderer(first.path()), 60s);
    runProgram(renderer(second.path()), 60s);
    EXPECT_THAT(said, HasSubstr("\n--- menu (ok) ---\n[x] Input Switching\n---\nCurrent input\n"));
    EXPECT_THAT(said, HasSubstr("\n--- menu (permission missing) ---\n"));

    const QDir pictures(QString::fromStdString(first.path().string()));
    const QStringList names = pictures.entryList({"*.png"}, QDir::Files, QDir::Name);
    EXPECT_EQ(names.size(), 32);
    const QDir references(HOPSEL_REFERENCES);
    const bool writes = std::getenv("HOPSEL_WRITE_REFERENCES") != nullptr;
    for (const QString& name : names) {
        const QString path = pictures.filePath(name);
        EXPECT_EQ(bytes(path), bytes(QString::fromStdString(second.path().string()) + '/' + name))
            << name.toStdString();
        const QImage picture(path);
        const QImage small =
            picture.scaled(picture.size() / 6, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .convertToFormat(QImage::Format_RGB32);
        if (writes) small.save(references.filePath(name), "PNG");
        EXPECT_LE(largestDifference(small, QImage(references.filePath(name))), tolerance)
            << name.toStdString();
    }
}

TEST(Preview, LeavesTheUsersFilesAloneAndSaysWhatItCannotWrite) {
    const TemporaryFolder home;
    const auto settings = home.write("config.json", "{}");
    auto options = renderer(home.path() / "pictures");
    options.environment["HOPSEL_CONFIG"] = settings.string();
    options.environment["TMPDIR"] = (home.path() / "nowhere").string();
    ChildProcess homeless(options);
    EXPECT_THAT(homeless.readAll(60s), HasSubstr("렌더링 실패"));
    EXPECT_EQ(homeless.waitForExit(10s), 1);
    std::ifstream input(settings);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(input), {}), "{}");
}

} // namespace
