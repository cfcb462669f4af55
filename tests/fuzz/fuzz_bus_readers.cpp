// Any program may own a name on the bus and answer what it likes. Each reader takes each answer: it is what
// the reader asked for, cut and cleaned, or nothing.
#include "bus_peer.h"
#include "bus_values.h"
#include "platform/linux/bus/bus_call.h"
#include "platform/linux/fcitx/fcitx_replies.h"
#include "platform/linux/ibus/ibus_engine.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdlib>
#include <set>

using namespace hopsel;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

bool isShown(const std::string& name) {
    const QString text = QString::fromStdString(name);
    const auto isPlain = [](QChar c) { return c.isPrint() || c.isSurrogate(); };
    return !name.empty() && text.toStdString() == name && std::all_of(text.begin(), text.end(), isPlain);
}

void readAsBus(const QDBusMessage& reply) {
    const bool isReply = reply.type() == QDBusMessage::ReplyMessage;
    require(bus_call::textIn(reply).has_value() == (isReply && reply.signature() == u"s"));
    require(bus_call::flagIn(reply).has_value() == (isReply && reply.signature() == u"b"));
    require(bus_call::numberIn(reply).has_value() == (isReply && reply.signature() == u"u"));
    require(bus_call::pathIn(reply).isEmpty() == !(isReply && reply.signature() == u"o"));
    bus_call::propertiesIn(bus_call::variantIn(reply));
    for (const QVariant& argument : reply.arguments()) bus_call::propertiesIn(argument);
}

void readAsFcitx(const QDBusMessage& reply) {
    fcitx::textIn(reply);
    fcitx::numberIn(reply);
    const QStringList known{"hangul", "keyboard-us"};
    const auto sources = fcitx::sourcesIn(reply, known);
    require(!sources || sources->size() == static_cast<std::size_t>(known.size()));
    if (sources)
        for (const InputSourceInfo& source : *sources) require(isShown(source.id) && isShown(source.name));
    const auto members = fcitx::membersIn(reply);
    if (!members) return;
    require(std::set<QString>(members->begin(), members->end()).size() ==
            static_cast<std::size_t>(members->size()));
    for (const QString& member : *members) {
        require(isShown(member.toStdString()) && !member.contains(u' '));
        require(fcitx::methodIn(fcitx::sourceID(member)) == member);
    }
}

void readAsIbus(const QDBusMessage& reply) {
    const auto current = ibus_engine::globalEngine(reply);
    require(!current || current->isEmpty() || ibus_engine::isUsableID(*current));
    const auto engines = ibus_engine::described(reply);
    if (!engines) return;
    require(engines->size() <= ibus_engine::maxEngines);
    for (const IbusEngine& engine : *engines) {
        require(ibus_engine::isUsableID(engine.id) && isShown(engine.name));
        require(engine.layout.variant.empty() || !engine.layout.layout.empty());
    }
}

fuzz::BusPeer& peer() {
    static int count = 1;
    static char name[] = "fuzz_bus_readers";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
    static fuzz::BusPeer peer;
    return peer;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BusValues values({data, size});
    const bool isError = values.next() % 16 == 1;
    const std::string signature(values.signature());
    values.write(signature);
    const QDBusMessage reply = peer().reply([&](std::uint32_t call) {
        return fuzz::busReply(call, signature, values.written(),
                              isError ? "org.freedesktop.DBus.Error.Failed" : "");
    });
    require(reply.signature().toStdString() == signature); // what the bus would hand on
    readAsBus(reply);
    readAsFcitx(reply);
    readAsIbus(reply);
    return 0;
}
