#include "core/discovery/NameOrder.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <string_view>

namespace orvanta {
namespace {

/// The user's language. The "C" locale is none: its order puts all capitals first, so the order
/// common to all languages stands in for it.
icu::Locale languageOfNames() {
    const icu::Locale& user = icu::Locale::getDefault();
    return std::string_view(user.getVariant()) == "POSIX" ? icu::Locale::getRoot() : user;
}

} // namespace

struct NameOrder::Collation {
    /// Null where ICU has no collation data: names then compare by their case-folded code points.
    std::unique_ptr<icu::Collator> collator;
};

NameOrder::NameOrder() : collation_(std::make_unique<Collation>()) {
    UErrorCode status = U_ZERO_ERROR;
    collation_->collator.reset(icu::Collator::createInstance(languageOfNames(), status));
    if (U_FAILURE(status))
        collation_->collator.reset();
    if (collation_->collator)
        collation_->collator->setStrength(icu::Collator::SECONDARY);
}

NameOrder::~NameOrder() = default;

int NameOrder::compare(const std::string& a, const std::string& b) const {
    const auto first = icu::UnicodeString::fromUTF8(a);
    const auto second = icu::UnicodeString::fromUTF8(b);
    UErrorCode status = U_ZERO_ERROR;
    if (collation_->collator) {
        const UCollationResult order = collation_->collator->compare(first, second, status);
        if (U_SUCCESS(status))
            return order;
    }
    return first.caseCompare(second, U_FOLD_CASE_DEFAULT);
}

bool NameOrder::isAscending(const std::string& a, const std::string& b) const {
    return compare(a, b) < 0;
}

bool NameOrder::isSame(const std::string& a, const std::string& b) const {
    return compare(a, b) == 0;
}

} // namespace orvanta
