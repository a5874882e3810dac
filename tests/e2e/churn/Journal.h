#pragma once

#include "tests/e2e/support/Waiting.h"

#include <ostream>
#include <string>
#include <vector>

namespace orvanta::test {

/// What was done to the audio system and when, told when a test has failed.
class Journal {
public:
    void beginRound(int round);
    void note(const std::string& what);

    friend std::ostream& operator<<(std::ostream& stream, const Journal& journal);

private:
    std::vector<std::string> lines_;
    double start_ = monotonicSeconds();
};

} // namespace orvanta::test
