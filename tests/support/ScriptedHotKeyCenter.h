#pragma once

#include "core/platform/HotKeyCenter.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace orvanta::test {

/// A press that tells its id, or a status in place of it.
class ScriptedHotKeyEvent final : public HotKeyEvent {
public:
    explicit ScriptedHotKeyEvent(HotKeyID id) : id_(id) {}

    explicit ScriptedHotKeyEvent(OSStatus status) : status_(status) {}

    [[nodiscard]] OSStatus getHotKeyID(HotKeyID& outID) const override {
        if (status_ == noErr)
            outID = id_;
        return status_;
    }

private:
    HotKeyID id_;
    OSStatus status_ = noErr;
};

/// A desktop whose keys the test presses. Presses may come from any thread.
class ScriptedHotKeyCenter final : public HotKeyCenter {
public:
    struct Registration {
        std::uint32_t keyCode = 0;
        std::uint32_t modifiers = 0;
        HotKeyID id;
        Reference reference = Reference::none;
    };

    OSStatus installHandler(Handler handler, HandlerReference& outReference) override {
        calls.emplace_back("install handler");
        if (statusOfInstallation != noErr)
            return statusOfInstallation;
        const std::scoped_lock guard(mutex_);
        outReference = HandlerReference{++lastReference_};
        handlers_.emplace(handlers_.begin(), outReference, std::move(handler));
        return noErr;
    }

    /// Waits for a handler that is being called.
    void removeHandler(HandlerReference reference) override {
        const std::scoped_lock guard(mutex_);
        calls.emplace_back("remove handler");
        std::erase_if(handlers_, [=](const auto& each) { return each.first == reference; });
    }

    OSStatus registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, const HotKeyID& id,
                            Reference& outReference) override {
        calls.push_back("register " + std::to_string(keyCode) + " with " +
                        std::to_string(modifiers) + " as " + std::to_string(id.id));
        if (statusOfNextRegistration != noErr)
            return std::exchange(statusOfNextRegistration, noErr);
        if (givesReferences)
            outReference = Reference{++lastReference_};
        registrations.push_back({keyCode, modifiers, id, outReference});
        return noErr;
    }

    void unregisterHotKey(Reference reference) override {
        for (const Registration& each : registrations)
            if (each.reference == reference)
                calls.push_back("unregister " + std::to_string(each.id.id));
        std::erase_if(registrations,
                      [=](const Registration& each) { return each.reference == reference; });
    }

    /// The newest handler's answer, and where that is `eventNotHandledErr` the next one's.
    OSStatus deliver(const HotKeyEvent* event) {
        const std::scoped_lock guard(mutex_);
        OSStatus status = eventNotHandledErr;
        for (const auto& [reference, handler] : handlers_)
            if (status == eventNotHandledErr)
                status = handler(event);
        return status;
    }

    OSStatus press(HotKeyID id) {
        const ScriptedHotKeyEvent event(id);
        return deliver(&event);
    }

    /// With the signature of this program.
    OSStatus press(std::uint32_t id) {
        return press({.signature = fourCharCode("ORVT"), .id = id});
    }

    /// In order, handlers included.
    std::vector<std::string> calls;
    std::vector<Registration> registrations;
    OSStatus statusOfInstallation = noErr;
    OSStatus statusOfNextRegistration = noErr;
    bool givesReferences = true;

private:
    std::mutex mutex_;
    /// The newest first.
    std::vector<std::pair<HandlerReference, Handler>> handlers_;
    std::uint64_t lastReference_ = 0;
};

} // namespace orvanta::test
