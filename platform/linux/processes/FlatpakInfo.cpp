#include "platform/linux/processes/FlatpakInfo.h"

#include "platform/linux/desktop/KeyFile.h"

namespace orvanta::desktop {

std::string flatpakIDInInfo(std::string_view text) {
    KeyFileReader lines(text);
    while (const auto line = lines.next())
        if (line->group == "Application" && line->key == "name" && isDisplayText(line->value))
            return std::string(line->value);
    return {};
}

} // namespace orvanta::desktop
