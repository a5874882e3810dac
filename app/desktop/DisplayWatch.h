#pragma once

#include <QtGlobal>

namespace orvanta {

/// While the toolkit looks for the display: where there is none that answers, the toolkit would end
/// the program as a crash does. With this it ends with a sentence and exit code 1.
class DisplayWatch {
public:
    DisplayWatch();
    ~DisplayWatch();
    DisplayWatch(const DisplayWatch&) = delete;
    DisplayWatch& operator=(const DisplayWatch&) = delete;

private:
    const QtMessageHandler before_;
};

} // namespace orvanta
