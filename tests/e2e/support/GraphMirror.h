#pragma once

#include "tests/e2e/support/AudioGraph.h"

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

namespace orvanta::test {

/// The copy of the server's registry that AudioGraph reads, kept by a thread of its own.
/// Everything but construction and destruction happens under the loop's lock.
class AudioGraph::Mirror {
public:
    Mirror();
    Mirror(const Mirror&) = delete;
    Mirror& operator=(const Mirror&) = delete;
    ~Mirror();

    /// Holds the loop's lock.
    class Lock {
    public:
        explicit Lock(const Mirror& mirror) : loop_(mirror.loop_) { pw_thread_loop_lock(loop_); }

        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

        ~Lock() { pw_thread_loop_unlock(loop_); }

    private:
        pw_thread_loop* loop_;
    };

    void synchronise();

    [[nodiscard]] const std::map<std::uint32_t, GraphObject>& objects() const { return objects_; }

    [[nodiscard]] bool hasMetadata(const std::string& name) const;
    [[nodiscard]] std::optional<std::string>
    metadataValue(const std::string& name, std::uint32_t subject, const std::string& key) const;
    /// Throws when there is no such metadata. An absent value deletes the entry.
    void setMetadata(const std::string& name, std::uint32_t subject, const std::string& key,
                     const std::string& type, const std::optional<std::string>& value);
    /// A lasting object of one of the server's factories.
    void create(const char* factory, const char* type, std::uint32_t version,
                const Properties& properties);
    void destroy(std::uint32_t id);

private:
    struct Bound {
        Mirror* mirror = nullptr;
        std::uint32_t id = 0;
        pw_proxy* proxy = nullptr;
        spa_hook hook = {};
        std::string metadataName;
        std::map<std::pair<std::uint32_t, std::string>, std::string> values;
    };

    [[nodiscard]] pw_metadata* metadata(const std::string& name) const;
    void globalAppeared(std::uint32_t id, const char* type, const spa_dict* properties);
    void globalVanished(std::uint32_t id);
    void bind(std::uint32_t id, const char* type, std::uint32_t version, const void* events);
    void merge(std::uint32_t id, const spa_dict* properties);
    void disconnect();

    static void onCoreDone(void* data, std::uint32_t id, int sequence);
    static void onCoreError(void* data, std::uint32_t id, int sequence, int result,
                            const char* message);
    static void onNodeInfo(void* data, const pw_node_info* info);
    static void onClientInfo(void* data, const pw_client_info* info);
    static int onMetadata(void* data, std::uint32_t subject, const char* key, const char* type,
                          const char* value);

    pw_thread_loop* loop_ = nullptr;
    pw_context* context_ = nullptr;
    pw_core* core_ = nullptr;
    pw_registry* registry_ = nullptr;
    spa_hook coreHook_ = {};
    spa_hook registryHook_ = {};
    int doneSequence_ = -1;
    bool isLost_ = false;
    std::map<std::uint32_t, GraphObject> objects_;
    std::map<std::uint32_t, std::unique_ptr<Bound>> bound_;
};

} // namespace orvanta::test
