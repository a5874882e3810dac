#include "platform/pipewire/PropertyListeners.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>

namespace orvanta::pipewire {
namespace {

constexpr AudioObjectPropertyAddress devices{kAudioHardwarePropertyDevices};
constexpr AudioObjectPropertyAddress processes{kAudioHardwarePropertyProcessObjectList};

struct Listener {
    std::atomic<int> calls{0};
    std::atomic<bool> inCall{false};
    std::atomic<bool> holds{false};

    static OSStatus told(AudioObjectID, const AudioObjectPropertyAddress&, void* clientData) {
        auto& self = *static_cast<Listener*>(clientData);
        self.inCall = true;
        while (self.holds)
            std::this_thread::yield();
        ++self.calls;
        self.inCall = false;
        return noErr;
    }
};

bool eventually(const auto& isSo) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

TEST(PropertyListeners, AreToldOfTheirPropertyOnly) {
    PropertyListeners listeners;
    Listener concerned;
    Listener other;
    listeners.add(1, devices, Listener::told, &concerned);
    listeners.add(1, processes, Listener::told, &other);
    listeners.add(2, devices, Listener::told, &other);
    listeners.notify(1, devices);
    EXPECT_TRUE(eventually([&] { return concerned.calls == 1; }));
    EXPECT_EQ(other.calls, 0);
}

TEST(PropertyListeners, AreToldOnceOfChangesThatWait) {
    PropertyListeners listeners;
    Listener listener;
    listener.holds = true;
    listeners.add(1, devices, Listener::told, &listener);
    listeners.notify(1, devices);
    EXPECT_TRUE(eventually([&] { return listener.inCall.load(); }));
    for (int change = 0; change < 10; ++change)
        listeners.notify(1, devices);
    listener.holds = false;
    EXPECT_TRUE(eventually([&] { return listener.calls == 2; }));
}

TEST(PropertyListeners, AreNotCalledAfterTheirRemoval) {
    PropertyListeners listeners;
    for (int round = 0; round < 200; ++round) {
        Listener listener;
        listeners.add(1, devices, Listener::told, &listener);
        listeners.notify(1, devices);
        EXPECT_EQ(listeners.remove(1, devices, Listener::told, &listener), noErr);
        EXPECT_FALSE(listener.inCall);
    }
}

TEST(PropertyListeners, MayRemoveThemselves) {
    struct Once {
        PropertyListeners listeners;
        std::atomic<int> calls{0};

        static OSStatus told(AudioObjectID object, const AudioObjectPropertyAddress& address,
                             void* clientData) {
            auto& self = *static_cast<Once*>(clientData);
            self.listeners.remove(object, address, told, clientData);
            ++self.calls;
            return noErr;
        }
    } once;

    once.listeners.add(1, devices, Once::told, &once);
    once.listeners.notify(1, devices);
    EXPECT_TRUE(eventually([&] { return once.calls == 1; }));
    EXPECT_NE(once.listeners.remove(1, devices, Once::told, &once), noErr);
}

TEST(PropertyListeners, RefuseNone) {
    PropertyListeners listeners;
    EXPECT_NE(listeners.add(1, devices, nullptr, nullptr), noErr);
}

} // namespace
} // namespace orvanta::pipewire
