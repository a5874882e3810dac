#pragma once

#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvanta::compare {

/// Memory of a port for events. Nothing is ever sent to a plug-in; what one sends is dropped.
class AtomBuffer {
public:
    static constexpr std::size_t kCapacity = 32768;

    AtomBuffer(bool isInput, LV2_URID sequence, LV2_URID chunk) noexcept
        : isInput_(isInput), sequence_(sequence), chunk_(chunk) {}

    /// Before every run: an input is an empty sequence, an output tells the room it has.
    void prepare() noexcept {
        // The events' unit lies behind the header and stays 0: frames.
        auto* const atom = reinterpret_cast<LV2_Atom*>(memory_.data());
        if (isInput_)
            *atom = {sizeof(LV2_Atom_Sequence_Body), sequence_};
        else
            *atom = {kCapacity - sizeof(LV2_Atom), chunk_};
    }

    [[nodiscard]] void* data() noexcept { return memory_.data(); }

private:
    bool isInput_;
    LV2_URID sequence_;
    LV2_URID chunk_;
    std::array<std::uint64_t, kCapacity / sizeof(std::uint64_t)> memory_{};
};

} // namespace orvanta::compare
