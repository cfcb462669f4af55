#include "model/texts/platform_notes.h"

#include "model/texts/l10n.h"

namespace hopsel::l10n {

namespace {

struct Texts {
    const char* korean;
    const char* english;
};

Texts texts(PlatformNote note) {
    switch (note) {
    case PlatformNote::grabbedCombinations:
        return {"창 관리자가 쓰는 조합은 여기에 도착하지 않습니다.",
                "A combination that the window manager uses itself does not arrive here."};
    case PlatformNote::startsInLatin:
        return {
            "선택하면 먼저 영문이 입력됩니다. 바꾸려면 입력기 자체 설정에서 처음 입력 상태를 그 언어로 "
            "정하세요.",
            "Selecting it gives Latin letters first. To change that, set its initial input mode in the input "
            "method's own settings."};
    case PlatformNote::startsInLatinByFile:
        return {
            "선택하면 먼저 영문이 입력됩니다. 바꾸려면 ~/.config/mozc/ibus_config.textproto에서 "
            "“active_on_launch: False”를 “active_on_launch: True”로 고치고 “ibus restart”를 실행하세요.",
            "Selecting it gives Latin letters first. To change that, make “active_on_launch: False” in "
            "~/.config/mozc/ibus_config.textproto read “active_on_launch: True”, and run “ibus restart”."};
    case PlatformNote::typesLatinFirst: return {"먼저 영문이 입력됨", "Types Latin letters first"};
    case PlatformNote::passwordsUnknown:
        return {"암호 입력란을 알아볼 수 없습니다. 이 세션에는 접근성 서비스가 없어서 암호를 입력할 때도 "
                "전환 키가 "
                "동작합니다.",
                "Password fields are not recognized: this session has no accessibility service. Switch keys "
                "work while you type a password, too."};
    case PlatformNote::passwordsPartlyKnown:
        return {"일부 프로그램의 암호 입력란만 알아볼 수 있습니다. 데스크톱의 접근성 기능이 꺼져 있습니다. "
                "켠 뒤에 "
                "시작한 프로그램 중에는 알려 주는 것이 더 많습니다.",
                "Password fields are recognized in few programs only: accessibility is off on this desktop. "
                "More programs report theirs if they are started after it is turned on."};
    }
    return {"", ""};
}

} // namespace

std::string note(PlatformNote note) {
    const Texts both = texts(note);
    return language() == L10nLanguage::ko ? both.korean : both.english;
}

std::string startOfferText(const std::string& sourceName, bool isDone) {
    return t(isDone ? Key::startAsBefore : Key::startInOwnScript, {sourceName});
}

std::optional<std::string> limitNote(SourceLimit limit) {
    switch (limit) {
    case SourceLimit::none: break;
    case SourceLimit::startsInLatin: return note(PlatformNote::startsInLatin);
    case SourceLimit::startsInLatinByFile: return note(PlatformNote::startsInLatinByFile);
    }
    return std::nullopt;
}

} // namespace hopsel::l10n
