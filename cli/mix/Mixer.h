#pragma once

#include "cli/ConsoleLog.h"
#include "core/discovery/AudioProcessDiscovery.h"
#include "core/discovery/NameOrder.h"
#include "core/model/MixerViewModel.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orvanta::cli {

/// What commands work on. All of it on the main thread.
class Mixer {
public:
    /// What is referred to outlives it. `home` is what "~" stands for.
    Mixer(MixerViewModel& model, const Platform& platform, ConsoleLog& log,
          std::filesystem::path home);

    MixerViewModel& model;
    ConsoleLog& log;
    const std::filesystem::path home;

    /// The applications that are there now. A tapped one that is not among them is the model's no
    /// more either.
    [[nodiscard]] std::vector<AudioApp> apps();

    /// The application with this process id, name or identifier, letters of either case. Throws a
    /// `CommandError` where there is none, or more than one.
    [[nodiscard]] AudioApp app(const std::string& word);

    /// The same of those that are tapped.
    [[nodiscard]] AudioApp tappedApp(const std::string& word);

    [[nodiscard]] bool isSameName(const std::string& one, const std::string& other) const {
        return names_.isSame(one, other);
    }

private:
    [[nodiscard]] bool isCalled(const AudioApp& app, const std::string& word) const;

    /// Its own, so that a command meets the applications of this moment and not those of the
    /// model's last pass.
    AudioProcessDiscovery discovery_;
    const NameOrder names_;
};

/// "Music" (101): with the quotes.
[[nodiscard]] std::string described(const AudioApp& app);

} // namespace orvanta::cli
