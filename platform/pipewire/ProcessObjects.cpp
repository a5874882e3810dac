#include "platform/pipewire/ProcessObjects.h"

#include "platform/pipewire/ClientIdentity.h"
#include "platform/pipewire/StreamOwner.h"

#include <algorithm>
#include <sys/syscall.h>
#include <unistd.h>

namespace orvanta::pipewire {

namespace {

/// A descriptor that becomes readable when the process ends; negative when there is none. The C
/// library's own function for it cannot be linked from C++ everywhere.
int openProcess(pid_t pid) {
    return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
}

/// A patched node runs as long as its program likes.
bool plays(const ServerMirror& mirror, const ServerNode& node) {
    return node.state == PW_NODE_STATE_RUNNING &&
           (node.kind == NodeKind::outputStream || mirror.feedsDevice(node.ref.id));
}

} // namespace

struct ProcessObjects::Process {
    AudioObjectID id = kAudioObjectUnknown;
    pid_t pid = 0;
    /// Once told it stays, for a program that closes its stream is still the same.
    AudioClient client;
    /// Null where the process cannot be seen from here, in another container for example. It then
    /// ends with its last stream.
    std::unique_ptr<ControlWatch> end;
    bool isPlaying = false;
    bool isRecording = false;
};

ProcessObjects::ProcessObjects(ControlLoop& loop, ObjectIds& ids, PropertyListeners& listeners,
                               std::function<void()> changed)
    : loop_(loop), ids_(ids), listeners_(listeners), changed_(std::move(changed)) {}

ProcessObjects::~ProcessObjects() = default;

void ProcessObjects::update(const ServerMirror& mirror, bool isConnected) {
    learnStreams(mirror);
    if (isConnected)
        forgetUnwatched();
    updateActivity(mirror);
    if (std::exchange(listChanged_, false))
        listeners_.notify(kAudioObjectSystemObject, {kAudioHardwarePropertyProcessObjectList});
}

void ProcessObjects::learnStreams(const ServerMirror& mirror) {
    std::map<NodeRef, AudioObjectID> owners;
    std::set<NodeRef> orphans;
    for (const ServerNode* stream : mirror.playback()) {
        // What is patched plays from the moment it is linked to a device, and is known from then
        // on.
        if (stream->kind == NodeKind::patched && !owners_.contains(stream->ref) &&
            !mirror.feedsDevice(stream->ref.id))
            continue;
        if (orphans_.contains(stream->ref)) {
            orphans.insert(stream->ref);
            continue;
        }
        const ServerClient* client = mirror.clientOf(*stream);
        const PropertyMap* told = client != nullptr ? &client->properties : nullptr;
        const auto pid = streamOwner(stream->properties, told);
        if (!pid)
            continue;
        Process& process = processWith(*pid);
        owners[stream->ref] = process.id;
        complete(process.client, clientIdentity(stream->properties, told));
    }
    owners_ = std::move(owners);
    orphans_ = std::move(orphans);
}

ProcessObjects::Process& ProcessObjects::processWith(pid_t pid) {
    for (auto& [id, process] : processes_)
        if (process->pid == pid)
            return *process;
    auto process = std::make_unique<Process>();
    const AudioObjectID id = ids_.next();
    process->id = id;
    process->pid = pid;
    process->client.pid = pid;
    if (const int descriptor = openProcess(pid); descriptor >= 0)
        process->end = std::make_unique<ControlWatch>(loop_, descriptor, [this, id] { ended(id); });
    if (process->end != nullptr && !process->end->isUsable())
        process->end.reset();
    listChanged_ = true;
    return *(processes_[id] = std::move(process));
}

void ProcessObjects::ended(AudioObjectID object) {
    for (const auto& [stream, owner] : owners_)
        if (owner == object)
            orphans_.insert(stream);
    std::erase_if(owners_, [&](const auto& entry) { return entry.second == object; });
    processes_.erase(object);
    listChanged_ = true;
    changed_();
}

void ProcessObjects::forgetUnwatched() {
    const auto gone = std::erase_if(processes_, [this](const auto& entry) {
        const auto plays = [&](const auto& owner) {
            return owner.second == entry.first;
        };
        return entry.second->end == nullptr && std::none_of(owners_.begin(), owners_.end(), plays);
    });
    listChanged_ = listChanged_ || gone > 0;
}

void ProcessObjects::updateActivity(const ServerMirror& mirror) {
    std::set<AudioObjectID> playing;
    std::set<pid_t> recording;
    for (const auto& [stream, owner] : owners_)
        if (const ServerNode* node = mirror.node(stream); node != nullptr && plays(mirror, *node))
            playing.insert(owner);
    for (const ServerNode* stream : mirror.nodes(NodeKind::inputStream)) {
        const ServerClient* client = mirror.clientOf(*stream);
        const auto pid =
            streamOwner(stream->properties, client != nullptr ? &client->properties : nullptr);
        if (pid && stream->state == PW_NODE_STATE_RUNNING)
            recording.insert(*pid);
    }
    for (auto& [id, process] : processes_) {
        const bool wasRunning = process->isPlaying || process->isRecording;
        const bool wasPlaying = std::exchange(process->isPlaying, playing.contains(id));
        process->isRecording = recording.contains(process->pid);
        if (process->isPlaying != wasPlaying)
            listeners_.notify(id, {kAudioProcessPropertyIsRunningOutput});
        if ((process->isPlaying || process->isRecording) != wasRunning)
            listeners_.notify(id, {kAudioProcessPropertyIsRunning});
    }
}

std::vector<AudioObjectID> ProcessObjects::list() const {
    std::vector<AudioObjectID> ids;
    for (const auto& [id, process] : processes_)
        ids.push_back(id);
    return ids;
}

bool ProcessObjects::contains(AudioObjectID object) const {
    return processes_.contains(object);
}

AudioObjectID ProcessObjects::ownerOf(const NodeRef& stream) const {
    const auto found = owners_.find(stream);
    return found == owners_.end() ? kAudioObjectUnknown : found->second;
}

std::vector<AudioClient> ProcessObjects::clients() const {
    std::vector<AudioClient> all;
    for (const auto& [id, process] : processes_)
        all.push_back(process->client);
    return all;
}

std::optional<AudioClient> ProcessObjects::client(pid_t pid) const {
    for (const auto& [id, process] : processes_)
        if (process->pid == pid)
            return process->client;
    return std::nullopt;
}

std::optional<PropertyAnswer>
ProcessObjects::read(AudioObjectID object, const AudioObjectPropertyAddress& address) const {
    const auto found = processes_.find(object);
    if (found == processes_.end())
        return std::nullopt;
    const Process& process = *found->second;
    switch (address.mSelector) {
    case kAudioProcessPropertyPID:
        return PropertyAnswer::of(std::int32_t{process.pid});
    case kAudioProcessPropertyIsRunningOutput:
        return PropertyAnswer::of(std::uint32_t{process.isPlaying});
    case kAudioProcessPropertyIsRunning:
        return PropertyAnswer::of(std::uint32_t{process.isPlaying || process.isRecording});
    default:
        return PropertyAnswer{};
    }
}

} // namespace orvanta::pipewire
