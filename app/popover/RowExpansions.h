#pragma once

#include "core/model/PIDMap.h"

#include <cstdint>

namespace orvanta {

/// What of a row is unfolded.
struct RowExpansion {
    bool isEQExpanded = false;
    bool isAdvancedEQ = false;
    bool isCompressorAdvanced = false;

    friend bool operator==(const RowExpansion&, const RowExpansion&) = default;
};

/// Which rows of the panel are unfolded, kept while rows scroll out of view and back. Its owner
/// folds everything when the panel closes, and a row when its tap begins or ends or its application
/// goes.
class RowExpansions {
public:
    [[nodiscard]] RowExpansion of(std::int32_t pid) const {
        return valueOr(rows_, pid, RowExpansion{});
    }

    void set(std::int32_t pid, RowExpansion expansion) { rows_[pid] = expansion; }

    void fold(std::int32_t pid) { rows_.erase(pid); }

    void foldAll() { rows_.clear(); }

private:
    PIDMap<RowExpansion> rows_;
};

} // namespace orvanta
