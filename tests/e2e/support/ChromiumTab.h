#pragma once

#include "tests/e2e/support/AudioGraph.h"
#include "tests/support/ChildProcess.h"

#include <filesystem>
#include <string>
#include <vector>

namespace orvanta::test {

/// A browser without a window whose only tab plays a file over and over. Its sound comes out of a
/// process of its own, through the Pulse bridge.
class ChromiumTab {
public:
    /// `directory` takes the page, the browser's profile and its log; it may vanish when this has
    /// been destroyed.
    ChromiumTab(const std::filesystem::path& file, const std::filesystem::path& directory);
    ChromiumTab(const ChromiumTab&) = delete;
    ChromiumTab& operator=(const ChromiumTab&) = delete;
    ~ChromiumTab();

    /// The browser itself, the ancestor of all its processes.
    [[nodiscard]] pid_t pid() const { return browser_.pid(); }

    /// Waits until the tab plays and returns the process that does it. Throws when none comes.
    [[nodiscard]] pid_t awaitAudioProcess(const AudioGraph& graph) const;

    /// The browser closes its stream when the tab has been paused for some seconds.
    void pause() const { tell("pause"); }

    void resume() const { tell("play"); }

private:
    /// Calls this method of the page's player.
    void tell(const std::string& method) const;

    std::filesystem::path folder_;
    ChildProcess browser_;
};

} // namespace orvanta::test
