#include "core/dsp/kernels/Kernels.h"

namespace orvanta {

extern const Kernels kBaselineKernels;
#if defined(__x86_64__)
extern const Kernels kAVX2Kernels;
#endif

bool isSupported(InstructionSet set) noexcept {
    switch (set) {
    case InstructionSet::baseline:
        return true;
    case InstructionSet::avx2:
#if defined(__x86_64__)
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") != 0;
#else
        return false;
#endif
    }
    return false;
}

const Kernels* kernelsFor(InstructionSet set) noexcept {
    if (!isSupported(set))
        return nullptr;
#if defined(__x86_64__)
    if (set == InstructionSet::avx2)
        return &kAVX2Kernels;
#endif
    return &kBaselineKernels;
}

namespace {

const Kernels& widest() noexcept {
    const Kernels* const wide = kernelsFor(InstructionSet::avx2);
    return wide != nullptr ? *wide : kBaselineKernels;
}

/// Before `main`; what is initialised earlier still asks `kernelsFor`.
const Kernels& chosen = widest();

} // namespace

const Kernels& kernels() noexcept {
    return chosen;
}

} // namespace orvanta
