#include "platform/embedded/objects/PlanBuilder.h"

#include <algorithm>
#include <map>

namespace orvanta::embedded {

namespace {

/// What becomes of the sound of a program.
struct Path {
    const Device* driver = nullptr;
    bool audible = true;
};

class Builder {
public:
    Builder(const ObjectSpace& space, CyclePlan& plan) : space_(space), plan_(plan) {}

    void build() {
        for (const auto& device : space_.devices())
            addDevice(*device);
        for (const auto& program : space_.programs())
            addProgram(*program);
        for (const auto& device : space_.devices())
            addClients(*device);
        for (const auto& aggregate : space_.aggregates())
            addClients(*aggregate);
    }

private:
    void addDevice(const Device& device) {
        DevicePlan entry;
        entry.device = device.id;
        entry.channels = device.settings.channels;
        entry.frames = device.settings.framesPerCycle;
        entry.sampleRate = device.sampleRate;
        entry.layout = device.settings.layout;
        entry.io = device.io;
        entry.tape = device.tape;
        entry.recorder = device.recorder;
        entry.mix.resize(std::size_t{entry.frames} * entry.channels);
        entry.stereo.resize(std::size_t{entry.frames} * 2);
        plan_.devices.push_back(std::move(entry));
    }

    void addProgram(const Program& program) {
        const Path path = pathOf(program);
        if (path.driver == nullptr)
            return;
        DevicePlan& device = planOf(*path.driver);
        ProgramPlan entry;
        entry.voice = program.voice;
        entry.channels = program.voice->channels();
        entry.playing = program.playing;
        entry.audible = path.audible;
        entry.block.resize(std::size_t{device.frames} * entry.channels);
        places_[program.id] = {path.driver->id, device.programs.size()};
        device.programs.push_back(std::move(entry));
    }

    [[nodiscard]] Path pathOf(const Program& program) const {
        Path path{space_.homeDevice(program), true};
        const Device* reader = nullptr;
        for (const auto& tap : space_.taps()) {
            const CATapMuteBehavior behavior = tap->description.muteBehavior();
            if (behavior == CATapMuteBehavior::unmuted || !tap->lists(program.id))
                continue;
            const Device* found = readerOf(*tap);
            if (found == nullptr && behavior == CATapMuteBehavior::mutedWhenTapped)
                continue;
            path.audible = false;
            if (reader == nullptr)
                reader = found;
        }
        if (reader != nullptr)
            path.driver = reader;
        return path;
    }

    /// The device on which the first running aggregate with this tap plays.
    [[nodiscard]] const Device* readerOf(const Tap& tap) const {
        for (const auto& aggregate : space_.aggregates()) {
            const auto& tapped = aggregate->description.taps;
            if (std::find(tapped.begin(), tapped.end(), tap.description.UUID()) == tapped.end())
                continue;
            const Device* device = space_.mainDevice(*aggregate);
            if (device != nullptr && isRunning(*aggregate))
                return device;
        }
        return nullptr;
    }

    static bool isRunning(const DeviceRecord& record) {
        return std::any_of(record.procs.begin(), record.procs.end(),
                           [](const IOProc& proc) { return proc.client->isStarted(); });
    }

    void addClients(const Device& device) {
        for (const IOProc& proc : device.procs) {
            if (proc.client->isStarted())
                addClient(planOf(device), proc);
        }
    }

    void addClients(const Aggregate& aggregate) {
        const Device* device = space_.mainDevice(aggregate);
        if (device == nullptr)
            return;
        for (const IOProc& proc : aggregate.procs) {
            if (!proc.client->isStarted())
                continue;
            ClientPlan& client = addClient(planOf(*device), proc);
            if (!aggregate.volumes.empty())
                client.volume = aggregate.volumeControls;
            for (const std::string& uuid : aggregate.description.taps)
                addTap(client, uuid, *device);
        }
    }

    static ClientPlan& addClient(DevicePlan& device, const IOProc& proc) {
        ClientPlan client;
        client.client = proc.client;
        client.start = proc.starts;
        client.outputs.add(device.layout, device.channels, device.frames);
        device.clients.push_back(std::move(client));
        return device.clients.back();
    }

    void addTap(ClientPlan& client, const std::string& uuid, const Device& device) {
        TapPlan entry;
        entry.firstBuffer = client.inputs.buffers.size();
        client.tapLayout = space_.settings().tapLayout;
        client.inputs.add(client.tapLayout, 2, device.settings.framesPerCycle);
        if (const Tap* tap = space_.tap(uuid); tap != nullptr) {
            for (const AudioObjectID process : tap->description.processes()) {
                const auto place = places_.find(process);
                if (place != places_.end() && place->second.device == device.id)
                    entry.programs.push_back(place->second.index);
            }
        }
        client.taps.push_back(std::move(entry));
    }

    DevicePlan& planOf(const Device& device) {
        return *std::find_if(plan_.devices.begin(), plan_.devices.end(),
                             [&](const DevicePlan& entry) { return entry.device == device.id; });
    }

    struct Place {
        AudioObjectID device = kAudioObjectUnknown;
        std::size_t index = 0;
    };

    const ObjectSpace& space_;
    CyclePlan& plan_;
    std::map<AudioObjectID, Place> places_;
};

} // namespace

std::shared_ptr<CyclePlan> buildPlan(const ObjectSpace& space, std::uint64_t sequence) {
    auto plan = std::make_shared<CyclePlan>();
    plan->sequence = sequence;
    plan->restsWhenStepped = space.settings().restsWhenStepped;
    Builder(space, *plan).build();
    return plan;
}

} // namespace orvanta::embedded
