#include "platform/pipewire/DefaultSinkName.h"

#include <spa/utils/json.h>

#include <array>

namespace orvanta::pipewire {

std::string defaultSinkName(std::string_view json) {
    std::array<spa_json, 2> scanners{};
    spa_json_init(scanners.data(), json.data(), json.size());
    if (spa_json_enter_object(scanners.data(), &scanners[1]) <= 0)
        return {};

    std::array<char, 256> key{};
    while (spa_json_get_string(&scanners[1], key.data(), static_cast<int>(key.size())) > 0) {
        const char* value = nullptr;
        const int length = spa_json_next(&scanners[1], &value);
        if (length <= 0)
            return {};
        if (std::string_view(key.data()) != "name")
            continue;
        if (spa_json_is_string(value, length) == 0)
            return {};
        std::string name(static_cast<std::size_t>(length) + 1, '\0');
        if (spa_json_parse_stringn(value, length, name.data(), static_cast<int>(name.size())) <= 0)
            return {};
        name.resize(std::char_traits<char>::length(name.c_str()));
        return name;
    }
    return {};
}

} // namespace orvanta::pipewire
