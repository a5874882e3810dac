// Arbitrary bytes in place of the stored settings: they are read as a map or as nothing, and what
// was read can be stored and read again.

#include "core/persistence/SettingsStore.h"
#include "core/persistence/StoredRecords.h"
#include "tests/support/MemoryUserDefaults.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using orvanta::SettingsStore;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const orvanta::AppSettingsByKey read =
        orvanta::decodedSettings({reinterpret_cast<const char*>(bytes), size});
    orvanta::test::MemoryUserDefaults defaults;
    SettingsStore store(defaults);
    for (const auto& [key, settings] : read)
        store.save(key, settings);
    if (SettingsStore(defaults).loadAll() != read)
        std::abort();
    return 0;
}
