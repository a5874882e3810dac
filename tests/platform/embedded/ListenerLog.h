#pragma once

#include "core/platform/AudioHardware.h"

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace orvanta::test {

/// Listens and writes down what it hears: "1 dev#".
class ListenerLog {
public:
    static OSStatus hear(AudioObjectID object, const AudioObjectPropertyAddress& address,
                         void* clientData) {
        static_cast<ListenerLog*>(clientData)->note(object, address);
        return noErr;
    }

    OSStatus listen(AudioHardware& hardware, AudioObjectID object,
                    const AudioObjectPropertyAddress& address) {
        return hardware.addPropertyListener(object, address, &ListenerLog::hear, this);
    }

    OSStatus stopListening(AudioHardware& hardware, AudioObjectID object,
                           const AudioObjectPropertyAddress& address) {
        return hardware.removePropertyListener(object, address, &ListenerLog::hear, this);
    }

    /// What was heard since the last question.
    std::vector<std::string> heard() {
        const std::scoped_lock guard(mutex_);
        return std::exchange(heard_, {});
    }

private:
    void note(AudioObjectID object, const AudioObjectPropertyAddress& address) {
        const std::scoped_lock guard(mutex_);
        heard_.push_back(std::to_string(object) + " " + fourCharText(address.mSelector));
    }

    std::mutex mutex_;
    std::vector<std::string> heard_;
};

} // namespace orvanta::test
