#include "tests/platform/linux/defaults/support/FileLayer.h"

#include <atomic>
#include <sqlite3.h>

namespace orvanta::test {
namespace {

/// What SQLite holds for an open file; the system's own record stands behind it.
struct ObservedFile {
    sqlite3_file base;
    FileObserver* observer;
    std::string* path;

    [[nodiscard]] sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

ObservedFile& observed(sqlite3_file* file) {
    return *reinterpret_cast<ObservedFile*>(file);
}

const sqlite3_io_methods& methodsOf(sqlite3_file* file) {
    return *observed(file).real()->pMethods;
}

int close(sqlite3_file* file) {
    const int result = methodsOf(file).xClose(observed(file).real());
    delete observed(file).path;
    return result;
}

int read(sqlite3_file* file, void* bytes, int count, sqlite3_int64 offset) {
    return methodsOf(file).xRead(observed(file).real(), bytes, count, offset);
}

int write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    ObservedFile& it = observed(file);
    int result = it.observer->allow(FileOperation::write, *it.path);
    if (result == SQLITE_OK)
        result = methodsOf(file).xWrite(it.real(), bytes, count, offset);
    if (result == SQLITE_OK)
        it.observer->wrote(*it.path, offset,
                           {static_cast<const char*>(bytes), static_cast<std::size_t>(count)});
    return result;
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
    ObservedFile& it = observed(file);
    int result = it.observer->allow(FileOperation::truncate, *it.path);
    if (result == SQLITE_OK)
        result = methodsOf(file).xTruncate(it.real(), size);
    if (result == SQLITE_OK)
        it.observer->truncated(*it.path, size);
    return result;
}

int sync(sqlite3_file* file, int /*flags*/) {
    ObservedFile& it = observed(file);
    const int result = it.observer->allow(FileOperation::sync, *it.path);
    if (result == SQLITE_OK)
        it.observer->synced(*it.path);
    return result;
}

int fileSize(sqlite3_file* file, sqlite3_int64* size) {
    return methodsOf(file).xFileSize(observed(file).real(), size);
}

int lock(sqlite3_file* file, int level) {
    return methodsOf(file).xLock(observed(file).real(), level);
}

int unlock(sqlite3_file* file, int level) {
    return methodsOf(file).xUnlock(observed(file).real(), level);
}

int checkReservedLock(sqlite3_file* file, int* result) {
    return methodsOf(file).xCheckReservedLock(observed(file).real(), result);
}

int fileControl(sqlite3_file* file, int operation, void* argument) {
    return methodsOf(file).xFileControl(observed(file).real(), operation, argument);
}

int sectorSize(sqlite3_file* file) {
    return methodsOf(file).xSectorSize(observed(file).real());
}

int deviceCharacteristics(sqlite3_file* file) {
    return methodsOf(file).xDeviceCharacteristics(observed(file).real());
}

int shmMap(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
    return methodsOf(file).xShmMap(observed(file).real(), page, size, extend, memory);
}

int shmLock(sqlite3_file* file, int offset, int count, int flags) {
    return methodsOf(file).xShmLock(observed(file).real(), offset, count, flags);
}

void shmBarrier(sqlite3_file* file) {
    methodsOf(file).xShmBarrier(observed(file).real());
}

int shmUnmap(sqlite3_file* file, int deleteFlag) {
    return methodsOf(file).xShmUnmap(observed(file).real(), deleteFlag);
}

/// Without mapped pages, which would be written past the observer.
constexpr sqlite3_io_methods kMethods{
    .iVersion = 2,
    .xClose = close,
    .xRead = read,
    .xWrite = write,
    .xTruncate = truncate,
    .xSync = sync,
    .xFileSize = fileSize,
    .xLock = lock,
    .xUnlock = unlock,
    .xCheckReservedLock = checkReservedLock,
    .xFileControl = fileControl,
    .xSectorSize = sectorSize,
    .xDeviceCharacteristics = deviceCharacteristics,
    .xShmMap = shmMap,
    .xShmLock = shmLock,
    .xShmBarrier = shmBarrier,
    .xShmUnmap = shmUnmap,
    .xFetch = nullptr,
    .xUnfetch = nullptr,
};

} // namespace

struct FileLayer::Registration {
    explicit Registration(FileObserver& observerOfAll);
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    ~Registration() { sqlite3_vfs_unregister(&vfs); }

    static Registration& of(sqlite3_vfs* vfs) { return *static_cast<Registration*>(vfs->pAppData); }

    static int open(sqlite3_vfs* vfs, sqlite3_filename name, sqlite3_file* file, int flags,
                    int* outFlags);
    static int remove(sqlite3_vfs* vfs, const char* name, int syncFolder);

    FileObserver& observer;
    sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
    std::string name;
    sqlite3_vfs vfs = *system;
};

FileLayer::Registration::Registration(FileObserver& observerOfAll) : observer(observerOfAll) {
    static std::atomic<int> count = 0;
    name = "observed-" + std::to_string(++count);
    vfs.szOsFile = static_cast<int>(sizeof(ObservedFile)) + system->szOsFile;
    vfs.zName = name.c_str();
    vfs.pAppData = this;
    vfs.xOpen = open;
    vfs.xDelete = remove;
    sqlite3_vfs_register(&vfs, 0);
}

int FileLayer::Registration::open(sqlite3_vfs* vfs, sqlite3_filename name, sqlite3_file* file,
                                  int flags, int* outFlags) {
    Registration& self = of(vfs);
    const std::string path = name != nullptr ? name : "";
    ObservedFile& it = observed(file);
    it.base.pMethods = nullptr;
    int result = self.observer.allow(FileOperation::open, path);
    if (result == SQLITE_OK)
        result = self.system->xOpen(self.system, name, it.real(), flags, outFlags);
    if (result != SQLITE_OK)
        return result;
    it.observer = &self.observer;
    it.path = new std::string(path);
    it.base.pMethods = &kMethods;
    return SQLITE_OK;
}

int FileLayer::Registration::remove(sqlite3_vfs* vfs, const char* name, int syncFolder) {
    Registration& self = of(vfs);
    int result = self.observer.allow(FileOperation::remove, name);
    if (result == SQLITE_OK)
        result = self.system->xDelete(self.system, name, syncFolder);
    if (result == SQLITE_OK)
        self.observer.removed(name);
    return result;
}

int FileObserver::allow(FileOperation /*operation*/, const std::string& /*path*/) {
    return SQLITE_OK;
}

void FileObserver::wrote(const std::string& /*path*/, std::int64_t /*offset*/,
                         std::string_view /*bytes*/) {}

void FileObserver::truncated(const std::string& /*path*/, std::int64_t /*size*/) {}

void FileObserver::synced(const std::string& /*path*/) {}

void FileObserver::removed(const std::string& /*path*/) {}

FileLayer::FileLayer(FileObserver& observer)
    : registration_(std::make_unique<Registration>(observer)) {}

FileLayer::~FileLayer() = default;

const std::string& FileLayer::name() const {
    return registration_->name;
}

} // namespace orvanta::test
