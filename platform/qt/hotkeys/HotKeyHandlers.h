#pragma once

#include "core/platform/HotKeyCenter.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace orvanta {

/// The handlers of a center whose operations and presses share one thread.
class HotKeyHandlers {
public:
    [[nodiscard]] HotKeyCenter::HandlerReference add(HotKeyCenter::Handler handler);
    void remove(HotKeyCenter::HandlerReference reference);

    /// Tells of a press, the newest handler first, until one does not leave it to the next.
    void tell(const HotKeyID& id) const;

private:
    /// The newest first.
    std::vector<std::pair<HotKeyCenter::HandlerReference, HotKeyCenter::Handler>> handlers_;
    std::uint64_t lastReference_ = 0;
};

} // namespace orvanta
