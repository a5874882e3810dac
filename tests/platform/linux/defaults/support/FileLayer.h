#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace orvanta::test {

/// What SQLite does to files.
enum class FileOperation { open, write, truncate, sync, remove };

/// Watches, and may refuse, what SQLite does to the files of a database. A sync is seen but does
/// not wait for the disk of this machine, which would take most of a test's time.
class FileObserver {
public:
    FileObserver() = default;
    FileObserver(const FileObserver&) = delete;
    FileObserver& operator=(const FileObserver&) = delete;
    virtual ~FileObserver() = default;

    /// Before anything is done. Any result code but SQLITE_OK is what SQLite is told in place of
    /// it.
    virtual int allow(FileOperation operation, const std::string& path);

    // After it was done.
    virtual void wrote(const std::string& path, std::int64_t offset, std::string_view bytes);
    virtual void truncated(const std::string& path, std::int64_t size);
    virtual void synced(const std::string& path);
    virtual void removed(const std::string& path);
};

/// The system's file layer with an observer before it, under a name that connections ask for.
class FileLayer {
public:
    /// The observer outlives the layer, the layer every connection.
    explicit FileLayer(FileObserver& observer);
    FileLayer(const FileLayer&) = delete;
    FileLayer& operator=(const FileLayer&) = delete;
    ~FileLayer();

    [[nodiscard]] const std::string& name() const;

private:
    struct Registration;
    std::unique_ptr<Registration> registration_;
};

} // namespace orvanta::test
