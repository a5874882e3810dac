#include "app/desktop/PipeWireSystem.h"
#include "app/desktop/runProgram.h"

/// The mixer of the user's session.
int main(int argc, char** argv) {
    using namespace orvanta;
    return runProgram(argc, argv, ProgramIdentity::ofMixer(),
                      [](RunLoop& /*mainRunLoop*/, SystemLog& log) {
                          return std::make_unique<PipeWireSystem>(log);
                      });
}
