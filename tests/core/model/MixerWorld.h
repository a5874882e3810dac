#pragma once

#include "tests/core/model/MixerReference.h"
#include "tests/support/model/ModelRig.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace orvanta::test {

/// A running mixer model among fakes, its reference, and all that may happen to the two. Devices
/// are the speakers, which are the default and stay, and what is plugged in.
class MixerWorld : public ModelRig {
public:
    /// The processes that there can be: few, so that they meet.
    static constexpr std::array<std::int32_t, 6> kPIDs{7, 8, 9, 10, 11, 12};

    /// What a process may be an instance of. Two of them have one name.
    struct Program {
        std::string name;
        std::optional<std::string> bundleIdentifier;
    };

    static const std::array<Program, 4> kPrograms;

    MixerWorld();

    /// A command to both.
    template <class Command>
    void command(Command give) {
        give(*model);
        give(reference);
    }

    /// The listed application, or one that was never listed.
    [[nodiscard]] AudioApp application(std::int32_t pid) const;

    void appStarts(std::int32_t pid, std::size_t program, bool isPlaying);
    void appPlays(std::int32_t pid, bool isPlaying);
    void appIsRenamed(std::int32_t pid, const std::string& name);
    /// The process gives way to another one of the same program, if it was there and that not.
    void appMoves(std::int32_t from, std::int32_t to);
    void plug(const std::string& uid);
    void unplug(const std::string& uid);
    void timePasses(Seconds time);
    /// The process plays, then falls silent for so long, the console being open all the time.
    void fallsSilent(std::int32_t pid, Seconds silence);
    /// The program ends with all its taps and starts anew.
    void restart();
    /// Of the profiles that there are the one at this place, or one that is in no store.
    [[nodiscard]] AudioProfile profile(std::size_t place) const;
    void saveProfile(const std::string& name);

    /// What the model has otherwise than the reference, one thing a line; empty when nothing.
    [[nodiscard]] std::string differences();

    MixerReference reference{*this};

private:
    [[nodiscard]] AudioApp* listed(std::int32_t pid);
    [[nodiscard]] std::string processDifferences() const;
    [[nodiscard]] std::string tapDifferences() const;
    [[nodiscard]] std::string storeDifferences() const;
    [[nodiscard]] std::string deviceDifferences();
    [[nodiscard]] std::string timerDifferences() const;
    [[nodiscard]] std::string announcementDifferences() const;
    void observe();

    int peakAnnouncements_ = 0;
    int rmsAnnouncements_ = 0;
    std::vector<Observation> observations_;
};

} // namespace orvanta::test
