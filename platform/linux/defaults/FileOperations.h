#pragma once

#include <filesystem>

namespace orvanta {

/// What is done to files as wholes. Every operation throws std::system_error when it fails.
class FileOperations {
public:
    FileOperations() = default;
    FileOperations(const FileOperations&) = delete;
    FileOperations& operator=(const FileOperations&) = delete;
    virtual ~FileOperations() = default;

    /// With all folders on the way; those that are made are the user's alone and on the disk for
    /// good.
    virtual void makeFolder(const std::filesystem::path& folder) = 0;
    /// An empty file that only the user can read. False where something stands there already.
    virtual bool makeFile(const std::filesystem::path& file) = 0;
    /// Takes the others' rights to a file.
    virtual void makePrivate(const std::filesystem::path& file) = 0;
    /// A second name for a file, where the file system can do that. False where it cannot.
    virtual bool link(const std::filesystem::path& file, const std::filesystem::path& name) = 0;
    /// Nothing where nothing stands.
    virtual void remove(const std::filesystem::path& file) = 0;
    /// Replaces what stands at `to`.
    virtual void rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    /// Returns when the disk has a file's content, or a folder's list of files, for good.
    virtual void sync(const std::filesystem::path& fileOrFolder) = 0;
};

/// The system's own.
class SystemFileOperations final : public FileOperations {
public:
    void makeFolder(const std::filesystem::path& folder) override;
    bool makeFile(const std::filesystem::path& file) override;
    void makePrivate(const std::filesystem::path& file) override;
    bool link(const std::filesystem::path& file, const std::filesystem::path& name) override;
    void remove(const std::filesystem::path& file) override;
    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void sync(const std::filesystem::path& fileOrFolder) override;
};

} // namespace orvanta
