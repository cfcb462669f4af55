// Rules that leave the settings file and come back: put back after they were deleted, exported, imported.
#include "core/rules/config_json.h"
#include "core/rules/rule_store.h"

#include <algorithm>
#include <iterator>
#include <system_error>

namespace hopsel {

void RuleStore::insert(const std::vector<Rule>& rules, std::size_t index) {
    save([&](Config& changed) {
        const std::size_t place = std::min(index, changed.rules.size());
        changed.rules.insert(std::next(changed.rules.begin(), static_cast<std::ptrdiff_t>(place)),
                             rules.begin(), rules.end());
        for (const Rule& rule : rules) {
            const auto isSame = [&](const Rule& other) { return other.id == rule.id; };
            if (std::count_if(changed.rules.begin(), changed.rules.end(), isSame) > 1)
                throw StoreError(store_error::DuplicateId{rule.id});
        }
    });
}

void RuleStore::exportTo(const std::filesystem::path& file) const {
    requireLoaded();
    try {
        storage_->writeAtomically(file, config_json::encode(config_));
    } catch (const std::exception& error) {
        throw StoreError(store_error::WriteFailed{error.what(), {}});
    }
}

Config RuleStore::readOther(const std::filesystem::path& file) const {
    const std::string text = storage_->read(file);
    const auto version = config_json::probeSchemaVersion(text);
    if (version && *version > Config::currentSchemaVersion)
        throw StoreError(store_error::UnsupportedSchemaVersion{*version});
    try {
        return config_json::decode(text);
    } catch (const config_json::DecodingError&) {
        throw StoreError(store_error::Corrupt{});
    }
}

} // namespace hopsel
