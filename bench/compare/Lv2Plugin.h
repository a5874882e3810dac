#pragma once

#include "bench/compare/AtomBuffer.h"
#include "bench/compare/Lv2Features.h"
#include "bench/compare/Lv2World.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta::compare {

/// One running instance of a plug-in. Ports are named by their symbols, so that a release which
/// moves or renames one is found out instead of measured with other settings; everything that does
/// not fit throws.
class Lv2Plugin {
public:
    /// All controls at their defaults, no audio connected, optional event ports left open.
    Lv2Plugin(Lv2World& world, const std::string& uri, double sampleRate, std::size_t maxBlock);
    ~Lv2Plugin();
    Lv2Plugin(const Lv2Plugin&) = delete;
    Lv2Plugin& operator=(const Lv2Plugin&) = delete;

    /// A control input, within its own range.
    void set(const std::string& symbol, double value);
    /// The same by the name of one of its values.
    void choose(const std::string& symbol, std::string_view label);
    void connect(const std::string& symbol, float* samples);

    /// From now on it may run.
    void activate();
    void run(std::size_t frames) noexcept;

private:
    [[nodiscard]] const LilvPort* port(const std::string& symbol) const;
    [[nodiscard]] bool is(const LilvPort* port, const char* kind) const;
    float& controlInput(const std::string& symbol);
    void refuseUnknownFeatures() const;
    void connectPort(std::uint32_t index);

    Lv2World& world_;
    const std::string uri_;
    const LilvPlugin* const plugin_;
    const Lv2Features features_;
    /// By port, whatever its kind; plug-ins hold pointers into it.
    std::vector<float> controls_;
    std::deque<AtomBuffer> atoms_;
    InstancePtr instance_;
    bool isActive_ = false;
};

} // namespace orvanta::compare
