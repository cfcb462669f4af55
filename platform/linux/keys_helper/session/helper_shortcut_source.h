// The filtering source over the key helper: declares the combinations, and answers what it asks.
//
// Shared by the engine and the key session, which hands it what the helper tells; link and log outlive it. A
// keyboard that another program holds is tried for again every other second; the other keyboards are filtered
// meanwhile.
#pragma once

#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"
#include "platform/linux/keys_helper/session/helper_link.h"

#include <QTimer>
#include <memory>
#include <string>

namespace hopsel {

class HelperShortcutSource final : public ShortcutSource {
  public:
    HelperShortcutSource(std::shared_ptr<HelperLink> link, Log& log);
    ~HelperShortcutSource() override { stopFiltering(); }

    void start() override;
    void stop() override { stopFiltering(); }
    void setShortcuts(const ShortcutSet& shortcuts) override;
    /// Those that the helper's policy does not allow, or that are too many.
    ShortcutSet unavailableShortcuts() const override;

    /// What the told keys mean to the keymap.
    void setMeanings(const told_keys::Meanings& meanings);

    /// The answer goes out at once.
    void asked(const to_session::Ask& ask);
    /// `flags`: of what is held now.
    void released(const to_session::Released& key, std::uint64_t flags) const;
    void troubled(const to_session::Trouble& trouble);
    void lost(const std::string& reason);

  private:
    KeyDeclaration declaration() const;
    void declare();
    void stopFiltering();

    std::shared_ptr<HelperLink> link_;
    TapFailureLog failures_;
    Log& log_;
    ShortcutSet shortcuts_;
    told_keys::Meanings meanings_ = told_keys::plainMeanings();
    bool isStarted_ = false;
    std::string toldTrouble_; ///< so that it is logged once
    QTimer retryTimer_;       ///< runs only while another program holds a keyboard
};

} // namespace hopsel
