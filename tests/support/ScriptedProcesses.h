#pragma once

#include "core/platform/ProcessTable.h"
#include "core/platform/Workspace.h"

#include <map>
#include <string>

namespace orvanta::test {

/// A process table that a test fills in.
class ScriptedProcessTable final : public ProcessTable {
public:
    static constexpr std::int32_t self = 1;

    std::map<std::int32_t, std::string> names;
    std::map<std::int32_t, std::string> paths;
    std::map<std::int32_t, std::int32_t> parents;
    std::map<std::int32_t, ProcessTaskInfo> tasks;

    [[nodiscard]] std::int32_t ownPID() const override { return self; }

    [[nodiscard]] std::optional<std::string> name(std::int32_t pid) const override {
        return found(names, pid);
    }

    [[nodiscard]] std::optional<std::string> path(std::int32_t pid) const override {
        return found(paths, pid);
    }

    [[nodiscard]] std::optional<std::int32_t> parent(std::int32_t pid) const override {
        return found(parents, pid);
    }

    [[nodiscard]] std::optional<ProcessTaskInfo> taskInfo(std::int32_t pid) const override {
        return found(tasks, pid);
    }

private:
    template <class Value>
    static std::optional<Value> found(const std::map<std::int32_t, Value>& map, std::int32_t pid) {
        const auto entry = map.find(pid);
        return entry == map.end() ? std::nullopt : std::optional<Value>(entry->second);
    }
};

/// An icon that is nothing but its key.
class KeyIcon final : public Icon {
public:
    explicit KeyIcon(std::string key) : key_(std::move(key)) {}

    [[nodiscard]] std::string cacheKey() const override { return key_; }

private:
    std::string key_;
};

/// A workspace that a test fills in.
class ScriptedWorkspace final : public Workspace {
public:
    std::map<std::int32_t, RunningApplication> applications;
    /// Where an application is installed, by bundle identifier.
    std::map<std::string, std::filesystem::path> installed;
    std::map<std::filesystem::path, IconRef> icons;

    /// An application with an icon that is named after it.
    void install(const std::string& bundleIdentifier, const std::string& iconKey) {
        installed[bundleIdentifier] = "/apps/" + bundleIdentifier;
        icons["/apps/" + bundleIdentifier] = std::make_shared<KeyIcon>(iconKey);
    }

    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override {
        std::vector<RunningApplication> all;
        for (const auto& [pid, application] : applications)
            all.push_back(application);
        return all;
    }

    [[nodiscard]] std::optional<RunningApplication>
    runningApplication(std::int32_t pid) const override {
        const auto entry = applications.find(pid);
        return entry == applications.end() ? std::nullopt : std::optional(entry->second);
    }

    [[nodiscard]] std::optional<std::filesystem::path>
    urlForApplication(const std::string& bundleIdentifier) const override {
        const auto entry = installed.find(bundleIdentifier);
        return entry == installed.end() ? std::nullopt : std::optional(entry->second);
    }

    [[nodiscard]] IconRef iconForFile(const std::filesystem::path& file) const override {
        const auto entry = icons.find(file);
        return entry == icons.end() ? nullptr : entry->second;
    }
};

} // namespace orvanta::test
