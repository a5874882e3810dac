// Arbitrary bytes in place of the stored profiles: they are read as a list or as nothing, and what
// was read can be stored and read again.

#include "core/persistence/ProfileStore.h"
#include "core/persistence/StoredRecords.h"
#include "tests/support/MemoryUserDefaults.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using orvanta::ProfileStore;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto read = orvanta::decodedProfiles({reinterpret_cast<const char*>(bytes), size});
    orvanta::test::MemoryUserDefaults defaults;
    for (const orvanta::AudioProfile& profile : read) {
        ProfileStore(defaults).save(profile);
        if (ProfileStore(defaults).load(profile.id) != profile)
            std::abort();
    }
    return 0;
}
