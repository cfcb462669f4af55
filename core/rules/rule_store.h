// Owns the settings file: reads it once at start, refuses what it must not touch, writes the whole document
// back after every change.
//
// One instance per process, main thread. The only writer of the file, and its mutations are the only way
// rules change: each validates, applies, chooses the schema version, saves, and puts everything back if
// saving fails.
#pragma once

#include "core/platform/file_storage.h"
#include "core/rules/rule.h"
#include "core/rules/rule_validator.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace hopsel {

namespace store_error {
/// The file cannot be decoded; a copy lies at `backupPath`, unless copying failed.
struct Corrupt {
    std::optional<std::string> backupPath;
    friend bool operator==(const Corrupt&, const Corrupt&) = default;
};
/// The file was written by a newer version; it is left alone.
struct UnsupportedSchemaVersion {
    std::int64_t version;
    friend bool operator==(const UnsupportedSchemaVersion&, const UnsupportedSchemaVersion&) = default;
};
struct Invalid {
    std::vector<RuleIssue> issues;
    friend bool operator==(const Invalid&, const Invalid&) = default;
};
struct DuplicateId {
    std::string id;
    friend bool operator==(const DuplicateId&, const DuplicateId&) = default;
};
struct NotFound {
    std::string id;
    friend bool operator==(const NotFound&, const NotFound&) = default;
};
/// The platform's own description of what went wrong.
struct WriteFailed {
    std::string description;
    friend bool operator==(const WriteFailed&, const WriteFailed&) = default;
};
/// A change was asked for before any load succeeded.
struct NotLoaded {
    friend bool operator==(const NotLoaded&, const NotLoaded&) = default;
};
} // namespace store_error

class StoreError : public std::runtime_error {
  public:
    using Reason = std::variant<store_error::Corrupt, store_error::UnsupportedSchemaVersion,
                                store_error::Invalid, store_error::DuplicateId, store_error::NotFound,
                                store_error::WriteFailed, store_error::NotLoaded>;

    explicit StoreError(Reason reason);
    const Reason& reason() const { return reason_; }

  private:
    Reason reason_;
};

class RuleStore {
  public:
    /// Seconds since 1970, for the name of a backup.
    using WallClock = std::function<std::int64_t()>;

    RuleStore(std::filesystem::path fileURL, std::shared_ptr<FileStorage> storage, WallClock wallClock);

    /// "Hopsel/config.json" in the user's data directory.
    static std::filesystem::path defaultFileURL(const FileStorage& storage);

    const std::filesystem::path& fileURL() const { return fileURL_; }
    const Config& config() const { return config_; }
    bool isLoaded() const { return isLoaded_; }

    /// Throws `StoreError` (`Corrupt`, `UnsupportedSchemaVersion`), or the storage's read error unchanged;
    /// the document in memory then stays as it was. A missing file is an empty document. Never writes the
    /// file.
    void load();

    // Each change throws `StoreError` and then leaves file and memory as they were.
    Rule add(const Rule& rule);
    /// Replaces the rule with the same identifier, in place.
    void update(const Rule& rule);
    void remove(const std::string& id);
    /// Does not validate the rule again.
    void setEnabled(const std::string& id, bool enabled);

    /// Writes the document as it stands. Throws `StoreError` (`WriteFailed`).
    void save();

  private:
    std::optional<std::string> backUpCorruptFile();
    void requireLoaded() const;
    std::optional<std::size_t> indexOf(const std::string& id) const;
    std::size_t requireIndex(const std::string& id) const;
    void validate(const Rule& rule) const;
    void commit(Config changed);

    std::filesystem::path fileURL_;
    std::shared_ptr<FileStorage> storage_;
    WallClock wallClock_;
    Config config_ = Config::empty();
    bool isLoaded_ = false;
};

} // namespace hopsel
