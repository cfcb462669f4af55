// Plays Hopsel's main job on a machine without a display and tells what each press did. Status 0 only if all
// of it came out right.
#include "main_job/acts.h"
#include "main_job/stage.h"
#include "main_job/tour.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace {

using namespace hopsel::main_job;

bool playAct(Stage& stage, const Act& act) {
    const Observation seen = stage.observe(act.play, act.switches);
    const bool right = seen.verified == act.switches && (seen.before != seen.after) == act.switches;
    char latency[32] = "";
    if (seen.verified) std::snprintf(latency, sizeof latency, "%.2f ms", seen.milliseconds);
    std::printf("  %-34s %-7s %-7s %-9s %-8s %9s   %s\n", act.name.c_str(), seen.before.c_str(),
                seen.after.c_str(), act.switches ? "switch" : "none", seen.verified ? "yes" : "no", latency,
                right ? "right" : "WRONG");
    std::fflush(stdout);
    return right;
}

bool typeLine(Stage& stage) {
    const std::string expected = "abфи с";
    const std::string typed = stage.typeAcrossTheShortcut();
    std::printf("\n  Typed: a b, left Shift+Space, a b, Space, c\n"
                "  The application received \"%s\": %s\n",
                typed.c_str(),
                typed == expected ? "the swallowed Space never arrived, everything else did, in order. Right."
                                  : "WRONG.");
    return typed == expected;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "usage: hopsel-main-job <path of hopsel> [<folder for pictures>]\n");
        return EXIT_FAILURE;
    }
    try {
        Stage stage(argv[1]);
        std::printf(
            "\nNo display here: playing the main job in a private X server (%s, layouts us and ru).\n\n"
            "  %-34s %-7s %-7s %-9s %-8s %9s\n",
            stage.display().c_str(), "press", "before", "after", "expected", "verified", "in");
        bool allRight = true;
        for (const Act& act : acts()) allRight = playAct(stage, act) && allRight;
        allRight = typeLine(stage) && allRight;
        if (argc == 3) {
            std::printf("\n  Pictures of what a person sees of it:\n");
            for (const auto& picture : takePictures(stage, argv[2])) std::printf("    %s\n", picture.c_str());
        }
        const bool ended = stage.endProgram();
        std::printf("  Asked to end, the program %s.\n\n%s\n",
                    ended ? "ended in order" : "DID NOT END IN ORDER",
                    allRight && ended ? "All of it came out right." : "Something came out WRONG.");
        return allRight && ended ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hopsel-main-job: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
