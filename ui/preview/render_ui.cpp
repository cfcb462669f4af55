#include "ui/preview/render_ui.h"

#include "core/base/overloaded.h"
#include "model/menu/menu_builder.h"
#include "ui/preview/preview_data.h"
#include "ui/preview/screens.h"
#include "ui/preview/view_renderer.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QTemporaryDir>
#include <filesystem>
#include <iostream>

namespace hopsel::render_ui {

namespace {

// Where distributions put the fonts of the pictures: Latin with the symbols of keys, and Korean.
constexpr const char* fontFolders[] = {"/usr/share/fonts/opentype/inter", "/usr/share/fonts/truetype/inter",
                                       "/usr/share/fonts/truetype/nanum", "/usr/share/fonts/opentype/noto",
                                       "/usr/share/fonts/truetype/dejavu"};
// Left alone, the font library takes any of these for the one of even widths.
constexpr const char* evenWidths =
    "<match target=\"pattern\"><test name=\"family\"><string>monospace</string></test>"
    "<edit name=\"family\" mode=\"prepend\" binding=\"strong\"><string>DejaVu Sans "
    "Mono</string></edit></match>";

constexpr const char* latinFamily = "Inter";
constexpr const char* koreanFamily = "NanumGothic";

/// Of those that the pictures are meant to be seen in; nothing on systems that keep fonts elsewhere.
void nameMissingFonts() {
    if (!qEnvironmentVariableIsSet("FONTCONFIG_FILE")) return;
    for (const char* family : {latinFamily, koreanFamily})
        if (!QFontDatabase::hasFamily(family))
            std::cerr << "글꼴이 없어 그림이 다르게 보입니다: " << family << '\n' << std::flush;
}

/// A link that lies there is replaced: what it names is somebody else's.
bool write(const std::filesystem::path& path, const QByteArray& data) {
    QFile file(QString::fromStdString(path.string()));
    file.remove();
    return !data.isEmpty() && file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
           file.write(data) == data.size() && file.flush();
}

bool render(const PreviewScreen& screen, bool dark, const std::filesystem::path& folder) {
    const std::filesystem::path path = folder / (screen.name + (dark ? "-dark.png" : "-light.png"));
    bool done = false;
    try {
        done = screen.show(
            [&](QWidget& view) { return write(path, view_renderer::png(view, screen.size, dark)); });
    } catch (const std::exception&) {
        done = false; // and on to the others
    }
    if (done)
        std::cout << "wrote " << path.string() << '\n' << std::flush;
    else
        std::cerr << "렌더링 실패: " << path.string() << '\n' << std::flush;
    return done;
}

void printMenuOf(const char* title, const PreviewModel::Setup& setup) {
    PreviewModel model(setup);
    std::cout << "\n--- menu (" << title << ") ---\n";
    printMenu(model.app().menuState(), std::cout);
}

void printMenus() {
    PreviewModel::Setup setup = preview_data::usual();
    printMenuOf("ok", setup);
    setup.rules.push_back(preview_data::shiftSpaceRule());
    setup.shortcutStatus = ShortcutStatus::unavailable;
    printMenuOf("accessibility missing", setup);
    setup.state = engine_state::Degraded{DegradedReason::permissionMissing};
    printMenuOf("permission missing", setup);
}

} // namespace

void prepareEnvironment() {
    // The platform without a screen regrets in many lines what it lacks; standard error is for failures.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg) std::cerr << text.toStdString() << '\n';
    });
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char* variable : {"QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR",
                                 "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI", "QT_ENABLE_HIGHDPI_SCALING"})
        qunsetenv(variable);
    QByteArray folders;
    for (const char* folder : fontFolders)
        if (std::filesystem::is_directory(folder)) folders += QByteArray("<dir>") + folder + "</dir>";
    if (folders.isEmpty()) return; // then with the fonts that there are
    // Read once, when the application is made; gone with the process.
    static const QTemporaryDir configuration;
    QFile file(configuration.filePath("fonts.conf"));
    if (!file.open(QIODevice::WriteOnly)) return;
    file.write("<?xml version=\"1.0\"?><fontconfig>" + folders + evenWidths + "<cachedir>" +
               configuration.path().toUtf8() + "</cachedir></fontconfig>\n");
    qputenv("FONTCONFIG_FILE", file.fileName().toUtf8());
}

int run(const std::string& outputDir) {
    QFont font;
    font.setFamilies({latinFamily, koreanFamily, "Noto Sans CJK KR", "DejaVu Sans"});
    font.setPixelSize(13);
    QApplication::setFont(font);
    nameMissingFonts();

    std::error_code error;
    std::filesystem::create_directories(outputDir, error);
    if (error || !std::filesystem::is_directory(outputDir)) {
        std::cerr << "출력 폴더를 만들 수 없습니다: "
                  << (error ? error : std::make_error_code(std::errc::not_a_directory)).message() << '\n'
                  << std::flush;
        return 1;
    }
    bool allDone = true;
    for (const PreviewScreen& screen : previewScreens()) {
        for (const bool dark : {false, true}) allDone = render(screen, dark, outputDir) && allDone;
    }
    try {
        printMenus();
    } catch (const std::exception& problem) {
        std::cerr << problem.what() << '\n';
        allDone = false;
    }
    std::cout.flush();
    return allDone ? 0 : 1;
}

void printMenu(const MenuState& state, std::ostream& output) {
    for (const MenuItemSpec& item : menu_builder::items(state)) {
        output << std::visit(Overloaded{
                                 [](const menu_item::Toggle& toggle) {
                                     return std::string(toggle.isOn ? "[x] " : "[ ] ") + toggle.title;
                                 },
                                 [](const menu_item::Action& action) { return "    " + action.title; },
                                 [](const menu_item::Header& header) { return header.text; },
                                 [](const menu_item::Info& info) { return "    " + info.text; },
                                 [](const menu_item::Status& status) { return "    " + status.text; },
                                 [](const menu_item::Separator&) { return std::string("---"); },
                             },
                             item)
               << '\n';
    }
}

} // namespace hopsel::render_ui
