#include "core/dsp/VectorOperations.h"

#include "core/dsp/FlushDenormals.h"
#include "tests/core/dsp/LevelSignals.h"
#include "tests/support/reference/Levels.h"

#include <gtest/gtest.h>

#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace orvanta {
namespace {

std::vector<float> noise(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> amplitude(-1.0F, 1.0F);
    std::vector<float> samples(count);
    for (float& sample : samples)
        sample = amplitude(random);
    return samples;
}

TEST(VectorOperations, MultiplyByAScalarAtEveryCount) {
    for (std::size_t n = 0; n < 70; ++n) {
        const auto a = noise(n, 1);
        std::vector<float> c(n);
        vDSP::vsmul(a.data(), 1, 0.3F, c.data(), 1, n);
        for (std::size_t k = 0; k < n; ++k)
            ASSERT_EQ(c[k], a[k] * 0.3F) << "element " << k << " of " << n;
    }
}

TEST(VectorOperations, MultiplyInPlaceTouchesOnlyTheElementsOfTheStride) {
    std::vector<float> samples{1, 2, 3, 4, 5, 6, 7};
    vDSP::vsmul(samples.data() + 1, 3, 10.0F, samples.data() + 1, 3, 2);
    EXPECT_EQ(samples, (std::vector<float>{1, 20, 3, 4, 50, 6, 7}));
}

TEST(VectorOperations, CopyOfFiniteNumbersKeepsEveryBitOfThemAndNothingElse) {
    for (std::size_t n = 0; n < 20; ++n) {
        std::vector<float> a = noise(n, 4);
        if (n > 5) {
            a[0] = std::numeric_limits<float>::quiet_NaN();
            a[2] = -std::numeric_limits<float>::infinity();
            a[3] = FLT_MAX;
            a[4] = FLT_TRUE_MIN;
            a[n - 1] = std::numeric_limits<float>::infinity();
        }
        std::vector<float> c(n, 7.0F);
        vDSP::copyFinite(a.data(), c.data(), n);
        for (std::size_t k = 0; k < n; ++k)
            ASSERT_EQ(c[k], std::isfinite(a[k]) ? a[k] : 0.0F) << k << " of " << n;
    }
    const float negativeZero = -0.0F;
    float copied = 1.0F;
    vDSP::copyFinite(&negativeZero, &copied, 1);
    EXPECT_TRUE(std::signbit(copied));
}

TEST(VectorOperations, LargestMagnitudeFindsThePeakAtEveryOffsetAndCount) {
    for (std::size_t n = 1; n < 70; ++n)
        for (std::size_t peak = 0; peak < n; ++peak) {
            auto samples = noise(n, 2);
            samples[peak] = -3.5F;
            ASSERT_EQ(vDSP::maxmgv(samples.data(), n), 3.5F) << peak << " of " << n;
        }
    EXPECT_EQ(vDSP::maxmgv(nullptr, 0), 0.0F);
}

TEST(VectorOperations, RootMeanSquareAgreesWithASumInDoublePrecision) {
    for (const std::size_t n : {1U, 2U, 3U, 15U, 16U, 17U, 255U, 1024U, 4096U}) {
        const auto samples = noise(n, 3);
        double sum = 0;
        for (const float sample : samples)
            sum += static_cast<double>(sample) * static_cast<double>(sample);
        const double expected = std::sqrt(sum / static_cast<double>(n));
        EXPECT_NEAR(static_cast<double>(vDSP::levels(samples.data(), n).rms), expected,
                    6e-7 * expected);
    }
    EXPECT_EQ(vDSP::levels(nullptr, 0).rms, 0.0F);
}

TEST(VectorOperations, MeasurementsPassOverWhatIsNoFiniteNumber) {
    for (const float poison :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity()})
        for (std::size_t place = 0; place < 40; ++place) {
            std::vector<float> samples(40, 0.5F);
            samples[place] = poison;
            ASSERT_EQ(vDSP::maxmgv(samples.data(), samples.size()), 0.5F);
            ASSERT_FLOAT_EQ(vDSP::levels(samples.data(), samples.size()).rms,
                            0.5F * std::sqrt(39.0F / 40.0F));
        }
}

