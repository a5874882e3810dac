#include "app/demo/DemoSystem.h"
#include "app/desktop/runProgram.h"

namespace orvanta {
namespace {

int runDemo(int argc, char** argv) {
    return runProgram(
        argc, argv, &ProgramIdentity::ofDemo,
        [](const ProgramIdentity& identity, RunLoop& mainRunLoop, SystemLog& /*log*/) {
            auto system = std::make_unique<DemoSystem>(mainRunLoop, identity.home / "icons");
            system->startClock();
            return system;
        });
}

} // namespace
} // namespace orvanta

/// The mixer over programs of its own, without a sound server.
int main(int argc, char** argv) {
    return orvanta::runDemo(argc, argv);
}
