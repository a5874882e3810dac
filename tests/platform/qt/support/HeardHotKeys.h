#pragma once

#include "core/platform/HotKeyCenter.h"
#include "tests/platform/qt/support/EventLoop.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace orvanta::test {

/// Registers hot keys with a center and keeps the ids of those that are pressed.
class HeardHotKeys {
public:
    explicit HeardHotKeys(HotKeyCenter& center) : center_(center) {
        center_.installHandler([this](const HotKeyEvent* event) { return hear(event); }, handler_);
    }

    HeardHotKeys(const HeardHotKeys&) = delete;
    HeardHotKeys& operator=(const HeardHotKeys&) = delete;

    ~HeardHotKeys() { center_.removeHandler(handler_); }

    OSStatus add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id) {
        auto reference = HotKeyCenter::Reference::none;
        const OSStatus status =
            center_.registerHotKey(keyCode, modifiers, {.signature = 7, .id = id}, reference);
        if (status == noErr)
            references_.emplace_back(id, reference);
        return status;
    }

    void remove(std::uint32_t id) {
        for (const auto& [each, reference] : references_)
            if (each == id)
                center_.unregisterHotKey(reference);
        std::erase_if(references_, [=](const auto& each) { return each.first == id; });
    }

    /// Runs the event loop until this id is heard, which it must be as the last; false when it is
    /// not for long.
    [[nodiscard]] bool hearsLast(std::uint32_t id) {
        return eventuallyInEventLoop(Seconds(20),
                                     [&] { return !heard.empty() && heard.back() == id; });
    }

    std::vector<std::uint32_t> heard;

private:
    OSStatus hear(const HotKeyEvent* event) {
        HotKeyID id;
        if (event == nullptr || event->getHotKeyID(id) != noErr || id.signature != 7)
            return eventInternalErr;
        heard.push_back(id.id);
        return noErr;
    }

    HotKeyCenter& center_;
    HotKeyCenter::HandlerReference handler_ = HotKeyCenter::HandlerReference::none;
    std::vector<std::pair<std::uint32_t, HotKeyCenter::Reference>> references_;
};

} // namespace orvanta::test
