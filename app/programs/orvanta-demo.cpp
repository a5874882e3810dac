#include "app/demo/DemoSystem.h"
#include "app/desktop/runProgram.h"

namespace orvanta {
namespace {

int runDemo(int argc, char** argv) {
    return runProgram(
        argc, argv, &ProgramIdentity::ofDemo,
        [](const ProgramIdentity& identity, RunLoop& mainRunLoop, SystemLog& /*log*/) {
            return DemoSystem::started(mainRunLoop, identity.home);
        });
}

} // namespace
} // namespace orvanta

/// The mixer over programs of its own, without a sound server.
int main(int argc, char** argv) {
    return orvanta::runDemo(argc, argv);
}
