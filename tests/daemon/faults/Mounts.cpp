#include "tests/daemon/faults/Mounts.h"

#include <sys/mount.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/process/ChildProcess.h"

namespace fs = std::filesystem;

namespace {

using Command = std::vector<std::string>;

Command joined(Command first, const Command& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

dev_t deviceOf(const fs::path& path) {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_dev;
}

// Returns true if mounts work under the command `space` and are not visible outside of it.
bool mountsIn(const Command& space) {
    auto path = (fs::temp_directory_path() / "corvane-mount-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
        return false;
    }
    const bool mounts =
        ChildProcess::run({.command = joined(space, {"mount", "-t", "tmpfs", "none", path})})
            .status == 0;
    const bool isSeenHere = deviceOf(path) != deviceOf(fs::path(path).parent_path());
    if (isSeenHere) {
        umount2(path.c_str(), MNT_DETACH);
    }
    fs::remove(path);
    return mounts && !isSeenHere;
}

// Returns the first command that works. Only the superuser can create a mount namespace; with a
// user namespace, any user can. In a chroot, unshare can't make the mounts private, but they may be
// private already.
Command findSpace() {
    for (const Command& space : {Command{"unshare", "-m"},
                                 {"unshare", "-Urm"},
                                 {"unshare", "-m", "--propagation", "unchanged"}}) {
        if (mountsIn(space)) {
            return space;
        }
    }
    return {};
}

}  // namespace

Command starterWithMounts(const std::string& script) {
    static const Command space = findSpace();
    return space.empty() ? space
                         : joined(space, {"sh", "-c", "set -e; " + script + "; exec \"$@\"", "sh"});
}
