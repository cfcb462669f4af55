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

/// The first letter or digit from there on.
std::optional<QString> characterFrom(const QString& text, qsizetype position) {
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    characters.setPosition(position);
    if (!characters.isAtBoundary()) characters.toPreviousBoundary();
    for (qsizetype at = characters.position(); at >= 0 && at < text.size(); at = characters.position()) {
        const qsizetype next = characters.toNextBoundary();
        if (next < 0) break;
        if (text.at(at).isLetterOrNumber()) return text.mid(at, next - at).toUpper();
    }
    return std::nullopt;
}

} // namespace

std::pair<std::string, std::string> toldApart(const std::string& label, const std::string& firstName,
                                              const std::string& secondName) {
    const QString first = QString::fromStdString(firstName), second = QString::fromStdString(secondName);
    qsizetype same = 0;
    while (same < first.size() && same < second.size() && first.at(same) == second.at(same)) ++same;
    const QString usual = QString::fromStdString(label);
    return {characterFrom(first, same).value_or(usual).toStdString(),
            characterFrom(second, same).value_or(usual).toStdString()};
}

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
