#pragma once

#include "platform/pipewire/WriteEchoes.h"

#include <spa/utils/hook.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

struct pw_metadata;
struct pw_registry;

namespace orvanta::pipewire {

/// One metadata object of the session: notes of its programs about objects, by object id and key.
/// All of it with the lock held.
class MetadataMirror {
public:
    /// `changed` is called after every change that comes from the server.
    explicit MetadataMirror(std::function<void()> changed) : changed_(std::move(changed)) {}

    ~MetadataMirror() { unbind(); }

    MetadataMirror(const MetadataMirror&) = delete;
    MetadataMirror& operator=(const MetadataMirror&) = delete;

    void bind(pw_registry* registry, std::uint32_t id);

    /// Forgets everything, because it went with the program that kept it.
    void unbind();

    [[nodiscard]] bool isBound() const { return metadata_ != nullptr; }

    /// How many times it was bound: once more with every start of the program that keeps it.
    [[nodiscard]] std::uint64_t binds() const { return binds_; }

    /// The registry's id of the bound object.
    [[nodiscard]] std::uint32_t id() const { return id_; }

    /// Empty when there is none.
    [[nodiscard]] const MetadataValue& value(std::uint32_t subject, const std::string& key) const;

    /// An empty value removes. Readable here at once, before the server has answered.
    void set(std::uint32_t subject, const std::string& key, const MetadataValue& value);

    /// The object with this id is gone, and the notes about it.
    void forget(std::uint32_t subject) {
        subjects_.erase(subject);
        echoes_.forget(subject);
    }

    /// Every object that has a value under `key`.
    [[nodiscard]] std::map<std::uint32_t, MetadataValue> all(const std::string& key) const;

private:
    friend struct MetadataEvents;

    void note(std::uint32_t subject, const std::string& key, const MetadataValue& value);
    void hear(std::uint32_t subject, const std::string& key, const MetadataValue& value);

    std::function<void()> changed_;
    pw_metadata* metadata_ = nullptr;
    std::uint32_t id_ = 0;
    std::uint64_t binds_ = 0;
    spa_hook hook_{};
    std::map<std::uint32_t, std::map<std::string, MetadataValue>> subjects_;
    WriteEchoes echoes_;
};

} // namespace orvanta::pipewire
