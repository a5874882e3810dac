#pragma once

#include "core/platform/HostInfo.h"
#include "core/platform/WallClock.h"
#include "core/services/crash/ActivityLog.h"
#include "core/services/crash/ReportFolder.h"
#include "core/services/crash/UncaughtException.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orvanta {

/// Leaves a trace when the program dies, and turns what was left into a mail on a later run. A
/// fatal signal leaves one line in a file that was opened beforehand; an uncaught exception, after
/// which the language still works, leaves a report. Nothing leaves the machine but by the user's
/// own mail program.
///
/// All failures are silent: a reporter must not stop a launch or make a crash worse.
class CrashReporter {
public:
    struct ReportEmail {
        std::string subject;
        std::string body;
    };

    /// The support team's mailbox.
    static constexpr std::string_view supportEmail = "support@orvanta.meridane.com";

    /// Makes the folder for reports in the home folder. `clock` must outlive the reporter.
    CrashReporter(HostInfo host, const WallClock& clock);
    CrashReporter(const CrashReporter&) = delete;
    CrashReporter& operator=(const CrashReporter&) = delete;
    /// The program's handlers stay as `install` has set them; exceptions leave no more reports.
    ~CrashReporter();

    /// The program's own reporter, made by the first call from what it is given and never
    /// destroyed, for a program may die at any time. `clock` must live as long.
    static CrashReporter& makeShared(const HostInfo& host, const WallClock& clock);
    /// That one. Throws std::logic_error before it is made.
    [[nodiscard]] static CrashReporter& shared();

    /// Opens the marker, takes the fatal signals and uncaught exceptions of the whole program, and
    /// tells the activity log. Before anything else of the program, on the main thread.
    void install() noexcept;

    /// Whether there is anything to mail. The marker counts, so after `install` there is.
    [[nodiscard]] bool hasUnsentReports() const;
    [[nodiscard]] int unsentReportCount() const;

    /// A mail with the last three reports; nothing when there is none.
    [[nodiscard]] std::optional<ReportEmail> composeReportEmail() const;
    /// The same as a URL to open.
    [[nodiscard]] std::optional<std::string> composeReportURL() const;
    /// Puts all reports aside, for good.
    void markReportsSent() const;

    /// Writes the report of an exception that nobody caught, and repeats it in the activity log.
    void handleException(const crash::UncaughtException& exception) const noexcept;

    [[nodiscard]] const std::filesystem::path& logDir() const { return reports_.path(); }

private:
    const HostInfo host_;
    const WallClock& clock_;
    const crash::ReportFolder reports_;
    const crash::ActivityLog activityLog_;
};

} // namespace orvanta
