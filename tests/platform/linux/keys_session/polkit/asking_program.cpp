// Stands in for the program whose button is pressed: waits for a line, has the key helper turned on, and says
// how that ended.
//
//     asking_program <the service's socket> <what turns it on>
#include "platform/linux/keys_helper/session/helper_key_session.h"
#include "support/fakes/engine_fakes.h"

#include <QCoreApplication>
#include <QTimer>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string>

int main(int argc, char** argv) {
    using namespace hopsel;
    const QCoreApplication application(argc, argv);
    if (argc != 3) return 1;
    std::string line;
    std::getline(std::cin, line);
    fakes::RecordingLog log;
    HelperPlaces places{argv[1], {}, "/nowhere"};
    places.enabler = argv[2];
    HelperKeySession keys(places, [] { return 1.0; }, log);
    std::optional<WayOut> told;
    const QObject context;
    keys.remedy(&context, [&](const WayOut& way) { told = way; });
    const auto permissions = keys.permissions();
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
        if (told || permissions->inputMonitoringGranted()) QCoreApplication::exit();
    });
    look.start(20);
    QCoreApplication::exec();
    std::puts(told ? told->what.c_str() : "on");
    return 0;
}
