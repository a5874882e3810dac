#pragma once

#include "core/model/MixerViewModel.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "tests/support/PlatformFakes.h"
#include "tests/support/model/RecordingTapping.h"
#include "tests/support/model/ScriptedSources.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {

/// A mixer model in virtual time whose collaborators are all fakes. The embedded audio server is
/// there for the devices' own volumes and holds no programs.
class ModelRig : public PlatformFakes {
public:
    ModelRig();
    /// The process's current hot key manager goes too.
    ~ModelRig();
    ModelRig(const ModelRig&) = delete;
    ModelRig& operator=(const ModelRig&) = delete;

    EmbeddedAudioServer server;
    std::shared_ptr<RecordingTapping> tapping = std::make_shared<RecordingTapping>();
    std::shared_ptr<ScriptedDiscovery> discovery = std::make_shared<ScriptedDiscovery>();
    std::shared_ptr<ScriptedDevices> devices = std::make_shared<ScriptedDevices>();
    std::shared_ptr<RecordingSettings> settings = std::make_shared<RecordingSettings>();
    std::shared_ptr<MixerViewModel> model;
    /// What tap engine and store were told, in one order; tests add what they observe.
    std::vector<std::string> order;

    /// Makes the model, in place of one that is there.
    void startPassive();
    void startRunning();

    [[nodiscard]] AudioApp app(std::int32_t pid, const std::string& name,
                               std::optional<std::string> bundleIdentifier = std::nullopt,
                               bool isPlaying = true) const;
    /// Lists another application. Its object is its process id plus 1000. The model learns of it at
    /// the next refresh.
    void list(std::int32_t pid, const std::string& name,
              std::optional<std::string> bundleIdentifier = std::nullopt, bool isPlaying = true);
    void unlist(std::int32_t pid);

    /// One refresh pass, at once.
    void refresh() { model->refreshAppsSync(); }

    /// An application that is listed and tapped by hand, with what that brought forgotten.
    void tap(std::int32_t pid, const std::string& name,
             std::optional<std::string> bundleIdentifier = std::nullopt);
    /// Calls and messages so far.
    void forget();
    /// What is stored under a key; a default record where nothing is.
    [[nodiscard]] AppSettings stored(const std::string& key) const;

    /// What a new tap has.
    static AppSettings defaultRecord();
};

} // namespace orvanta::test
