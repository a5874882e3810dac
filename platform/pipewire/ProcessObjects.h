#pragma once

#include "core/platform/AudioClient.h"
#include "platform/pipewire/ControlLoop.h"
#include "platform/pipewire/ObjectIds.h"
#include "platform/pipewire/PropertyAnswer.h"
#include "platform/pipewire/PropertyListeners.h"
#include "platform/pipewire/ServerMirror.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sys/types.h>

namespace orvanta::pipewire {

/// The processes that have played. An object begins with a process's first stream, or the first
/// link from a patched node of it to a device, and ends with the process itself, not with the
/// stream and not with the server. All of it with the lock held.
class ProcessObjects {
public:
    /// `changed` is called when a process has ended, on the control thread.
    ProcessObjects(ControlLoop& loop, ObjectIds& ids, PropertyListeners& listeners,
                   std::function<void()> changed);
    ~ProcessObjects();
    ProcessObjects(const ProcessObjects&) = delete;
    ProcessObjects& operator=(const ProcessObjects&) = delete;

    /// Takes in what the server has now. Without a server: the processes stay, and none plays.
    void update(const ServerMirror& mirror, bool isConnected);

    /// In the order in which they came.
    [[nodiscard]] std::vector<AudioObjectID> list() const;

    [[nodiscard]] bool contains(AudioObjectID object) const;

    /// 0 when the stream's process is not known (yet), or has ended.
    [[nodiscard]] AudioObjectID ownerOf(const NodeRef& stream) const;

    /// What the programs have told of themselves, in the order of `list`.
    [[nodiscard]] std::vector<AudioClient> clients() const;

    /// Nothing for a process that has not played.
    [[nodiscard]] std::optional<AudioClient> client(pid_t pid) const;

    /// Nothing when there is no such process object.
    [[nodiscard]] std::optional<PropertyAnswer>
    read(AudioObjectID object, const AudioObjectPropertyAddress& address) const;

private:
    struct Process;

    Process& processWith(pid_t pid);
    void learnStreams(const ServerMirror& mirror);
    void forgetUnwatched();
    void updateActivity(const ServerMirror& mirror);
    void ended(AudioObjectID object);

    ControlLoop& loop_;
    ObjectIds& ids_;
    PropertyListeners& listeners_;
    std::function<void()> changed_;
    std::map<AudioObjectID, std::unique_ptr<Process>> processes_;
    std::map<NodeRef, AudioObjectID> owners_;
    /// Streams that the server still has although their process has ended.
    std::set<NodeRef> orphans_;
    bool listChanged_ = false;
};

} // namespace orvanta::pipewire
