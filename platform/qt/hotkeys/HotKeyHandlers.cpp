#include "platform/qt/hotkeys/HotKeyHandlers.h"

namespace orvanta {
namespace {

class PressedHotKey final : public HotKeyEvent {
public:
    explicit PressedHotKey(const HotKeyID& id) : id_(id) {}

    [[nodiscard]] OSStatus getHotKeyID(HotKeyID& outID) const override {
        outID = id_;
        return noErr;
    }

private:
    const HotKeyID id_;
};

} // namespace

HotKeyCenter::HandlerReference HotKeyHandlers::add(HotKeyCenter::Handler handler) {
    const HotKeyCenter::HandlerReference reference{++lastReference_};
    handlers_.emplace(handlers_.begin(), reference, std::move(handler));
    return reference;
}

void HotKeyHandlers::remove(HotKeyCenter::HandlerReference reference) {
    std::erase_if(handlers_, [=](const auto& each) { return each.first == reference; });
}

void HotKeyHandlers::tell(const HotKeyID& id) const {
    const PressedHotKey event(id);
    for (const auto& [reference, handler] : handlers_)
        if (handler(&event) != eventNotHandledErr)
            return;
}

} // namespace orvanta
