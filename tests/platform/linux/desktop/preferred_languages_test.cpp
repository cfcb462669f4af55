#include "platform/linux/desktop/preferred_languages.h"

#include <gmock/gmock.h>
#include <map>

namespace hopsel {
namespace {

TEST(PreferredLanguages, FollowGettextsOrder) {
    const struct {
        std::map<std::string, const char*> environment;
        std::vector<std::string> expected;
    } cases[] = {
        {{{"LANGUAGE", "ko:en"}}, {}},
        {{{"LANG", "C.UTF-8"}, {"LANGUAGE", "ko"}}, {}},
        {{{"LC_ALL", "POSIX"}, {"LANG", "ko_KR.UTF-8"}, {"LANGUAGE", "ko"}}, {}},
        {{{"LANG", "ko_KR.UTF-8"}, {"LC_MESSAGES", "de_DE@euro"}, {"LC_ALL", ""}}, {"de_DE"}},
        {{{"LANG", "en_US.UTF-8"}, {"LANGUAGE", ":ko_KR.UTF-8::.:en_GB:"}}, {"ko_KR", "en_GB", "en_US"}},
    };
    for (const auto& tested : cases) {
        const auto environment = [&tested](const char* name) {
            const auto found = tested.environment.find(name);
            return found == tested.environment.end() ? nullptr : found->second;
        };
        EXPECT_EQ(preferredLanguages(environment), tested.expected);
    }
}

} // namespace
} // namespace hopsel
