// A Fcitx5 that a test plays: it answers well until it is told otherwise.
#pragma once

#include "support/played_object.h"

namespace hopsel::test {

/// Method and layout.
using GroupMembers = QList<Row<QString, QString>>;
/// Method, name, native name, icon, label, language, and whether it can be configured.
using AvailableMethods = QList<Row<QString, QString, QString, QString, QString, QString, bool>>;

class PlayedFcitx : public PlayedObject {
  public:
    explicit PlayedFcitx(const std::string& busAddress)
        : PlayedObject(busAddress, "org.fcitx.Fcitx5", "/controller") {
        behave();
    }
    /// Answers what is right from here on.
    void behave() {
        const AvailableMethods available{{"hangul", "Hangul", "한글", "", "", "ko", false}};
        answers["CurrentInputMethodGroup"] = replyWith("Default");
        answers["InputMethodGroupInfo"] = replyWith("us", inVariant(members));
        answers["AvailableInputMethods"] = replyWith(inVariant(available));
        answers["CurrentInputMethod"] = [this](const auto& call) { return call.createReply(current); };
        answers["State"] = [this](const auto& call) { return call.createReply(current.isEmpty() ? 0 : 2); };
        answers["SetCurrentIM"] = [this](const auto& call) {
            if (!current.isEmpty()) current = call.arguments().constFirst().toString();
            return call.createReply();
        };
    }

    QString current = "keyboard-us"; ///< empty: there is no text field
    GroupMembers members{{"keyboard-us", ""}, {"hangul", ""}};
};

} // namespace hopsel::test
