#include "platform/embedded/script/FaultPlan.h"

namespace orvanta::embedded {

namespace {

template <typename Value>
bool fits(const std::optional<Value>& wanted, Value actual) {
    return !wanted || *wanted == actual;
}

bool namesAddress(const Fault& fault) {
    return fault.selector || fault.scope || fault.element;
}

bool fits(const Fault& fault, Operation operation, AudioObjectID object,
          const std::optional<AudioObjectPropertyAddress>& address) {
    if (fault.operation != operation || !fits(fault.object, object))
        return false;
    if (!address)
        return !namesAddress(fault);
    return fits(fault.selector, address->mSelector) && fits(fault.scope, address->mScope) &&
           fits(fault.element, address->mElement);
}

} // namespace

FaultPlan::Handle FaultPlan::add(Fault fault) {
    const std::scoped_lock guard(mutex_);
    ++lastHandle_;
    if (fault.times != 0U)
        entries_.push_back({lastHandle_, fault});
    return lastHandle_;
}

void FaultPlan::remove(Handle handle) {
    const std::scoped_lock guard(mutex_);
    std::erase_if(entries_, [=](const Entry& entry) { return entry.handle == handle; });
}

void FaultPlan::clear() {
    const std::scoped_lock guard(mutex_);
    entries_.clear();
}

std::size_t FaultPlan::count() const {
    const std::scoped_lock guard(mutex_);
    return entries_.size();
}

std::optional<Fault> FaultPlan::strike(Operation operation, AudioObjectID object,
                                       const std::optional<AudioObjectPropertyAddress>& address) {
    const std::scoped_lock guard(mutex_);
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
        Fault& fault = entry->fault;
        if (!fits(fault, operation, object, address))
            continue;
        if (fault.skip > 0) {
            --fault.skip;
            continue;
        }
        if (fault.times)
            --*fault.times;
        const Fault struck = fault;
        if (struck.times == 0U)
            entries_.erase(entry);
        return struck;
    }
    return std::nullopt;
}

} // namespace orvanta::embedded
