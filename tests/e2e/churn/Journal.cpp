#include "tests/e2e/churn/Journal.h"

#include <iomanip>
#include <sstream>

namespace orvanta::test {

namespace {

constexpr std::size_t mostRounds = 20;

} // namespace

void Journal::beginRound(int round) {
    if (rounds_.size() == mostRounds)
        rounds_.pop_front();
    rounds_.emplace_back().push_back("-- round " + std::to_string(round));
}

void Journal::note(const std::string& what) {
    std::ostringstream line;
    line << std::fixed << std::setprecision(3) << monotonicSeconds() - start_ << " s  " << what;
    rounds_.back().push_back(line.str());
}

std::ostream& operator<<(std::ostream& stream, const Journal& journal) {
    for (const auto& round : journal.rounds_)
        for (const std::string& line : round)
            stream << line << "\n";
    return stream;
}

} // namespace orvanta::test
