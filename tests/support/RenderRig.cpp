#include "tests/support/RenderRig.h"

#ifdef ORVANTA_HAS_REALTIME_TRAP
#include "tests/support/RealTimeTrap.h"

#include <gtest/gtest.h>
#endif

namespace orvanta::test {

OSStatus RenderRig::render(Buffers& input, Buffers& output) {
    const AudioBufferList* const in = input.list();
    AudioBufferList* const out = output.list();
#ifdef ORVANTA_HAS_REALTIME_TRAP
    const std::uint64_t sections = realTimeSectionsEntered();
    const OSStatus status = tapRenderCallback(in, out, &ref_);
    EXPECT_GT(realTimeSectionsEntered(), sections) << "the trap stands around the callback";
    return status;
#else
    return tapRenderCallback(in, out, &ref_);
#endif
}

std::vector<float> RenderRig::render(const std::vector<float>& samples) {
    Buffers input;
    Buffers output;
    input.add(1, samples);
    output.add(1, std::vector<float>(samples.size(), -9.0F));
    render(input, output);
    return output[0];
}

std::vector<std::string> RenderRig::logTexts() {
    firstCallbackLog_.flush();
    return log_.texts();
}

} // namespace orvanta::test
