#pragma once

#include <memory>
#include <string>

namespace zint {

/// The lock of a file, by which running programs tell each other that they use it. It ends with its holder,
/// also with a program that is killed.
///
/// It is a file of its own beside the locked one ("x.obc.lock"), for the locked one may be replaced
/// meanwhile.
class FileLock {
public:
    /// Takes the lock of a file, which need not exist yet, and gives back the one that was held. Where
    /// nothing can be locked (a file system without locks, a folder without permission), this succeeds all
    /// the same.
    /// @return false when another holder has it, in this program or in another one; then nothing changes
    bool take(const std::string& path);

    void release() { held_.reset(); }

    /// Whether anybody holds the lock of a file, in this program or in another one. Removes what a program
    /// that was killed has left of its lock.
    static bool isTaken(const std::string& path);

private:
    struct Held {
        virtual ~Held() = default;
    };
    struct HeldFile; ///< as the system has it; its destructor gives the lock back

    static std::string lockFileOf(const std::string& path) { return path + ".lock"; }

    std::unique_ptr<Held> held_;
};

} // namespace zint
