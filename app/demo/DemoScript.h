#pragma once

#include "app/demo/DemoProgram.h"
#include "core/platform/RunLoop.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/EmbeddedProcessTable.h"

#include <memory>
#include <vector>

namespace orvanta::demo {

/// Has each demo program play and pause when its turn comes, and its process use what such a
/// program uses. Once a second, counted by its own timer: the same on every machine, and as fast as
/// a test turns the clock. Belongs to the run loop's thread and ends with the object.
class DemoScript {
public:
    /// Adds the programs to the server, which with the table and the run loop must outlive it.
    DemoScript(RunLoop& runLoop, EmbeddedAudioServer& server, EmbeddedProcessTable& processes,
               const std::vector<DemoProgram>& programs);

    DemoScript(const DemoScript&) = delete;
    DemoScript& operator=(const DemoScript&) = delete;
    ~DemoScript() = default;

private:
    /// A program on the stage.
    struct Player {
        DemoProgram program;
        AudioObjectID object = kAudioObjectUnknown;
        bool isPlaying = false;
        std::uint64_t processorTime = 0; ///< ns
    };

    void playSecond();
    void use(Player& player);

    EmbeddedAudioServer& server_;
    EmbeddedProcessTable& processes_;
    std::vector<Player> players_;
    int second_ = 0;
    std::unique_ptr<RepeatingTimer> timer_;
};

} // namespace orvanta::demo
