#include "bench/compare/Table.h"

#include <fmt/format.h>

namespace orvanta::compare {
namespace {

std::string cell(const Stage& stage, const std::vector<Timing>& timings, std::size_t entry) {
    std::string text =
        fmt::format("{:.2f} ({:.2f})", timings[entry].median, timings[entry].minimum);
    if (stage.entries[entry].isOurs)
        return text;
    for (std::size_t ours = 0; ours < timings.size() && stage.entries[ours].isOurs; ++ours)
        text += fmt::format("{} 1:{:.1f}", ours == 0 ? " =" : ",",
                            timings[entry].median / timings[ours].median);
    return text;
}

} // namespace

std::string table(const StageTimings& measured, const std::vector<std::size_t>& blockLengths) {
    const Stage& stage = measured.stage;
    std::string text = fmt::format("| {} |", stage.title);
    std::string rule = "|---|";
    for (const std::size_t frames : blockLengths) {
        text += fmt::format(" {} |", frames);
        rule += "---|";
    }
    text += fmt::format("\n{}\n", rule);
    for (std::size_t entry = 0; entry < stage.entries.size(); ++entry) {
        text += fmt::format("| {} |", stage.entries[entry].name);
        for (const auto& timings : measured.timings)
            text += fmt::format(" {} |", cell(stage, timings, entry));
        text += '\n';
    }
    return text;
}

} // namespace orvanta::compare
