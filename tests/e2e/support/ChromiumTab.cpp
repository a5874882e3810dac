#include "tests/e2e/support/ChromiumTab.h"

#include "tests/e2e/support/ProcessTree.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace orvanta::test {

namespace fs = std::filesystem;

namespace {

/// A browser's start is the longest wait of all tests, longer still beside compilers.
constexpr Seconds browserStartBound{60};

/// The page asks five times a second for what it is told to do; a page read from a file may load
/// nothing else but scripts.
constexpr const char* pageBeforeFile = R"(<!doctype html>
<title>Noise</title>
<script>
const player = new Audio("file://)";
constexpr const char* pageAfterFile = R"(");
player.loop = true;
setInterval(() => {
    const script = document.createElement("script");
    script.src = "told.js?" + Date.now();
    script.onload = script.onerror = () => script.remove();
    document.documentElement.append(script);
}, 200);
</script>
)";

fs::path prepared(const fs::path& folder, const fs::path& file) {
    fs::create_directories(folder);
    std::ofstream(folder / "page.html") << pageBeforeFile << file.string() << pageAfterFile;
    return folder;
}

std::vector<std::string> commandFor(const fs::path& folder) {
    return {"chromium", "--headless=new",
            // Its sandbox refuses to be set up by root, which is who runs tests in containers.
            "--no-sandbox", "--disable-gpu", "--autoplay-policy=no-user-gesture-required",
            "--no-first-run", "--disable-background-networking", "--disable-component-update",
            "--disable-extensions", "--disable-sync",
            "--user-data-dir=" + (folder / "profile").string(),
            "file://" + (folder / "page.html").string()};
}

} // namespace

ChromiumTab::ChromiumTab(const fs::path& file, const fs::path& directory)
    : folder_(prepared(directory / "chromium", file)),
      browser_({.command = commandFor(folder_), .logFile = directory / "chromium.log"}) {
    resume();
}

ChromiumTab::~ChromiumTab() {
    const std::vector<pid_t> helpers = descendantsOf(pid());
    browser_.stop();
    // They still write into the profile until the browser's end has reached them.
    eventually(Seconds(10), [&] { return std::ranges::none_of(helpers, isProcessAlive); });
}

pid_t ChromiumTab::awaitAudioProcess(const AudioGraph& graph) const {
    pid_t found = 0;
    graph.await(
        "a tab plays",
        [&] {
            for (const pid_t helper : descendantsOf(pid()))
                if (!graph.playbackNodes(helper).empty())
                    found = helper;
            return found != 0;
        },
        browserStartBound);
    return found;
}

void ChromiumTab::tell(const std::string& method) const {
    // In one go, so that the page never reads half a word.
    const fs::path fresh = folder_ / "told.new";
    std::ofstream(fresh) << "player." << method << "();\n";
    fs::rename(fresh, folder_ / "told.js");
}

} // namespace orvanta::test
