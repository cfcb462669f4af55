// KDE's keyboard layouts: what its keyboard daemon has on X11 and its compositor has on Wayland, under the
// same name on the session bus.
//
// The daemon tells a layout's short name ("us"), the label that the user may have given it, and its localized
// name; it switches by position. Rules need more than a position, so an identifier is "kde:us", and
// "kde:us:dvo" where a label says something else than the layout: the label is how KDE's users tell two
// variants of one layout apart, as both have the same short name. Neither depends on the order, on the other
// layouts or on the language of the desktop; giving a layout another label makes it another source. Only
// where two cannot be told apart at all, the second in the list is "#2".
//
// Made by start-up, owned by the session's catalog; needs the event loop.
#pragma once

#include "platform/linux/bus/bus_name.h"
#include "platform/linux/desktops/remembered_framework.h"

namespace hopsel {

class KdeLayouts final : public RememberedFramework {
  public:
    explicit KdeLayouts(std::shared_ptr<BusLink> sessionBus);

    /// While the list is out of date, the request waits for the new one, and `refusal` may become `NotFound`.
    SelectResult select(const std::string& id) override;
    void retry() override;
    Retries retries() const override;

  private:
    void followOwner();
    void layoutChanged(unsigned int index);
    void ask();
    void takeList(const QDBusMessage& reply);
    void takeIndex(const QDBusMessage& reply);
    void send(const std::string& id);
    void takeAnswer(const QDBusMessage& reply, const std::string& id);
    void call(const char* method, const QVariantList& arguments, BusLink::Answer onAnswer);
    std::optional<std::string> idAt(std::size_t index) const;

    std::vector<std::string> ids_; ///< by position; empty where a layout has no name, so is not listed
    std::vector<InputSourceInfo> sources_;
    QList<QStringList> told_; ///< what the two were made from
    bool isAsking_ = false;
    bool hasFailed_ = false;              ///< its last answer was none
    bool isOutdated_ = false;             ///< it has changed again while we ask
    std::optional<std::string> wanted_;   ///< a request that waits for the list
    std::optional<std::string> readBack_; ///< one that was carried out, but of which no signal told
    unsigned requestCount_ = 0;
    BusName service_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
