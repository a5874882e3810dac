#pragma once

#include "core/persistence/AudioProfile.h"
#include "core/persistence/StoredText.h"
#include "core/platform/UserDefaults.h"

#include <optional>
#include <string_view>
#include <vector>

namespace orvanta {

/// The user's profiles in the order in which they were made, in the user's defaults: a JSON array,
/// which every change stores anew; only the profile that changed is encoded for it. No operation
/// reports an error. From the first read or change on, memory is the truth: what others write to
/// the defaults later is not noticed. Called from one thread.
class ProfileStore {
public:
    static constexpr std::string_view profilesKey = "com.meridane.orvanta.audioProfiles";

    /// `defaults` outlives the store.
    explicit ProfileStore(UserDefaults& defaults);

    /// Takes the place of the profile with the same `id`, or goes to the end.
    void save(const AudioProfile& profile);
    /// Absent where none has this `id`.
    [[nodiscard]] std::optional<AudioProfile> load(const UUID& id);

    /// Empty where nothing is stored, and where one of the stored profiles cannot be read: then all
    /// of them count as lost, and the next change replaces them.
    [[nodiscard]] std::vector<AudioProfile> loadAll();

    /// Stores the rest, also when there was nothing to delete.
    void deleteProfile(const UUID& id);

private:
    struct Entry {
        AudioProfile profile;
        StoredText element;
    };

    using Entries = std::vector<Entry>;

    static Entry entryOf(AudioProfile profile);

    /// Fills the cache from what is stored, if anything is. Null while there is nothing.
    Entries* stored();
    void persist();

    UserDefaults& defaults_;
    std::optional<Entries> cache_;
};

} // namespace orvanta
