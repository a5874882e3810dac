#pragma once

/// Defined by the allocation and lock trap where it is linked or preloaded (tests/support); absent
/// otherwise, and then a section costs a comparison with null.
extern "C" {
__attribute__((weak)) void orvantaRealTimeSectionEntered() noexcept;
__attribute__((weak)) void orvantaRealTimeSectionLeft() noexcept;
}

namespace orvanta {

/// Marks the time in which the current thread must not allocate, lock or block.
class RealTimeSection {
public:
    RealTimeSection() noexcept {
        if (orvantaRealTimeSectionEntered != nullptr)
            orvantaRealTimeSectionEntered();
    }

    ~RealTimeSection() {
        if (orvantaRealTimeSectionLeft != nullptr)
            orvantaRealTimeSectionLeft();
    }

    RealTimeSection(const RealTimeSection&) = delete;
    RealTimeSection& operator=(const RealTimeSection&) = delete;
};

} // namespace orvanta
