#include "app/desktop/PipeWireSystem.h"
#include "app/desktop/runProgram.h"

namespace orvanta {
namespace {

int runMixer(int argc, char** argv) {
    return runProgram(argc, argv, &ProgramIdentity::ofMixer,
                      [](const ProgramIdentity& /*identity*/, RunLoop& /*mainRunLoop*/,
                         SystemLog& log) { return std::make_unique<PipeWireSystem>(log); });
}

} // namespace
} // namespace orvanta

/// The mixer of the user's session.
int main(int argc, char** argv) {
    return orvanta::runMixer(argc, argv);
}
