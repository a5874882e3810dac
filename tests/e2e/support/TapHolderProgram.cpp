// Taps processes until its standard input ends or it is killed.
//   orvanta_tap_holder VOLUME PID...
// It says "tapped" when every tap stands. For every pid it is then told, it answers a line: how
// often that tap's callback has run, and the RMS and peak it published. Told a pid and a device's
// UID, it routes the tap there and answers "routed", or "refused".

#include "tests/e2e/support/MixerUnderTest.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>

int main(int count, char** arguments) {
    if (count < 2)
        return 2;
    try {
        orvanta::test::MixerUnderTest mixer;
        for (int index = 2; index < count; ++index)
            mixer.tap(std::atoi(arguments[index]), std::strtof(arguments[1], nullptr));
        std::cout << "tapped" << std::endl;
        for (std::string line; std::getline(std::cin, line);) {
            std::istringstream words(line);
            pid_t pid = 0;
            std::string device;
            if (words >> pid >> device) {
                const bool isRouted = mixer.manager().routeToDevice(pid, device);
                std::cout << (isRouted ? "routed" : "refused") << std::endl;
                continue;
            }
            const auto level = mixer.manager().getAudioLevel(pid).value_or(orvanta::AudioLevel());
            std::cout << mixer.manager().getCallbackCount(pid) << " " << level.rms << " "
                      << level.peak << std::endl;
        }
    } catch (const std::exception& failure) {
        std::string reason = failure.what();
        for (char& character : reason)
            if (character == '\n')
                character = '|';
        std::cout << reason << std::endl;
        return 1;
    }
    return 0;
}
