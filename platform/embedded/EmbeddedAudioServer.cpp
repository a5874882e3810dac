#include "platform/embedded/EmbeddedAudioServer.h"

#include "platform/embedded/ServeCall.h"
#include "platform/embedded/objects/PlanBuilder.h"

#include <algorithm>

namespace orvanta {

using embedded::DeviceRecord;
using embedded::IOProc;
using embedded::Operation;
using embedded::PropertyChange;
using embedded::RealTimeClock;
using embedded::ServerSettings;

EmbeddedAudioServer::EmbeddedAudioServer(const ServerSettings& settings)
    : journal_(settings.journalLimit),
      objects_(settings),
      steppedClock_(gate_),
      realTimeClock_(gate_) {
    gate_.install(embedded::buildPlan(objects_, ++lastPlan_));
}

EmbeddedAudioServer::~EmbeddedAudioServer() {
    stopClock();
}

void EmbeddedAudioServer::preparePlan(Aftermath& aftermath) {
    if (aftermath.changes.replan)
        aftermath.plan = embedded::buildPlan(objects_, ++lastPlan_);
}

void EmbeddedAudioServer::settle(Aftermath& aftermath) {
    if (aftermath.plan)
        gate_.install(std::move(aftermath.plan));
    // Other threads may hold older plans for a while yet, so that these plans' end is not awaited.
    for (const auto& recorder : aftermath.changes.ended)
        recorder->close();
    for (const AudioObjectID object : aftermath.changes.gone)
        listeners_.forget(object);
    for (const PropertyChange& change : aftermath.changes.notifications)
        listeners_.deliver(change);
}

void EmbeddedAudioServer::failNext(Operation operation, OSStatus status, unsigned times) {
    faults_.add({.operation = operation, .status = status, .times = times});
}

void EmbeddedAudioServer::notify(AudioObjectID object, const AudioObjectPropertyAddress& address) {
    listeners_.deliver({object, address});
}

EmbeddedAudioServer::Holdings EmbeddedAudioServer::holdings() const {
    const std::scoped_lock guard(mutex_);
    Holdings holdings;
    const auto count = [&](const DeviceRecord& record) {
        for (const IOProc& proc : record.procs) {
            ++holdings.ioProcs;
            if (proc.client->isStarted())
                ++holdings.startedIOProcs;
        }
    };
    for (const auto& tap : objects_.taps())
        holdings.taps.push_back(tap->id);
    for (const auto& aggregate : objects_.aggregates()) {
        holdings.aggregates.push_back(aggregate->id);
        count(*aggregate);
    }
    for (const auto& device : objects_.devices())
        count(*device);
    holdings.listeners = listeners_.count();
    return holdings;
}

void EmbeddedAudioServer::step(AudioObjectID device, unsigned cycles) {
    if (!inRealTime_)
        steppedClock_.step(device, cycles);
}

void EmbeddedAudioServer::stepAll(unsigned cycles) {
    if (!inRealTime_)
        steppedClock_.stepAll(cycles);
}

void EmbeddedAudioServer::advance(Seconds duration) {
    if (!inRealTime_)
        steppedClock_.advance(duration);
}

std::uint64_t EmbeddedAudioServer::nowNs() const {
    return inRealTime_ ? RealTimeClock::nowNs() : steppedClock_.nowNs();
}

void EmbeddedAudioServer::startClock() {
    const std::scoped_lock guard(clockMutex_);
    inRealTime_ = true;
    realTimeClock_.start();
}

void EmbeddedAudioServer::stopClock() {
    const std::scoped_lock guard(clockMutex_);
    if (!inRealTime_)
        return;
    realTimeClock_.stop();
    inRealTime_ = false;
    steppedClock_.adopt();
}

bool EmbeddedAudioServer::isClockRunning() const {
    return inRealTime_;
}

} // namespace orvanta
