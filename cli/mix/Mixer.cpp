#include "cli/mix/Mixer.h"

#include "cli/mix/CommandError.h"
#include "cli/mix/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace orvanta::cli {
namespace {

std::string enumeratedApps(const std::vector<AudioApp>& apps) {
    std::vector<std::string> texts;
    texts.reserve(apps.size());
    for (const AudioApp& app : apps)
        texts.push_back(described(app));
    return enumerated(texts);
}

bool isExactly(const AudioApp& app, const std::string& word) {
    return app.name == word || app.bundleIdentifier == word;
}

} // namespace

std::string described(const AudioApp& app) {
    return fmt::format("{} ({})", inQuotes(app.name), app.pid);
}

Mixer::Mixer(MixerViewModel& mixerModel, const Platform& platform, ConsoleLog& consoleLog,
             std::filesystem::path homeFolder)
    : model(mixerModel), log(consoleLog), home(std::move(homeFolder)), discovery_(platform) {}

std::vector<AudioApp> Mixer::apps() {
    auto found = discovery_.discoverAudioApps();
    const auto isFound = [&](std::int32_t pid) {
        return std::ranges::find(found, pid, &AudioApp::pid) != found.end();
    };
    if (!std::ranges::all_of(model.tappedPIDs.get(), isFound)) {
        model.refreshAppsSync();
        found = discovery_.discoverAudioApps();
    }
    return found;
}

bool Mixer::isCalled(const AudioApp& app, const std::string& word) const {
    return names_.isSame(app.name, word) ||
           (app.bundleIdentifier && names_.isSame(*app.bundleIdentifier, word));
}

AudioApp Mixer::app(const std::string& word) {
    const auto all = apps();
    for (const AudioApp& each : all)
        if (std::to_string(each.pid) == word)
            return each;
    std::vector<AudioApp> meant;
    std::ranges::copy_if(all, std::back_inserter(meant), [&](const AudioApp& each) {
        return !word.empty() && isCalled(each, word);
    });
    // One that is written just so is not taken for another.
    if (std::ranges::count_if(meant, [&](const auto& each) { return isExactly(each, word); }) == 1)
        std::erase_if(meant, [&](const AudioApp& each) { return !isExactly(each, word); });
    if (meant.size() > 1)
        throw CommandError(fmt::format("{} may be {}; say which by its process id.", inQuotes(word),
                                       enumeratedApps(meant)));
    if (meant.size() == 1)
        return meant.front();
    throw CommandError(fmt::format(
        "There is no application {}; there {}.", inQuotes(word),
        all.empty() ? "is none at all" : (all.size() == 1 ? "is " : "are ") + enumeratedApps(all)));
}

AudioApp Mixer::tappedApp(const std::string& word) {
    AudioApp found = app(word);
    if (!model.isTapped(found.pid))
        throw CommandError(fmt::format("{} is not tapped.", described(found)));
    return found;
}

} // namespace orvanta::cli
