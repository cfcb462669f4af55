// Owns the settings file: reads it once at start, refuses what it must not touch, writes the whole document
// back after every change.
//
// One instance per process. Its mutations are the only way in which this program changes rules:
// each validates, applies, chooses the schema version, saves, and puts everything back if saving fails. Other
// programs may write the file too; what they wrote is taken in or kept aside before it is written over.
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
#include <system_error>
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
/// The platform's own description of what went wrong, and its number for it where it has one.
struct WriteFailed {
    std::string description;
    std::error_code reason{};
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

    enum class Outside {
        unchanged,
        taken,  ///< the document is what another program wrote
        damaged ///< cannot be decoded; left as it is, and kept aside before it is written over
    };
    /// Looks whether another program has written the file since it was last read or written. A file that is
    /// gone is no change: the next one writes it anew. Throws `StoreError` (`UnsupportedSchemaVersion`), or
    /// the storage's read error; the document in memory then stays as it was.
    Outside takeOutsideChange();
    /// Where the last copy lies of what was written over.
    const std::optional<std::string>& keptAside() const { return keptAside_; }

    // Each change takes in first what another program wrote. It throws `StoreError` and then leaves file and
    // memory as they were.
    Rule add(const Rule& rule);
    /// Replaces the rule with the same identifier, in place.
    void update(const Rule& rule);
    void remove(const std::string& id);
    /// Does not validate the rule again.
    void setEnabled(const std::string& id, bool enabled);

    // rule_store_exchange.cpp: rules that leave the file and come back

    /// All or none, at `index` or at the end. Not validated again: for rules that were stored here before, or
    /// were looked over (`rule_exchange`).
    void insert(const std::vector<Rule>& rules, std::size_t index);
    /// The same document in another file. Throws `StoreError` (`NotLoaded`, `WriteFailed`).
    void exportTo(const std::filesystem::path& file) const;
    /// The document in another file, which is left alone. Throws `StoreError` (`Corrupt`,
    /// `UnsupportedSchemaVersion`) or the storage's read error unchanged.
    Config readOther(const std::filesystem::path& file) const;

    // rule_store_rescue.cpp: ways out when the file cannot be read

    /// Where the document lies as it was last stored, for the day on which somebody else breaks the file.
    std::filesystem::path goodCopyURL() const;
    /// Failing costs nothing but the copy.
    void keepGoodCopy() const noexcept;
    /// Absent when there is none that can be read.
    std::optional<Config> goodCopy() const;
    /// Goes on with `config` in place of the file, of which a copy is kept. Throws `StoreError`
    /// (`WriteFailed`), also when no copy can be made.
    void startAfresh(const Config& config);

  private:
    using Edit = std::function<void(Config&)>;
    /// What lies there now.
    struct Seen {
        std::optional<FileMark> mark;
        std::optional<std::string> text; ///< if it is not what is known
    };

    Seen look() const;
    Outside take(const Seen& seen);
    std::optional<std::string> backUpCorruptFile(const std::string& text);
    void keepAside(const Seen& seen);
    void requireLoaded() const;
    std::optional<std::size_t> indexOf(const std::string& id) const;
    std::size_t requireIndex(const std::string& id) const;
    void validate(const Rule& rule) const;
    void save(const Edit& edit);
    bool write(Config& config, const Seen& over);

    std::filesystem::path fileURL_;
    std::shared_ptr<FileStorage> storage_;
    WallClock wallClock_;
    Config config_ = Config::empty();
    bool isLoaded_ = false;
    std::optional<std::string> known_; ///< what the file said when it was last read or written
    std::optional<std::string> keptAside_;
};

} // namespace hopsel
