// Sway is played here: with keyboards that a test cannot have, and with answers that sway does not give.
#include "platform/linux/desktops/sway_layouts.h"

#include "session/temporary_folder.h"
#include "support/framework_watch.h"

#include <QLocalServer>
#include <cstring>

namespace hopsel::test {
namespace {

QByteArray framed(quint32 type, const QByteArray& payload) {
    const auto length = static_cast<quint32>(payload.size());
    QByteArray bytes("i3-ipc");
    bytes.append(reinterpret_cast<const char*>(&length), 4).append(reinterpret_cast<const char*>(&type), 4);
    return bytes + payload;
}

QByteArray keyboard(const QByteArray& identifier, const QByteArray& layouts, int active = 0) {
    return R"({"type":"keyboard","identifier":")" + identifier + R"(","xkb_layout_names":[)" + layouts +
           R"(],"xkb_active_layout_index":)" + QByteArray::number(active) + "}";
}

const QByteArray english = "\"English (US)\"", russian = "\"Russian\"", german = "\"German\"";

class SwayLayoutsTest : public testing::Test {
  protected:
    SwayLayoutsTest() {
        const QString path = QString::fromStdString((folder.path() / "socket").string());
        EXPECT_TRUE(server.listen(path));
        setenv("SWAYSOCK", path.toUtf8().constData(), 1);
        QObject::connect(&server, &QLocalServer::newConnection, &server, [this] {
            sway = server.nextPendingConnection();
            QObject::connect(sway, &QLocalSocket::readyRead, sway, [this] { answer(); });
        });
        layouts.retry();
    }
    void answer() {
        while (sway->bytesAvailable() >= 14) {
            const QByteArray header = sway->read(14);
            quint32 length = 0;
            std::memcpy(&length, header.constData() + 6, 4);
            const QByteArray payload = sway->read(length);
            const auto type = static_cast<quint8>(header[10]);
            if (type == SwayIpc::subscribe) sway->write(framed(type, R"({"success":true})"));
            if (type == SwayIpc::getInputs) sway->write(framed(type, inputs));
            if (type == SwayIpc::runCommand) {
                commands << payload;
                sway->write(framed(type, commandAnswer));
            }
        }
    }
    void event(const QByteArray& change, const QByteArray& input) {
        sway->write(framed(SwayIpc::inputEvent, R"({"change":")" + change + R"(","input":)" + input + "}"));
    }
    bool tell(const QByteArray& keyboards, const Strings& ids) {
        inputs = "[" + keyboards + "]";
        event("added", "{}");
        return watch.lists(ids);
    }

    session::TemporaryFolder folder;
    QLocalServer server;
    QLocalSocket* sway = nullptr;
    QByteArray inputs = "[" + keyboard("1:1:one", english + "," + russian) + "]";
    QByteArray commandAnswer = R"([{"success":true}])";
    QByteArrayList commands;
    SwayLayouts layouts;
    FrameworkWatch watch{layouts};
};

TEST_F(SwayLayoutsTest, KeyboardsWithLayoutsOfTheirOwnAreSwitchedOneByOne) {
    ASSERT_TRUE(watch.comesInCharge());
    const QByteArray power = keyboard("0:1:Power_Button", german);
    const QByteArray first = keyboard("1:1:one", english + "," + russian);
    const QByteArray second = keyboard("1:2:two", russian + "," + german + ",null", 1);
    const QByteArray hostile = keyboard(R"(1:3:x\";exec true)", german + "," + german);
    ASSERT_TRUE(tell(power + "," + first + "," + second + "," + hostile,
                     {"sway:English (US)", "sway:Russian", "sway:German", "sway:German#2"}));
    for (const char* id : {"sway:Russian", "sway:German"}) EXPECT_EQ(layouts.select(id), accepted);
    ASSERT_TRUE(runLoopUntil([&] { return commands.size() == 2; }));
    EXPECT_EQ(commands[0], R"(input "1:1:one" xkb_switch_layout 1;input "1:2:two" xkb_switch_layout 0)");
    EXPECT_EQ(commands[1], R"(input "1:2:two" xkb_switch_layout 1)");
    EXPECT_EQ(layouts.select("sway:German#2"), refused) << "no safe way to say it";

    EXPECT_EQ(layouts.currentID(), "sway:English (US)");
    event("xkb_layout", second);
    EXPECT_TRUE(watch.becomesCurrent("sway:German")) << "of the keyboard that changed last";
    event("xkb_layout", power);
    event("xkb_layout", keyboard("1:2:two", "7", 9));
    event("libinput_config", "[]");
    EXPECT_TRUE(staysFalse([&] { return layouts.currentID() != "sway:German"; }));
    EXPECT_EQ(watch.selected, 1);
    EXPECT_EQ(watch.sources, 1);
}

TEST_F(SwayLayoutsTest, WhateverIsNoYesIsARefusal) {
    ASSERT_TRUE(watch.comesInCharge());
    for (const char* answer : {R"([{"success":true},{"success":false}])", "[]", "{", R"([{"success":1}])"}) {
        commandAnswer = answer;
        EXPECT_EQ(layouts.select("sway:Russian"), accepted);
        EXPECT_TRUE(watch.isRefused(refused)) << answer;
    }
    commandAnswer = R"([{"success":true}])"; // but no event comes
    inputs = "[" + keyboard("1:1:one", english + "," + russian, 1) + "]";
    EXPECT_EQ(layouts.select("sway:Russian"), accepted);
    EXPECT_TRUE(watch.becomesCurrent("sway:Russian"));
    EXPECT_EQ(layouts.refusal(), std::nullopt);
}

TEST_F(SwayLayoutsTest, AnythingElseThanSwaysAnswersEndsTheConnectionUntilTheRetry) {
    const QByteArray longest(static_cast<int>(SwayIpc::maxPayload), ' ');
    for (const QByteArray& wrong : {QByteArray(14, 'x'), framed(SwayIpc::inputEvent, longest + " "),
                                    framed(SwayIpc::subscribe, "{}")}) {
        ASSERT_TRUE(watch.comesInCharge());
        sway->write(framed(SwayIpc::inputEvent, longest) + framed(7, "?") + wrong);
        EXPECT_TRUE(watch.comesInCharge(false));
        EXPECT_EQ(layouts.retries(), InputFramework::Retries::always);
        layouts.retry();
    }
    ASSERT_TRUE(watch.comesInCharge());
    inputs = "{}";
    event("removed", "{}");
    EXPECT_TRUE(watch.comesInCharge(false));
    inputs = "[7,null,{},[]," + keyboard("", R"("a\nb",7,{})", -5) + "]";
    layouts.retry();
    ASSERT_TRUE(watch.comesInCharge());
    EXPECT_EQ(watch.ids(), Strings{"sway:a b"});
    EXPECT_EQ(layouts.currentID(), std::nullopt);
    inputs = QByteArray(500, '[') + QByteArray(500, ']');
    event("removed", "{}");
    EXPECT_TRUE(watch.comesInCharge(false));
}

} // namespace
} // namespace hopsel::test
