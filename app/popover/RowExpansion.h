#pragma once

namespace orvanta {

/// What of a row is unfolded. Nothing of it outlasts the panel's closing, or the beginning or end
/// of the row's tap.
struct RowExpansion {
    bool isEQExpanded = false;
    bool isAdvancedEQ = false;
    bool isCompressorAdvanced = false;

    friend bool operator==(const RowExpansion&, const RowExpansion&) = default;
};

} // namespace orvanta
