#include "core/rules/rule_store.h"

#include "core/rules/config_json.h"

#include <algorithm>
#include <system_error>

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
        isLoaded_ = true;
        return;
    }
    const std::string text = storage_->read(fileURL_);
    // Before anything else: what a newer version wrote may well look corrupt to this one.
    const auto version = config_json::probeSchemaVersion(text);
    if (version && *version > Config::currentSchemaVersion) {
        throw StoreError(store_error::UnsupportedSchemaVersion{*version});
    }
    try {
        config_ = config_json::decode(text);
    } catch (const config_json::DecodingError&) {
        throw StoreError(store_error::Corrupt{backUpCorruptFile()});
    }
    isLoaded_ = true;
}

Rule RuleStore::add(const Rule& rule) {
    requireLoaded();
    if (indexOf(rule.id)) throw StoreError(store_error::DuplicateId{rule.id});
    validate(rule);
    Config changed = config_;
    changed.rules.push_back(rule);
    commit(std::move(changed));
    return rule;
}

void RuleStore::update(const Rule& rule) {
    requireLoaded();
    const std::size_t index = requireIndex(rule.id);
    validate(rule);
    Config changed = config_;
    changed.rules[index] = rule;
    commit(std::move(changed));
}

void RuleStore::remove(const std::string& id) {
    requireLoaded();
    requireIndex(id);
    Config changed = config_;
    std::erase_if(changed.rules, [&](const Rule& rule) { return rule.id == id; });
    commit(std::move(changed));
}

void RuleStore::setEnabled(const std::string& id, bool enabled) {
    requireLoaded();
    const std::size_t index = requireIndex(id);
    Config changed = config_;
    changed.rules[index].enabled = enabled;
    commit(std::move(changed));
}

void RuleStore::save() {
    try {
        if (fileURL_.has_parent_path()) storage_->createDirectories(fileURL_.parent_path());
        storage_->writeAtomically(fileURL_, config_json::encode(config_));
    } catch (const std::system_error& error) {
        throw StoreError(store_error::WriteFailed{error.what()});
    } catch (const std::invalid_argument& error) {
        throw StoreError(store_error::WriteFailed{error.what()});
    }
}

std::optional<std::string> RuleStore::backUpCorruptFile() {
    std::filesystem::path backup = fileURL_;
    backup += ".corrupt-" + std::to_string(wallClock_());
    try {
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

void RuleStore::commit(Config changed) {
    // No higher version than is needed, so that older programs can read everything else.
    changed.schemaVersion = Config::baseSchemaVersion;
    for (const Rule& rule : changed.rules)
        changed.schemaVersion = std::max(changed.schemaVersion, schemaVersion(rule.trigger));
    std::swap(config_, changed);
    try {
        save();
    } catch (...) {
        config_ = std::move(changed);
        throw;
    }
}

} // namespace hopsel