TEST(VectorOperations, RootMeanSquareOfHugeNumbersStaysFinite) {
    const std::vector<float> samples(100, 3e38F);
    EXPECT_FLOAT_EQ(vDSP::levels(samples.data(), samples.size()).rms, 3e38F);
    EXPECT_EQ(vDSP::maxmgv(samples.data(), samples.size()), 3e38F);
}

void expectPlainLevels(const Kernels& kernels, float amplitude) {
    for (const std::size_t n : test::blockLengths()) {
        const auto samples = test::roughNoise(n, amplitude, static_cast<unsigned>(n));
        const LevelSums levels = kernels.level.measure(samples.data(), n);
        ASSERT_EQ(levels.squares, reference::sumOfSquares(samples)) << n;
        ASSERT_EQ(levels.peak, reference::peak(samples)) << n;
    }
}

TEST(VectorOperations, MeasureTheBitsOfThePlainLoopsInEveryInstructionSet) {
    for (const Kernels* const kernels : test::everyKernels()) {
        ASSERT_NO_FATAL_FAILURE(expectPlainLevels(*kernels, 1.0F));
        const FlushDenormals flushed;
        ASSERT_NO_FATAL_FAILURE(expectPlainLevels(*kernels, 1.0F));
        ASSERT_NO_FATAL_FAILURE(expectPlainLevels(*kernels, 1e-20F));
    }
}

TEST(VectorOperations, LevelsAreRootMeanSquareAndLargestMagnitudeInOnePass) {
    for (std::size_t n = 1; n < 100; ++n) {
        const auto samples = noise(n, 5);
        const vDSP::Levels levels = vDSP::levels(samples.data(), n);
        ASSERT_EQ(levels.rms, reference::rms(samples)) << n;
        ASSERT_EQ(levels.peak, reference::peak(samples)) << n;
        ASSERT_EQ(vDSP::maxmgv(samples.data(), n), levels.peak) << n;
    }
    EXPECT_EQ(vDSP::levels(nullptr, 0).rms, 0.0F);
    EXPECT_EQ(vDSP::levels(nullptr, 0).peak, 0.0F);
    const std::vector<float> huge(100, 3e38F);
    EXPECT_FLOAT_EQ(vDSP::levels(huge.data(), huge.size()).rms, 3e38F);
}

void expectPlainCopiesAndProducts(const Kernels& kernels) {
    for (const std::size_t n : test::blockLengths()) {
        const auto samples = test::roughNoise(n, 1.0F, static_cast<unsigned>(n));
        auto finite = samples;
        for (float& sample : finite)
            sample = std::isfinite(sample) ? sample : 0.0F;
        auto scaled = finite;
        for (float& sample : scaled)
            sample = sample * 0.3F;

        std::vector<float> copy(n);
        kernels.level.copyFinite(samples.data(), copy.data(), n);
        ASSERT_EQ(test::bitsOf(copy), test::bitsOf(finite)) << n;
        auto inPlace = samples;
        kernels.level.copyFinite(inPlace.data(), inPlace.data(), n);
        ASSERT_EQ(test::bitsOf(inPlace), test::bitsOf(finite)) << n;
        kernels.level.scale(finite.data(), 0.3F, copy.data(), n);
        ASSERT_EQ(test::bitsOf(copy), test::bitsOf(scaled)) << n;
        kernels.level.scale(finite.data(), 0.3F, finite.data(), n);
        ASSERT_EQ(test::bitsOf(finite), test::bitsOf(scaled)) << n;
    }
}

TEST(VectorOperations, CopyAndMultiplyTheBitsOfThePlainLoopsInEveryInstructionSet) {
    for (const Kernels* const kernels : test::everyKernels()) {
        ASSERT_NO_FATAL_FAILURE(expectPlainCopiesAndProducts(*kernels));
        const FlushDenormals flushed;
        ASSERT_NO_FATAL_FAILURE(expectPlainCopiesAndProducts(*kernels));
    }
}

} // namespace
} // namespace orvanta
