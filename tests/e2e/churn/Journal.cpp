#include "tests/e2e/churn/Journal.h"

#include <iomanip>
#include <sstream>

namespace orvanta::test {

void Journal::beginRound(int round) {
    lines_.push_back("-- round " + std::to_string(round));
}

void Journal::note(const std::string& what) {
    std::ostringstream line;
    line << std::fixed << std::setprecision(3) << monotonicSeconds() - start_ << " s  " << what;
    lines_.push_back(line.str());
}

std::ostream& operator<<(std::ostream& stream, const Journal& journal) {
    for (const std::string& line : journal.lines_)
        stream << line << "\n";
    return stream;
}

} // namespace orvanta::test
