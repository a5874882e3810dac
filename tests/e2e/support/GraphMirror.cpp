#include "tests/e2e/support/GraphMirror.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace orvanta::test {

namespace {

void addAll(Properties& properties, const spa_dict* dictionary) {
    if (dictionary == nullptr)
        return;
    for (std::uint32_t index = 0; index < dictionary->n_items; ++index) {
        const spa_dict_item& item = dictionary->items[index];
        properties[item.key] = item.value == nullptr ? "" : item.value;
    }
}

} // namespace

AudioGraph::Mirror::Mirror() {
    pw_init(nullptr, nullptr);
    loop_ = pw_thread_loop_new("e2e-graph", nullptr);
    context_ = pw_context_new(pw_thread_loop_get_loop(loop_), nullptr, 0);
    core_ = pw_context_connect(context_, nullptr, 0);
    if (core_ == nullptr) {
        disconnect();
        throw std::runtime_error("cannot connect to the server: " +
                                 std::string(std::strerror(errno)));
    }
    static const pw_core_events coreEvents = [] {
        pw_core_events events = {};
        events.version = PW_VERSION_CORE_EVENTS;
        events.done = onCoreDone;
        events.error = onCoreError;
        return events;
    }();
    pw_core_add_listener(core_, &coreHook_, &coreEvents, this);

    static const pw_registry_events registryEvents = [] {
        pw_registry_events events = {};
        events.version = PW_VERSION_REGISTRY_EVENTS;
        events.global = [](void* data, std::uint32_t id, std::uint32_t, const char* type,
                           std::uint32_t, const spa_dict* properties) {
            static_cast<Mirror*>(data)->globalAppeared(id, type, properties);
        };
        events.global_remove = [](void* data, std::uint32_t id) {
            static_cast<Mirror*>(data)->globalVanished(id);
        };
        return events;
    }();
    registry_ = pw_core_get_registry(core_, PW_VERSION_REGISTRY, 0);
    pw_registry_add_listener(registry_, &registryHook_, &registryEvents, this);
    pw_thread_loop_start(loop_);
    const Lock lock(*this);
    synchronise();
}

AudioGraph::Mirror::~Mirror() {
    pw_thread_loop_stop(loop_);
    disconnect();
    pw_deinit();
}

void AudioGraph::Mirror::disconnect() {
    while (!bound_.empty())
        globalVanished(bound_.begin()->first);
    if (registry_ != nullptr) {
        spa_hook_remove(&registryHook_);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    }
    if (core_ != nullptr) {
        spa_hook_remove(&coreHook_);
        pw_core_disconnect(core_);
    }
    pw_context_destroy(context_);
    pw_thread_loop_destroy(loop_);
}

void AudioGraph::Mirror::synchronise() {
    const int wanted = pw_core_sync(core_, PW_ID_CORE, 0);
    // Another thread's question may have been answered since.
    while (!isLost_ && doneSequence_ < wanted)
        if (pw_thread_loop_timed_wait(loop_, 10) != 0)
            throw std::runtime_error("the server does not answer");
}

void AudioGraph::Mirror::onCoreDone(void* data, std::uint32_t id, int sequence) {
    auto& self = *static_cast<Mirror*>(data);
    if (id == PW_ID_CORE)
        self.doneSequence_ = sequence;
    pw_thread_loop_signal(self.loop_, false);
}

void AudioGraph::Mirror::onCoreError(void* data, std::uint32_t id, int, int result, const char*) {
    auto& self = *static_cast<Mirror*>(data);
    if (id == PW_ID_CORE && result == -EPIPE)
        self.isLost_ = true;
    pw_thread_loop_signal(self.loop_, false);
}

void AudioGraph::Mirror::globalAppeared(std::uint32_t id, const char* type,
                                        const spa_dict* properties) {
    GraphObject& object = objects_[id];
    object = {};
    object.id = id;
    object.type = std::strrchr(type, ':') + 1;
    addAll(object.properties, properties);

    static const pw_node_events nodeEvents = [] {
        pw_node_events events = {};
        events.version = PW_VERSION_NODE_EVENTS;
        events.info = onNodeInfo;
        return events;
    }();
    static const pw_client_events clientEvents = [] {
        pw_client_events events = {};
        events.version = PW_VERSION_CLIENT_EVENTS;
        events.info = onClientInfo;
        return events;
    }();
    static const pw_metadata_events metadataEvents = [] {
        pw_metadata_events events = {};
        events.version = PW_VERSION_METADATA_EVENTS;
        events.property = onMetadata;
        return events;
    }();
    if (object.type == "Node")
        bind(id, type, PW_VERSION_NODE, &nodeEvents);
    else if (object.type == "Client")
        bind(id, type, PW_VERSION_CLIENT, &clientEvents);
    else if (object.type == "Metadata")
        bind(id, type, PW_VERSION_METADATA, &metadataEvents);
}

