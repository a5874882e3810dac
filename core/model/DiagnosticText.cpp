#include "core/model/DiagnosticText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace orvanta {

std::string diagnosticText(float value) {
    std::string text = fmt::format("{}", value);
    if (text.find_first_not_of("-0123456789") == std::string::npos)
        text += ".0";
    return text;
}

std::string diagnosticText(const PIDSet& pids) {
    return fmt::format("[{}]", fmt::join(pids, ", "));
}

std::string diagnosticText(const std::vector<AudioApp>& apps) {
    std::vector<std::string> texts;
    texts.reserve(apps.size());
    for (const AudioApp& app : apps)
        texts.push_back(fmt::format("{}:{}", app.name, app.pid));
    return fmt::format("{}", fmt::join(texts, ","));
}

} // namespace orvanta
