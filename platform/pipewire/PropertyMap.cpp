#include "platform/pipewire/PropertyMap.h"

#include <spa/utils/dict.h>

#include <charconv>

namespace orvanta::pipewire {

std::optional<std::uint32_t> parseNumber(std::string_view text) {
    std::uint32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc{} || stopped != end)
        return std::nullopt;
    return value;
}

void PropertyMap::merge(const spa_dict* dict) {
    if (dict == nullptr)
        return;
    for (std::uint32_t index = 0; index < dict->n_items; ++index) {
        const spa_dict_item& item = dict->items[index];
        if (item.key == nullptr)
            continue;
        if (item.value == nullptr)
            entries_.erase(item.key);
        else
            entries_[item.key] = item.value;
    }
}

void PropertyMap::set(std::string_view key, std::string_view value) {
    entries_.insert_or_assign(std::string(key), std::string(value));
}

const std::string& PropertyMap::text(std::string_view key) const {
    static const std::string none;
    const auto found = entries_.find(key);
    return found == entries_.end() ? none : found->second;
}

std::optional<std::uint32_t> PropertyMap::number(std::string_view key) const {
    return parseNumber(text(key));
}

bool PropertyMap::isTrue(std::string_view key) const {
    const std::string& value = text(key);
    return value == "true" || value == "1";
}

} // namespace orvanta::pipewire
