#pragma once

#include "tests/support/Waiting.h"

#include <deque>
#include <ostream>
#include <string>
#include <vector>

namespace orvanta::test {

/// What was done to the audio system and when, told when a test has failed. Only the last rounds
/// are kept: a test that looks at its own memory must not grow by its journal.
class Journal {
public:
    void beginRound(int round);
    void note(const std::string& what);

    friend std::ostream& operator<<(std::ostream& stream, const Journal& journal);

private:
    /// One of each round: its head, and a line for each note.
    std::deque<std::vector<std::string>> rounds_{{}};
    double start_ = monotonicSeconds();
};

} // namespace orvanta::test
