#include "core/rules/rule_store.h"

#include "core/rules/config_json.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace hopsel {
namespace {

std::string describe(const store_error::Corrupt& error) {
    const std::string text = "the settings file cannot be read";
    return error.backupPath ? text + "; a copy is at " + *error.backupPath
                            : text + " and could not be copied";
}
std::string describe(const store_error::UnsupportedSchemaVersion& error) {
    return "the settings file has version " + std::to_string(error.version) +
           ", which is newer than this program";
}
std::string describe(const store_error::Invalid& error) {
    return "the rule is not valid; problems found: " + std::to_string(error.issues.size());
}
std::string describe(const store_error::DuplicateId& error) {
    return "there is a rule with the identifier " + error.id + " already";
}
std::string describe(const store_error::NotFound& error) { return "there is no rule " + error.id; }
std::string describe(const store_error::WriteFailed& error) {
    return "the settings file cannot be written: " + error.description;
}
std::string describe(const store_error::NotLoaded&) {
    return "the settings file has not been loaded, so nothing may be changed";
}

std::string describeReason(const StoreError::Reason& reason) {
    return std::visit([](const auto& error) { return describe(error); }, reason);
}

// Before anything else: what a newer version wrote may well look corrupt to this one.
void requireKnownVersion(const std::string& text) {
    const auto version = config_json::probeSchemaVersion(text);
    if (version && *version > Config::currentSchemaVersion)
        throw StoreError(store_error::UnsupportedSchemaVersion{*version});
}

/// No higher version than is needed, so that older programs can read everything else.
void chooseVersion(Config& config) {
    config.schemaVersion = Config::baseSchemaVersion;
    for (const Rule& rule : config.rules)
        config.schemaVersion = std::max(config.schemaVersion, schemaVersion(rule.trigger));
}

constexpr int mostAttempts = 3;

} // namespace

StoreError::StoreError(Reason reason)
    : std::runtime_error(describeReason(reason)), reason_(std::move(reason)) {}

RuleStore::RuleStore(std::filesystem::path fileURL, std::shared_ptr<FileStorage> storage, WallClock wallClock)
    : fileURL_(std::move(fileURL)), storage_(std::move(storage)), wallClock_(std::move(wallClock)) {}

std::filesystem::path RuleStore::defaultFileURL(const FileStorage& storage) {
    return storage.userDataDirectory() / "Hopsel" / "config.json";
}

void RuleStore::load() {
    if (!storage_->exists(fileURL_)) {
        config_ = Config::empty();
        known_.reset();
        isLoaded_ = true;
        return;
    }
    std::string text = storage_->read(fileURL_);
    requireKnownVersion(text);
    try {
        config_ = config_json::decode(text);
    } catch (const config_json::DecodingError&) {
        throw StoreError(store_error::Corrupt{backUpCorruptFile(text)});
    }
    known_ = std::move(text);
    isLoaded_ = true;
}

RuleStore::Seen RuleStore::look() const {
    Seen seen{storage_->mark(fileURL_), std::nullopt};
    if (!seen.mark) return seen;
    std::string text = storage_->read(fileURL_);
    if (text != known_) seen.text = std::move(text);
    return seen;
}

RuleStore::Outside RuleStore::take(const Seen& seen) {
    if (!seen.text) return Outside::unchanged;
    requireKnownVersion(*seen.text);
    try {
        config_ = config_json::decode(*seen.text);
    } catch (const config_json::DecodingError&) {
        return Outside::damaged;
    }
    known_ = seen.text;
    return Outside::taken;
}

RuleStore::Outside RuleStore::takeOutsideChange() { return take(look()); }

Rule RuleStore::add(const Rule& rule) {
    save([&](Config& changed) {
        if (indexOf(rule.id)) throw StoreError(store_error::DuplicateId{rule.id});
        validate(rule);
        changed.rules.push_back(rule);
    });
    return rule;
}

void RuleStore::update(const Rule& rule) {
    save([&](Config& changed) {
        const std::size_t index = requireIndex(rule.id);
        validate(rule);
        changed.rules[index] = rule;
    });
}

void RuleStore::remove(const std::string& id) {
    save([&](Config& changed) {
        requireIndex(id);
        std::erase_if(changed.rules, [&](const Rule& rule) { return rule.id == id; });
    });
}

void RuleStore::setEnabled(const std::string& id, bool enabled) {
    save([&](Config& changed) { changed.rules[requireIndex(id)].enabled = enabled; });
}

// Again if another program writes meanwhile: the change is made to what that one wrote.
void RuleStore::save(const Edit& edit) {
    requireLoaded();
    const auto fail = [](const char* description, std::error_code reason = {}) {
        throw StoreError(store_error::WriteFailed{description, reason});
    };
    try {
        for (int attempt = 0; attempt < mostAttempts; ++attempt) {
            Seen seen = look();
            if (take(seen) == Outside::taken) seen.text.reset();
            Config changed = config_;
            edit(changed);
            if (!write(changed, seen)) continue;
            config_ = std::move(changed);
            return;
        }
        fail("another program writes the file again and again");
    } catch (const std::system_error& error) {
        fail(error.what(), error.code());
    } catch (const std::invalid_argument& error) {
        fail(error.what());
    }
}

// False if the file has become another meanwhile.
bool RuleStore::write(Config& config, const Seen& over) {
    chooseVersion(config);
    std::string text = config_json::encode(config);
    if (fileURL_.has_parent_path()) storage_->createDirectories(fileURL_.parent_path());
    if (over.text) keepAside(over);
    if (!storage_->replace(fileURL_, over.mark, text)) return false;
    known_ = std::move(text);
    return true;
}

void RuleStore::keepAside(const Seen& seen) {
    auto copy = backUpCorruptFile(*seen.text);
    if (!copy) {
        throw StoreError(
            store_error::WriteFailed{"another program changed the file, and no copy of that can be made"});
    }
    keptAside_ = std::move(copy);
}

// One copy for each content, however often it is met.
std::optional<std::string> RuleStore::backUpCorruptFile(const std::string& text) {
    std::filesystem::path beginning = fileURL_;
    beginning += ".corrupt-";
    std::filesystem::path backup = beginning;
    backup += std::to_string(wallClock_());
    try {
        for (const std::filesystem::path& earlier : storage_->startingWith(beginning)) {
            const auto mark = storage_->mark(earlier);
            if (mark && std::cmp_equal(mark->size, text.size()) && storage_->read(earlier) == text)
                return earlier.string();
        }
        storage_->copy(fileURL_, backup);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
    return backup.string();
}

void RuleStore::requireLoaded() const {
    if (!isLoaded_) throw StoreError(store_error::NotLoaded{});
}

std::optional<std::size_t> RuleStore::indexOf(const std::string& id) const {
    for (std::size_t i = 0; i < config_.rules.size(); ++i) {
        if (config_.rules[i].id == id) return i;
    }
    return std::nullopt;
}

std::size_t RuleStore::requireIndex(const std::string& id) const {
    const auto index = indexOf(id);
    if (!index) throw StoreError(store_error::NotFound{id});
    return *index;
}

void RuleStore::validate(const Rule& rule) const {
    auto issues = rule_validator::issues(rule, config_.rules);
    if (!issues.empty()) throw StoreError(store_error::Invalid{std::move(issues)});
}

} // namespace hopsel
