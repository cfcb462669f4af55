#include "support/macos/fakes/internals.h"
#include "support/macos/fakes/objects.h"
#include "support/macos/fakes/world.h"

#include <map>

using hopsel::macos_fakes::Held;
using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;
using hopsel::macos_fakes::text;

struct HopselCFURL final : Object {
    explicit HopselCFURL(CFStringRef address) : Object(Kind::url), string(address) {}
    const Held string;
};

struct HopselCFBundle final : Object {
    HopselCFBundle() : Object(Kind::bundle, true) {}
    std::map<std::string, Held> information;
};

namespace {

std::map<std::string, std::map<std::string, Held>> domains;
HopselCFBundle mainBundle;

CFTypeRef find(const std::map<std::string, Held>& values, CFStringRef key) {
    const auto found = values.find(text(key));
    return found == values.end() ? nullptr : found->second.get();
}

void set(std::map<std::string, Held>& values, CFStringRef key, CFTypeRef value) {
    values.erase(text(key));
    if (value != nullptr) values.emplace(text(key), Held(value));
}

} // namespace

const CFStringRef kCFPreferencesCurrentApplication = CFSTR("kCFPreferencesCurrentApplication");

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef domain) {
    const CFTypeRef value = find(domains[text(domain)], key);
    return value != nullptr ? CFRetain(value) : nullptr;
}

Boolean CFPreferencesGetAppBooleanValue(CFStringRef key, CFStringRef domain, Boolean* exists) {
    const CFTypeRef value = find(domains[text(domain)], key);
    const bool isBoolean = value != nullptr && CFGetTypeID(value) == CFBooleanGetTypeID();
    if (exists != nullptr) *exists = isBoolean ? 1 : 0;
    return isBoolean ? CFBooleanGetValue(static_cast<CFBooleanRef>(value)) : Boolean{0};
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef domain) {
    set(domains[text(domain)], key, value);
}

Boolean CFPreferencesAppSynchronize(CFStringRef) { return 1; }

CFTypeID CFURLGetTypeID() { return static_cast<CFTypeID>(Kind::url); }

CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef address, CFURLRef) {
    return text(address).find_first_of(" <>\"") == std::string::npos ? new HopselCFURL(address) : nullptr;
}

CFStringRef CFURLGetString(CFURLRef url) { return static_cast<CFStringRef>(url->string.get()); }

CFBundleRef CFBundleGetMainBundle() { return &mainBundle; }
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
    return find(bundle->information, key);
}
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
    return static_cast<CFStringRef>(find(bundle->information, CFSTR("CFBundleIdentifier")));
}

namespace hopsel::macos_fakes {

void setBundleValue(CFStringRef key, CFTypeRef value) { set(mainBundle.information, key, value); }

void resetPreferences() {
    domains.clear();
    mainBundle.information.clear();
}

} // namespace hopsel::macos_fakes
