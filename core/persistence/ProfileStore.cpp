#include "core/persistence/ProfileStore.h"

#include "core/persistence/StoredRecords.h"

#include <algorithm>
#include <utility>

namespace orvanta {
namespace {

auto hasId(const UUID& id) {
    return [&id](const auto& entry) {
        return entry.profile.id == id;
    };
}

} // namespace

ProfileStore::ProfileStore(UserDefaults& defaults) : defaults_(defaults) {}

void ProfileStore::save(const AudioProfile& profile) {
    if (stored() == nullptr)
        cache_.emplace();
    const auto known = std::find_if(cache_->begin(), cache_->end(), hasId(profile.id));
    if (known != cache_->end())
        *known = entryOf(profile);
    else
        cache_->push_back(entryOf(profile));
    persist();
}

std::optional<AudioProfile> ProfileStore::load(const UUID& id) {
    const Entries* const entries = stored();
    if (entries == nullptr)
        return std::nullopt;
    const auto found = std::find_if(entries->begin(), entries->end(), hasId(id));
    return found != entries->end() ? std::optional(found->profile) : std::nullopt;
}

std::vector<AudioProfile> ProfileStore::loadAll() {
    std::vector<AudioProfile> all;
    if (const Entries* const entries = stored()) {
        all.reserve(entries->size());
        for (const Entry& entry : *entries)
            all.push_back(entry.profile);
    }
    return all;
}

void ProfileStore::deleteProfile(const UUID& id) {
    if (stored() == nullptr)
        cache_.emplace();
    std::erase_if(*cache_, hasId(id));
    persist();
}

ProfileStore::Entry ProfileStore::entryOf(AudioProfile profile) {
    StoredText element = storedTextOf(profile);
    return {std::move(profile), std::move(element)};
}

ProfileStore::Entries* ProfileStore::stored() {
    if (!cache_) {
        const auto data = defaults_.data(profilesKey);
        if (!data)
            return nullptr;
        cache_.emplace();
        for (AudioProfile& profile : decodedProfiles(*data))
            cache_->push_back(entryOf(std::move(profile)));
    }
    return &*cache_;
}

void ProfileStore::persist() {
    const auto textOf = [](const Entry& entry) -> const StoredText& {
        return entry.element;
    };
    if (const StoredText json = joinedText('[', *cache_, ']', textOf))
        defaults_.setData(profilesKey, *json);
}

} // namespace orvanta
