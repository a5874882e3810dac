#pragma once

#include "app/desktop/MainRunLoop.h"
#include "app/desktop/ProgramIdentity.h"
#include "app/desktop/SoundSystem.h"
#include "core/platform/SystemLog.h"

#include <functional>
#include <memory>

namespace orvanta {

/// Makes the sound system once the toolkit and the main queue are there.
using MakeSoundSystem = std::function<std::unique_ptr<SoundSystem>(
    const ProgramIdentity& identity, RunLoop& mainRunLoop, SystemLog& log)>;

/// Where the program keeps what is its own may be impossible to tell: it throws then.
using FindIdentity = std::function<ProgramIdentity()>;

/// A program from its start to its end, in the order that a crash at any moment leaves a trace and
/// a second start changes nothing. What goes wrong is told in a sentence on standard error.
///
/// Exit codes: 0 when it has quit, or has shown the one that runs already; 1 when it cannot run; 2
/// for an option without its value; 3 when another mixer has the session. Options that are not ours
/// are left to the toolkit.
int runProgram(int argc, char** argv, const FindIdentity& findIdentity,
               const MakeSoundSystem& makeSoundSystem);

} // namespace orvanta
