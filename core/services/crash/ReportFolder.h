#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta::crash {

/// The folder in which reports wait to be mailed. A report is a file whose name starts with
/// "crash-" and ends in ".log"; the marker of fatal signals is one, too. What fails, fails
/// silently.
class ReportFolder {
public:
    /// Makes the folder where it is missing.
    explicit ReportFolder(std::filesystem::path path);

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    [[nodiscard]] std::filesystem::path marker() const { return path_ / "crash-marker.log"; }

    /// Ascending; nothing when the folder cannot be read.
    [[nodiscard]] std::optional<std::vector<std::string>> names() const;

    /// Nothing when the file cannot be read or is no UTF-8.
    [[nodiscard]] std::optional<std::string> text(const std::string& name) const;

    /// Adds the report of that time, in place of another of the same second. It bears its name only
    /// when it is complete.
    void add(std::string timestamp, std::string_view text) const;

    /// Takes away what other runs have begun and not completed.
    void removeUnfinished() const;

    /// Moves all reports to the folder "sent", but for those whose name is taken there.
    void moveToSent() const;

private:
    const std::filesystem::path path_;
};

} // namespace orvanta::crash
