#pragma once

#include "platform/pipewire/PropertyAnswer.h"
#include "platform/pipewire/Surroundings.h"
#include "platform/pipewire/Tap.h"
#include "platform/pipewire/TapName.h"

#include <memory>
#include <optional>
#include <vector>

namespace orvanta::pipewire {

/// All taps. A tap that was destroyed stays, released, until the aggregate that plays it is gone
/// too. All of it with the lock held; creating and destroying release it while they wait.
class Taps {
public:
    explicit Taps(Surroundings& surroundings);

    OSStatus create(const CATapDescription& description, AudioObjectID& outTap);
    OSStatus destroy(AudioObjectID tap);

    /// Gives back the programs of one tap, which stays one, and waits until they play on their own.
    void standDown(const std::shared_ptr<Tap>& tap);

    /// Gives back all programs and waits until they have their sound again.
    void releaseAll();

    /// Takes all out of the server. After all that plays them is gone.
    void destroyAll();

    void update();
    void serverLost();

    /// Null when there is none.
    [[nodiscard]] std::shared_ptr<Tap> withUUID(const std::string& uuid) const;

    /// Nothing when there is no such tap. `rate` is the graph's, in Hz.
    [[nodiscard]] std::optional<PropertyAnswer>
    read(AudioObjectID object, const AudioObjectPropertyAddress& address, double rate) const;

private:
    [[nodiscard]] std::shared_ptr<Tap> withId(AudioObjectID id) const;
    [[nodiscard]] OSStatus check(const CATapDescription& description) const;
    [[nodiscard]] OSStatus checkStreams(const CATapDescription& description) const;
    void waitUntilUnfed(const std::vector<std::shared_ptr<Tap>>& taps);
    void removeUnused();

    Surroundings& surroundings_;
    TapOwner owner_;
    std::vector<std::shared_ptr<Tap>> taps_;
};

} // namespace orvanta::pipewire
