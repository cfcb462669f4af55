#include "platform/linux/base/told_text.h"

#include <set>

namespace hopsel::told_text {

std::string plain(const QString& told) {
    constexpr qsizetype maxLength = 64;
    QString text = told.left(maxLength);
    for (QChar& character : text) {
        if (!character.isPrint() && !character.isSurrogate()) character = u' ';
    }
    return text.simplified().toUtf8().toStdString();
}

std::vector<std::string> distinct(std::vector<std::string> ids) {
    std::set<std::string> taken;
    for (std::string& id : ids) {
        if (id.empty()) continue;
        std::string candidate = id;
        for (int number = 2; !taken.insert(candidate).second; ++number)
            candidate = id + "#" + std::to_string(number);
        id = std::move(candidate);
    }
    return ids;
}

} // namespace hopsel::told_text
