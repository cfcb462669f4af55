#include "model/menu/source_label.h"

#include <QString>
#include <QTextBoundaryFinder>
#include <optional>

namespace hopsel::source_label {

namespace {

std::optional<std::string> labelOfLanguage(const std::string& language) {
    const QString code = QString::fromStdString(language.substr(0, language.find_first_of("-_"))).toLower();
    if (code == "ko") return "한";
    if (code == "ja") return "あ";
    if (code == "zh") return "中";
    if (code == "en") return "A";
    return std::nullopt;
}

} // namespace

std::string label(const std::vector<std::string>& languages, const std::string& name) {
    if (!languages.empty()) {
        if (auto known = labelOfLanguage(languages.front())) return *known;
    }
    const QString text = QString::fromStdString(name);
    if (text.isEmpty()) return "?";
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    return text.left(characters.toNextBoundary()).toUpper().toStdString();
}

} // namespace hopsel::source_label
