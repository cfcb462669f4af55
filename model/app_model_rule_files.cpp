// The settings file itself: what to do when it cannot be read, and rules that go to another file or come from
// one.
#include "core/rules/rule_exchange.h"
#include "model/app_model.h"

#include <limits>

namespace hopsel {

bool AppModel::canUseGoodCopy() const { return storeProblem_ && parts_.store->goodCopy().has_value(); }

EditResult AppModel::useGoodCopy() {
    const std::optional<Config> copy = parts_.store->goodCopy();
    if (!copy) return edit_result::Failed{"there is no copy"};
    return goOnWith(*copy);
}

EditResult AppModel::startAfresh() { return goOnWith(Config::empty()); }

EditResult AppModel::goOnWith(const Config& config) {
    if (!storeProblem_) return edit_result::Failed{"the settings file is all right"};
    try {
        parts_.store->startAfresh(config);
    } catch (const std::exception& error) {
        return edit_result::Failed{textualDescription(error)};
    }
    publish(storeProblem_, std::nullopt);
    takeBackSaveFailure();
    takeRules();
    refreshEngineState();
    return edit_result::Added{};
}

EditResult AppModel::exportRules(const std::filesystem::path& file) {
    try {
        parts_.store->exportTo(file);
    } catch (const std::exception& error) {
        return edit_result::Failed{textualDescription(error)};
    }
    return edit_result::Added{};
}

ImportResult AppModel::importRules(const std::filesystem::path& file) {
    std::optional<rule_exchange::Plan> plan;
    try {
        plan = rule_exchange::plan(parts_.store->readOther(file).rules, rules_);
    } catch (const StoreError& error) {
        if (std::holds_alternative<store_error::UnsupportedSchemaVersion>(error.reason()))
            return import_result::NewerVersion{};
    } catch (const std::exception& error) {
        return edit_result::Failed{textualDescription(error)};
    }
    if (!plan) return import_result::NotRules{};
    if (!plan->added.empty()) {
        const EditResult result = edit([added = plan->added](RuleStore& store) {
            store.insert(added, std::numeric_limits<std::size_t>::max());
        });
        if (!std::holds_alternative<edit_result::Added>(result))
            return edit_result::Failed{failureText(result)};
    }
    import_result::Taken taken{plan->added.size(), plan->known.size(), {}};
    for (const Rule& rule : plan->keyUsed) taken.keysUsed.push_back(rule.trigger);
    return taken;
}

} // namespace hopsel
