#pragma once

#include "bench/compare/Contender.h"
#include "bench/compare/StereoBlock.h"

namespace orvanta::compare {

/// One that takes its channels in separate buffers. Its result is in `output()`, which for one that
/// works in place is the same memory as the input.
class PlanarContender : public Contender {
public:
    void load(const Signal& signal, std::size_t first, std::size_t frames) noexcept override;
    void appendResult(std::size_t frames, std::vector<float>& left,
                      std::vector<float>& right) const override;

protected:
    [[nodiscard]] StereoView input() noexcept { return StereoView(input_); }

    [[nodiscard]] virtual const StereoBlock& output() const noexcept { return input_; }

private:
    StereoBlock input_;
};

} // namespace orvanta::compare
