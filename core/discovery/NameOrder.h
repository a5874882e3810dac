#pragma once

#include <memory>
#include <string>

namespace orvanta {

/// Order of names in the user's locale that does not look at case: what is listed to people is
/// sorted by it. UTF-8 in, malformed bytes count as replacement characters.
class NameOrder {
public:
    NameOrder();
    ~NameOrder();
    NameOrder(const NameOrder&) = delete;
    NameOrder& operator=(const NameOrder&) = delete;

    [[nodiscard]] bool isAscending(const std::string& a, const std::string& b) const;
    [[nodiscard]] bool isSame(const std::string& a, const std::string& b) const;

private:
    [[nodiscard]] int compare(const std::string& a, const std::string& b) const;

    struct Collation;
    std::unique_ptr<Collation> collation_;
};

} // namespace orvanta
