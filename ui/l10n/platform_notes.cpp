#include "ui/l10n/platform_notes.h"

#include "ui/l10n/l10n.h"

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
            "선택하면 먼저 영문이 입력됩니다. 한글부터 입력하려면 입력기 설정에서 처음 상태를 한글로 "
            "바꾸세요.",
            "Selecting it gives Latin letters first. To start in Hangul, set the initial input mode in the "
            "input method's own settings."};
    case PlatformNote::passwordsUnknown:
        return {
            "손쉬운 사용(접근성) 지원이 꺼져 있어 암호 입력 중인지 알 수 없습니다. 암호를 입력하는 동안에도 "
            "전환 키가 동작합니다.",
            "Accessibility support is off, so nobody tells where a password is typed: the switch keys work "
            "there too."};
    }
    return {"", ""};
}

} // namespace

std::string note(PlatformNote note) {
    const Texts both = texts(note);
    return language() == L10nLanguage::ko ? both.korean : both.english;
}

} // namespace hopsel::l10n
