#pragma once

#include "core/platform/AudioFileWriter.h"
#include "core/platform/AudioHardware.h"
#include "core/platform/ProcessTable.h"
#include "core/platform/RunLoop.h"
#include "core/platform/SerialQueue.h"
#include "core/platform/SystemLog.h"
#include "core/platform/WallClock.h"
#include "core/platform/Workspace.h"

namespace orvanta {

/// Everything the core asks of the world. A program builds it once; the core's constructors take
/// it; what it refers to outlives them.
struct Platform {
    AudioHardware& audioHardware;
    ProcessTable& processTable;
    Workspace& workspace;
    SystemLog& systemLog;
    RunLoop& mainRunLoop;
    SerialQueues& serialQueues;
    WallClock& wallClock;
    AudioFileWriter& audioFileWriter;
};

} // namespace orvanta
