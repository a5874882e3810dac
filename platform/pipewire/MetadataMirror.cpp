#include "platform/pipewire/MetadataMirror.h"

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

namespace orvanta::pipewire {

struct MetadataEvents {
    static int property(void* data, std::uint32_t subject, const char* key, const char* type,
                        const char* value) {
        auto& mirror = *static_cast<MetadataMirror*>(data);
        if (key == nullptr)
            mirror.subjects_.erase(subject);
        else if (value == nullptr)
            mirror.subjects_[subject].erase(key);
        else
            mirror.subjects_[subject][key] = {type != nullptr ? type : "", value};
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
    if (value.empty()) {
        subjects_[subject].erase(key);
        pw_metadata_set_property(metadata_, subject, key.c_str(), nullptr, nullptr);
    } else {
        subjects_[subject][key] = value;
        pw_metadata_set_property(metadata_, subject, key.c_str(), value.type.c_str(),
                                 value.value.c_str());
    }
}

std::map<std::uint32_t, MetadataValue> MetadataMirror::all(const std::string& key) const {
    std::map<std::uint32_t, MetadataValue> found;
    for (const auto& [subject, entries] : subjects_)
        if (const auto entry = entries.find(key); entry != entries.end())
            found.emplace(subject, entry->second);
    return found;
}

} // namespace orvanta::pipewire
