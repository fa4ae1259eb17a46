#pragma once

#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sys/stat.h>
#include <vector>

namespace day {

/// Numbers by chance, the same ones for the same seed.
struct Random
{
    uint64_t state = 0;

    uint64_t operator()()
    {
        auto mixed = state += 0x9E3779B97F4A7C15;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
        return mixed ^ (mixed >> 31);
    }
    int below(int count) { return static_cast<int>((*this)() % static_cast<unsigned>(count)); }
};

/// A disk between SQLite, whose default one it is, and the files, which are to lie in memory.
///
/// It fails as it is told, and it knows of each file what was synced: a power cut loses the rest,
/// by chance and sector by sector.
class FaultyDisk
{
public:
    enum class Fault { None, Error, Full, Locked };

    FaultyDisk();

    void format();
    /// Lets calls fail that the fault is about: so many, 0 for all, behind so many that succeed.
    void fail(Fault newFault, int after = 0, int times = 0)
    {
        fault = newFault;
        callsToFault = after;
        faultsLeft = times;
    }
    /// The process dies after so many calls, of `isDying` too; then it changes no file any more.
    void killAfter(int calls) { callsToLive = calls; }
    bool isDying() { return (callsToLive -= callsToLive > 0 ? 1 : 0) == 0; }
    bool isDead() const { return callsToLive == 0; }
    bool isSound() const { return fault == Fault::None; }
    /// The next process finds what was written or, after a power cut, what was synced and by chance
    /// a part of the rest. All files must be closed.
    void revive(Random *powerCut);
    /// Replaces a page, from 1, by garbage.
    void spoil(const std::string &file, int page, Random &random);

    std::function<int64_t()> clock;       ///< Milliseconds since 1970.
    bool isLookedAt = false;              ///< By the test: nothing fails.
    int syncs = 0, turns = 0, faults = 0; ///< Turns: SQLite ends or begins a log.

private:
    enum class Call { Read, Write, Sync, Lock, Other };
    struct Write
    {
        int64_t at;
        std::vector<char> bytes;
        bool isEnd; ///< The file was cut there.
    };
    struct Node
    {
        std::string name;
        std::vector<char> synced;
        std::vector<Write> pending;
    };
    struct File : sqlite3_file
    {
        Node *node;
        bool isMain;
    };

    static sqlite3_file *real(sqlite3_file *file) { return static_cast<File *>(file) + 1; }
    static void put(std::vector<char> &content, const Write &write);
    static int change(sqlite3_file *file, const void *bytes, int size, int64_t at, bool isEnd);
    template<Call call, auto method, typename... Arguments>
    static int forward(sqlite3_file *file, Arguments... arguments);
    static sqlite3_io_methods methods();
    int failure(Call call);

    Fault fault = Fault::None;
    int callsToFault = 0, faultsLeft = 0;
    int callsToLive = -1; ///< Below 0: it does not die.
    std::map<ino_t, Node> nodes;
    std::vector<decltype(nodes)::node_type> unlinked;
    Random random; ///< What SQLite is given.
};

inline FaultyDisk disk;

} // namespace day
