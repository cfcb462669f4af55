// The settings file as others see it: loaded at start, written by other programs, refused by the disk.
#include "model/app_model.h"

#include <utility>

namespace hopsel {

void AppModel::loadStore() {
    try {
        parts_.store->load();
        publish(storeProblem_, std::nullopt);
    } catch (const std::exception& error) {
        noteStoreProblem(error);
    }
}

void AppModel::noteStoreProblem(const std::exception& error) {
    StoreProblem problem = store_problem::Unreadable{textualDescription(error)};
    if (const auto* store = dynamic_cast<const StoreError*>(&error)) {
        if (const auto* corrupt = std::get_if<store_error::Corrupt>(&store->reason()))
            problem = store_problem::Corrupt{corrupt->backupPath};
        else if (const auto* newer = std::get_if<store_error::UnsupportedSchemaVersion>(&store->reason()))
            problem = store_problem::NewerVersion{newer->version};
    }
    // What is wrong at the start, start-up says.
    if (parts_.store->isLoaded() && storeProblem_ != problem) writeLog(Log::Level::error, error.what());
    publish(storeProblem_, std::move(problem));
}

void AppModel::settingsFileChanged() {
    if (parts_.store->isLoaded()) return takeOutsideChange();
    loadStore();
    if (storeProblem_) return;
    say(settings_notice::ChangedOutside{});
    takeRules();
    refreshEngineState();
}

// The rules in force stay where nothing better is to be had.
void AppModel::takeOutsideChange() {
    RuleStore::Outside outside{};
    try {
        outside = parts_.store->takeOutsideChange();
    } catch (const StoreError& error) {
        return noteStoreProblem(error);
    } catch (const std::exception&) {
        return; // said by the next change, which cannot be saved either
    }
    publish(storeProblem_, std::nullopt);
    if (outside == RuleStore::Outside::damaged) say(settings_notice::DamagedOutside{});
    if (outside != RuleStore::Outside::taken) return;
    say(settings_notice::ChangedOutside{});
    takeRules();
    refreshEngineState();
}

void AppModel::say(SettingsNotice notice) {
    if (settingsNotice_ == notice) return;
    const bool isGood = std::holds_alternative<settings_notice::ChangedOutside>(notice);
    writeLog(isGood ? Log::Level::info : Log::Level::error, noticeLine(notice));
    publish(settingsNotice_, std::optional(std::move(notice)));
}

void AppModel::writeLog(Log::Level level, const std::string& line) {
    if (parts_.log != nullptr) parts_.log->write(level, "Settings", line);
}

void AppModel::trySavingAgain() {
    if (const Edit unsaved = unsaved_) edit(unsaved);
}

std::string AppModel::failureText(const EditResult& result) const {
    const auto* failed = std::get_if<edit_result::Failed>(&result);
    if (failed == nullptr) return {};
    // Said by the notice in better words.
    return failed->message.starts_with("writeFailed(") && settingsNotice_ ? noticeText(*settingsNotice_)
                                                                          : failed->message;
}

void AppModel::takeBackSaveFailure() {
    unsaved_ = nullptr;
    if (settingsNotice_ && !std::holds_alternative<settings_notice::ChangedOutside>(*settingsNotice_))
        publish(settingsNotice_, std::nullopt);
}

void AppModel::dismissSettingsNotice() {
    if (settingsNotice_ && !std::holds_alternative<settings_notice::SaveFailed>(*settingsNotice_))
        publish(settingsNotice_, std::nullopt);
}

} // namespace hopsel