void AudioGraph::Mirror::bind(std::uint32_t id, const char* type, std::uint32_t version,
                              const void* events) {
    auto* proxy = static_cast<pw_proxy*>(pw_registry_bind(registry_, id, type, version, 0));
    if (proxy == nullptr)
        return;
    auto bound = std::make_unique<Bound>();
    bound->mirror = this;
    bound->id = id;
    bound->proxy = proxy;
    bound->metadataName = objects_[id].get("metadata.name");
    pw_proxy_add_object_listener(proxy, &bound->hook, events, bound.get());
    bound_[id] = std::move(bound);
}

void AudioGraph::Mirror::globalVanished(std::uint32_t id) {
    objects_.erase(id);
    const auto found = bound_.find(id);
    if (found == bound_.end())
        return;
    spa_hook_remove(&found->second->hook);
    pw_proxy_destroy(found->second->proxy);
    bound_.erase(found);
}

void AudioGraph::Mirror::merge(std::uint32_t id, const spa_dict* properties) {
    addAll(objects_[id].properties, properties);
}

void AudioGraph::Mirror::onNodeInfo(void* data, const pw_node_info* info) {
    auto& bound = *static_cast<Bound*>(data);
    bound.mirror->merge(bound.id, info->props);
    bound.mirror->objects_[bound.id].isRunning = info->state == PW_NODE_STATE_RUNNING;
}

void AudioGraph::Mirror::onClientInfo(void* data, const pw_client_info* info) {
    auto& bound = *static_cast<Bound*>(data);
    bound.mirror->merge(bound.id, info->props);
}

int AudioGraph::Mirror::onMetadata(void* data, std::uint32_t subject, const char* key, const char*,
                                   const char* value) {
    auto& values = static_cast<Bound*>(data)->values;
    if (key == nullptr)
        std::erase_if(values, [&](const auto& entry) { return entry.first.first == subject; });
    else if (value == nullptr)
        values.erase({subject, key});
    else
        values[{subject, key}] = value;
    return 0;
}

pw_metadata* AudioGraph::Mirror::metadata(const std::string& name) const {
    for (const auto& [id, bound] : bound_)
        if (bound->metadataName == name)
            return reinterpret_cast<pw_metadata*>(bound->proxy);
    return nullptr;
}

std::optional<std::string> AudioGraph::Mirror::metadataValue(const std::string& name,
                                                             std::uint32_t subject,
                                                             const std::string& key) const {
    for (const auto& [id, bound] : bound_) {
        if (bound->metadataName != name)
            continue;
        const auto found = bound->values.find({subject, key});
        if (found != bound->values.end())
            return found->second;
    }
    return std::nullopt;
}

bool AudioGraph::Mirror::hasMetadata(const std::string& name) const {
    return metadata(name) != nullptr;
}

void AudioGraph::Mirror::setMetadata(const std::string& name, std::uint32_t subject,
                                     const std::string& key, const std::string& type,
                                     const std::optional<std::string>& value) {
    pw_metadata* const target = metadata(name);
    if (target == nullptr)
        throw std::runtime_error("there is no metadata " + name);
    pw_metadata_set_property(target, subject, key.c_str(), value ? type.c_str() : nullptr,
                             value ? value->c_str() : nullptr);
}

void AudioGraph::Mirror::create(const char* factory, const char* type, std::uint32_t version,
                                const Properties& properties) {
    std::vector<spa_dict_item> items;
    for (const auto& [key, value] : properties)
        items.push_back({key.c_str(), value.c_str()});
    items.push_back({PW_KEY_OBJECT_LINGER, "true"});
    const spa_dict dictionary = {0, static_cast<std::uint32_t>(items.size()), items.data()};
    auto* proxy = static_cast<pw_proxy*>(
        pw_core_create_object(core_, factory, type, version, &dictionary, 0));
    synchronise();
    if (proxy != nullptr)
        pw_proxy_destroy(proxy);
}

void AudioGraph::Mirror::destroy(std::uint32_t id) {
    pw_registry_destroy(registry_, id);
}

} // namespace orvanta::test
