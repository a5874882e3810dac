#include "core/persistence/Date.h"

namespace orvanta {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::sys_days kReferenceDate = 2001y / std::chrono::January / 1d;

} // namespace

Date::Date(WallTime time)
    : timeIntervalSinceReferenceDate(std::chrono::duration<double>(time - kReferenceDate).count()) {
}

} // namespace orvanta
