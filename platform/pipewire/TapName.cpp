#include "platform/pipewire/TapName.h"

#include "platform/pipewire/ProcessIdentity.h"

#include <charconv>
#include <unistd.h>

namespace orvanta::pipewire {
namespace {

constexpr std::string_view kPrefix = "orvanta-tap-";

/// Reads a number and the hyphen behind it off the front of `text`.
template <class Number>
bool takeNumber(std::string_view& text, Number& number) {
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stopped == end || *stopped != '-')
        return false;
    text.remove_prefix(static_cast<std::size_t>(stopped - text.data()) + 1);
    return true;
}

} // namespace

TapOwner currentTapOwner() {
    const pid_t pid = ::getpid();
    return {pid, processStartTime(pid).value_or(0)};
}

std::string makeTapName(const TapOwner& owner, std::uint32_t number) {
    return std::string(kPrefix) + std::to_string(owner.pid) + '-' +
           std::to_string(owner.startTime) + '-' + std::to_string(number);
}

bool isTapName(std::string_view name) {
    return name.substr(0, kPrefix.size()) == kPrefix;
}

std::optional<TapOwner> tapOwner(std::string_view name) {
    if (!isTapName(name))
        return std::nullopt;
    name.remove_prefix(kPrefix.size());
    TapOwner owner;
    if (!takeNumber(name, owner.pid) || !takeNumber(name, owner.startTime) || owner.pid <= 0)
        return std::nullopt;
    return owner;
}

bool isAlive(const TapOwner& owner) {
    return processStartTime(owner.pid) == owner.startTime;
}

} // namespace orvanta::pipewire
