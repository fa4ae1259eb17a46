#include "faultydisk.h"

namespace day {

namespace {

/// SQLite's own files; asked for first while they are the default.
sqlite3_vfs *files()
{
    static auto *const found = sqlite3_vfs_find(nullptr);
    return found;
}

ino_t inodeOf(const char *name)
{
    struct stat status = {};
    return ::stat(name, &status) == 0 ? status.st_ino : 0;
}

} // namespace

FaultyDisk::FaultyDisk()
{
    static auto own = *files();
    static const auto table = methods();
    own.iVersion = 2;
    own.szOsFile += static_cast<int>(sizeof(File));
    own.zName = "faultydisk";
    own.xOpen = [](sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *got) {
        file->pMethods = nullptr;
        real(file)->pMethods = nullptr;
        if (disk.failure(Call::Other) || files()->xOpen(files(), name, real(file), flags, got))
            return SQLITE_CANTOPEN;
        auto &opened = *static_cast<File *>(file);
        opened.pMethods = &table;
        opened.node = &disk.nodes[name ? inodeOf(name) : 0];
        opened.node->name = name ? name : "";
        opened.isMain = (flags & SQLITE_OPEN_MAIN_DB) != 0;
        return SQLITE_OK;
    };
    own.xDelete = [](sqlite3_vfs *, const char *name, int sync) {
        if (const auto failure = disk.failure(Call::Other))
            return failure;
        disk.unlinked.push_back(disk.nodes.extract(inodeOf(name))); // others may have it open
        return files()->xDelete(files(), name, sync);
    };
    own.xRandomness = [](sqlite3_vfs *, int size, char *bytes) {
        std::generate_n(bytes, size, [] { return static_cast<char>(disk.random()); });
        return size;
    };
    own.xSleep = [](sqlite3_vfs *, int microseconds) { return microseconds; };
    own.xCurrentTimeInt64 = [](sqlite3_vfs *, sqlite3_int64 *now) {
        *now = 210'866'760'000'000 + disk.clock(); // since the Julian day 0
        return SQLITE_OK;
    };
    sqlite3_vfs_register(&own, 1);
}

/// Calls the method of the real file, unless it is to fail.
template<FaultyDisk::Call call, auto method, typename... Arguments>
int FaultyDisk::forward(sqlite3_file *file, Arguments... arguments)
{
    const auto failure = disk.failure(call);
    return failure ? failure : (real(file)->pMethods->*method)(real(file), arguments...);
}

sqlite3_io_methods FaultyDisk::methods()
{
    using Methods = sqlite3_io_methods;
    Methods table{};
    table.iVersion = 2;
    table.xClose = [](sqlite3_file *file) { return real(file)->pMethods->xClose(real(file)); };
    table.xRead = forward<Call::Read, &Methods::xRead>;
    table.xWrite = [](sqlite3_file *file, const void *bytes, int size, sqlite3_int64 at) {
        return change(file, bytes, size, at, false);
    };
    table.xTruncate = [](sqlite3_file *file, sqlite3_int64 at) {
        return change(file, nullptr, 0, at, true);
    };
    table.xSync = [](sqlite3_file *file, int flags) {
        const auto failure = forward<Call::Sync, &Methods::xSync>(file, flags);
        auto &node = *static_cast<File *>(file)->node;
        if (failure) // the next one makes up for it; SQLite knows no other disk
            return failure;
        ++disk.syncs;
        for (const auto &write : node.pending)
            put(node.synced, write);
        node.pending.clear();
        return SQLITE_OK;
    };
    table.xFileSize = forward<Call::Other, &Methods::xFileSize>;
    table.xLock = [](sqlite3_file *file, int level) {
        return level > SQLITE_LOCK_SHARED ? forward<Call::Lock, &Methods::xLock>(file, level)
                                          : forward<Call::Other, &Methods::xLock>(file, level);
    };
    table.xUnlock = [](sqlite3_file *file, int level) {
        return real(file)->pMethods->xUnlock(real(file), level);
    };
    table.xCheckReservedLock = forward<Call::Other, &Methods::xCheckReservedLock>;
    table.xFileControl = [](sqlite3_file *file, int what, void *value) {
        return what == SQLITE_FCNTL_HAS_MOVED // a file that was replaced takes no log along
                   ? real(file)->pMethods->xFileControl(real(file), what, value)
                   : SQLITE_NOTFOUND;
    };
    table.xSectorSize = [](sqlite3_file *) { return 4096; };
    table.xDeviceCharacteristics = [](sqlite3_file *) { return SQLITE_IOCAP_POWERSAFE_OVERWRITE; };
    table.xShmMap = forward<Call::Other, &Methods::xShmMap>;
    table.xShmLock = [](sqlite3_file *file, int lock, int count, int flags) {
        const auto isWriter = lock == 0 && (flags & SQLITE_SHM_EXCLUSIVE) != 0;
        const auto failure = (flags & SQLITE_SHM_UNLOCK) != 0
                                 ? SQLITE_OK
                                 : disk.failure(isWriter ? Call::Lock : Call::Other);
        return failure ? failure : real(file)->pMethods->xShmLock(real(file), lock, count, flags);
    };
    table.xShmBarrier = [](sqlite3_file *file) { real(file)->pMethods->xShmBarrier(real(file)); };
    table.xShmUnmap = [](sqlite3_file *file, int remove) {
        return real(file)->pMethods->xShmUnmap(real(file), remove);
    };
    return table;
}

int FaultyDisk::change(sqlite3_file *file, const void *bytes, int size, int64_t at, bool isEnd)
{
    const auto isAlive = !disk.isDead();
    const auto failure = disk.failure(Call::Write);
    if (failure && (failure == SQLITE_FULL || !isAlive))
        return failure;
    size /= failure ? 2 : 1; // a write that fails or that the process dies in has half happened
    const auto &own = *static_cast<File *>(file);
    const auto *const begin = static_cast<const char *>(bytes);
    own.node->pending.push_back({at, {begin, begin + size}, isEnd});
    disk.turns += own.isMain || at == 0 ? 1 : 0;
    const auto *const to = real(file)->pMethods;
    const auto changed =
        isEnd ? to->xTruncate(real(file), at) : to->xWrite(real(file), bytes, size, at);
    return failure ? failure : changed;
}

void FaultyDisk::format()
{
    nodes.clear();
    unlinked.clear();
    random.state = 0;
    callsToLive = -1;
    isLookedAt = false;
    fail(Fault::None);
}

int FaultyDisk::failure(Call call)
{
    if (isLookedAt || (callsToLive < 0 && fault == Fault::None))
        return SQLITE_OK;
    if (isDying())
        return SQLITE_IOERR;
    const auto isAbout = fault == Fault::Error || (fault == Fault::Full && call == Call::Write) ||
                         (fault == Fault::Locked && call == Call::Lock);
    if (!isAbout || callsToFault-- > 0)
        return SQLITE_OK;
    callsToFault = 0;
    ++faults;
    const auto met = fault;
    if (faultsLeft > 0 && --faultsLeft == 0)
        fault = Fault::None;
    return met == Fault::Error ? SQLITE_IOERR : met == Fault::Full ? SQLITE_FULL : SQLITE_BUSY;
}

void FaultyDisk::put(std::vector<char> &content, const Write &write)
{
    const auto end = static_cast<size_t>(write.at) + write.bytes.size();
    if (write.isEnd || content.size() < end)
        content.resize(end);
    std::copy(write.bytes.begin(), write.bytes.end(), content.begin() + write.at);
}

void FaultyDisk::revive(Random *powerCut)
{
    constexpr int64_t sector = 512;
    callsToLive = -1;
    for (auto &[inode, node] : nodes) {
        if (!powerCut || node.pending.empty() || inodeOf(node.name.c_str()) != inode)
            continue;
        for (const auto &write : node.pending) {
            const auto size = static_cast<int64_t>(write.bytes.size());
            if (write.isEnd && powerCut->below(2) == 0)
                put(node.synced, write);
            for (int64_t begin = 0, end = 0; begin < size; begin = end) {
                end = std::min(size, begin + sector - (write.at + begin) % sector);
                const auto bytes = write.bytes.begin();
                if (powerCut->below(2) == 0)
                    put(node.synced, {write.at + begin, {bytes + begin, bytes + end}, false});
            }
        }
        node.pending.clear();
        std::ofstream(node.name, std::ios::trunc | std::ios::binary)
            .write(node.synced.data(), static_cast<std::streamsize>(node.synced.size()));
    }
}

void FaultyDisk::spoil(const std::string &file, int page, Random &chance)
{
    constexpr int64_t size = 4096;
    Write garbage{(page - 1) * size, std::vector<char>(size), false};
    std::generate(garbage.bytes.begin(), garbage.bytes.end(),
                  [&] { return static_cast<char>(chance()); });
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.seekp(garbage.at).write(garbage.bytes.data(), size);
    put(nodes[inodeOf(file.c_str())].synced, garbage);
}

} // namespace day
