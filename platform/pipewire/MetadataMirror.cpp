#include "platform/pipewire/MetadataMirror.h"

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

namespace orvanta::pipewire {

namespace {

const char* orEmpty(const char* text) {
    return text != nullptr ? text : "";
}

} // namespace

struct MetadataEvents {
    static int property(void* data, std::uint32_t subject, const char* key, const char* type,
                        const char* value) {
        auto& mirror = *static_cast<MetadataMirror*>(data);
        if (key == nullptr)
            mirror.forget(subject);
        else
            mirror.hear(subject, key, {orEmpty(type), orEmpty(value)});
        mirror.changed_();
        return 0;
    }
};

void MetadataMirror::bind(pw_registry* registry, std::uint32_t id) {
    static constexpr pw_metadata_events events{PW_VERSION_METADATA_EVENTS,
                                               MetadataEvents::property};
    unbind();
    metadata_ = static_cast<pw_metadata*>(
        pw_registry_bind(registry, id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0));
    if (metadata_ == nullptr)
        return;
    id_ = id;
    ++binds_;
    pw_metadata_add_listener(metadata_, &hook_, &events, this);
}

void MetadataMirror::unbind() {
    subjects_.clear();
    echoes_.clear();
    if (metadata_ == nullptr)
        return;
    spa_hook_remove(&hook_);
    pw_proxy_destroy(reinterpret_cast<pw_proxy*>(metadata_));
    metadata_ = nullptr;
}

const MetadataValue& MetadataMirror::value(std::uint32_t subject, const std::string& key) const {
    static const MetadataValue none;
    const auto entries = subjects_.find(subject);
    if (entries == subjects_.end())
        return none;
    const auto found = entries->second.find(key);
    return found == entries->second.end() ? none : found->second;
}

void MetadataMirror::set(std::uint32_t subject, const std::string& key,
                         const MetadataValue& value) {
    if (metadata_ == nullptr)
        return;
    // The server tells of changes only.
    if (value != this->value(subject, key))
        echoes_.expect(subject, key, value);
    note(subject, key, value);
    pw_metadata_set_property(metadata_, subject, key.c_str(),
                             value.empty() ? nullptr : value.type.c_str(),
                             value.empty() ? nullptr : value.value.c_str());
}

void MetadataMirror::note(std::uint32_t subject, const std::string& key,
                          const MetadataValue& value) {
    if (value.empty())
        subjects_[subject].erase(key);
    else
        subjects_[subject][key] = value;
}

void MetadataMirror::hear(std::uint32_t subject, const std::string& key,
                          const MetadataValue& value) {
    if (!echoes_.isOutdated(subject, key, value))
        note(subject, key, value);
}

std::map<std::uint32_t, MetadataValue> MetadataMirror::all(const std::string& key) const {
    std::map<std::uint32_t, MetadataValue> found;
    for (const auto& [subject, entries] : subjects_)
        if (const auto entry = entries.find(key); entry != entries.end())
            found.emplace(subject, entry->second);
    return found;
}

} // namespace orvanta::pipewire
