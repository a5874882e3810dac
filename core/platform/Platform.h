#pragma once

#include "core/platform/AudioFileWriter.h"
#include "core/platform/AudioHardware.h"
#include "core/platform/FileViewer.h"
#include "core/platform/HotKeyCenter.h"
#include "core/platform/NotificationCenter.h"
#include "core/platform/ProcessTable.h"
#include "core/platform/RunLoop.h"
#include "core/platform/SerialQueue.h"
#include "core/platform/SystemLog.h"
#include "core/platform/UserDefaults.h"
#include "core/platform/UserFolders.h"
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
    UserDefaults& userDefaults;
    HotKeyCenter& hotKeyCenter;
    NotificationCenter& notificationCenter;
    FileViewer& fileViewer;
    const UserFolders& userFolders;
};

} // namespace orvanta
