#pragma once

#include "tests/e2e/support/AudioGraph.h"
#include "tests/e2e/support/Capture.h"

#include <memory>

namespace orvanta::test {

/// Records any number of output ports side by side in the same graph cycles, so that what lies at
/// one index was heard at one time, to the sample.
class AlignedRecorder {
public:
    struct Settings {
        Seconds capacity{40};
        /// Whether recording keeps the recorded nodes running; without, silence of a sleeping graph
        /// is not recorded.
        bool keepsGraphAwake = true;
    };

    /// `inputs` mono inputs that hear nothing yet. Starts at once; what comes after `capacity` is
    /// not kept.
    AlignedRecorder(const AudioGraph& graph, std::size_t inputs, Settings settings);

    AlignedRecorder(const AudioGraph& graph, std::size_t inputs)
        : AlignedRecorder(graph, inputs, Settings()) {}

    AlignedRecorder(const AlignedRecorder&) = delete;
    AlignedRecorder& operator=(const AlignedRecorder&) = delete;
    ~AlignedRecorder();

    /// Lets one input hear one more port.
    void listen(std::size_t input, std::uint32_t outputPort) const;
    /// Input `first` hears the first port, the following ones the rest.
    void listen(std::size_t first, const std::vector<std::uint32_t>& outputPorts) const;

    /// Frames recorded so far.
    [[nodiscard]] std::size_t frames() const;
    /// Waits until this many more frames are recorded; throws when they do not come.
    void record(std::size_t moreFrames) const;

    /// Ends the recording. To be called once.
    Capture finish();

private:
    class Filter;
    const AudioGraph& graph_;
    std::vector<std::uint32_t> inputPorts_;
    std::unique_ptr<Filter> filter_;
};

} // namespace orvanta::test
