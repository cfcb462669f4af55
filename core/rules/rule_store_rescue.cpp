// The ways out when the settings file cannot be read: the copy of what was stored last, and an empty
// document.
#include "core/rules/config_json.h"
#include "core/rules/rule_store.h"

#include <system_error>
#include <utility>

namespace hopsel {

std::filesystem::path RuleStore::goodCopyURL() const {
    std::filesystem::path copy = fileURL_;
    return copy += ".last-good";
}

void RuleStore::keepGoodCopy() const noexcept {
    try {
        storage_->writeAtomically(goodCopyURL(), config_json::encode(config_));
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch)
        // The settings themselves are stored; the next change tries again.
    }
}

std::optional<Config> RuleStore::goodCopy() const {
    try {
        return readOther(goodCopyURL());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void RuleStore::startAfresh(const Config& config) {
    Config chosen = config;
    try {
        const Seen over{storage_->mark(fileURL_), std::nullopt};
        if (over.mark && !backUpCorruptFile(storage_->read(fileURL_)))
            throw StoreError(store_error::WriteFailed{"no copy could be made of the file that is there"});
        if (!write(chosen, over))
            throw StoreError(store_error::WriteFailed{"another program has just written the file"});
    } catch (const std::system_error& error) {
        throw StoreError(store_error::WriteFailed{error.what(), error.code()});
    }
    config_ = std::move(chosen);
    isLoaded_ = true;
}

} // namespace hopsel
