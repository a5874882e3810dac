#pragma once

#include <cstdint>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace orvanta {

/// While it lives, the current thread computes with subnormal numbers as zero, on input and on
/// output; on the way out the thread gets its own mode back. The IO thread belongs to the audio
/// system, so nothing may be left changed. Without this a filter that rings out spends its time in
/// numbers that no one hears and that cost several times the work.
class FlushDenormals {
public:
#if defined(__SSE__)
    FlushDenormals() noexcept : saved_(_mm_getcsr()) {
        _mm_setcsr(saved_ | kFlushAndZero);
    }

    ~FlushDenormals() {
        _mm_setcsr(saved_);
    }

private:
    static constexpr unsigned kFlushAndZero = 0x8040;
    unsigned saved_;
#elif defined(__aarch64__)
    FlushDenormals() noexcept : saved_(read()) {
        write(saved_ | kFlushToZero);
    }

    ~FlushDenormals() {
        write(saved_);
    }

private:
    static constexpr std::uint64_t kFlushToZero = std::uint64_t{1} << 24U;

    static std::uint64_t read() noexcept {
        std::uint64_t control = 0;
        asm volatile("mrs %0, fpcr" : "=r"(control));
        return control;
    }

    static void write(std::uint64_t control) noexcept {
        asm volatile("msr fpcr, %0" ::"r"(control));
    }

    std::uint64_t saved_;
#else
#error "Tell how this processor flushes subnormal numbers to zero"
#endif

public:
    FlushDenormals(const FlushDenormals&) = delete;
    FlushDenormals& operator=(const FlushDenormals&) = delete;
};

} // namespace orvanta
