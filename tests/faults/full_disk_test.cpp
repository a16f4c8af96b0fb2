#include "core/base/runtime_error.h"
#include "core/runs/monitor_log.h"
#include "support/child_process_posix.h"
#include "support/manual_clock.h"
#include "support/profile_file_checks.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace varda::faults {
namespace {

using test::bytesOf;
using test::newContent;
using test::oldContent;
using test::writeBytes;

constexpr int holds = 0;
constexpr int isWrong = 1;
constexpr int hasNoDisk = 77;

/// A disk in memory on that folder, which this process alone sees.
bool mountDisk(const std::string& folder, const std::string& size) {
    return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("none", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

/// Runs in a process of its own, on a disk of its own. @return what that ended with
int onDisk(const std::string& folder, const std::string& size, const std::function<bool()>& check) {
    const pid_t child = test::divideProcess();
    if (child == 0) {
        if (!mountDisk(folder, size)) {
            ::_exit(hasNoDisk);
        }
        ::_exit(check() ? holds : isWrong);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : isWrong;
}

/// Takes what is left of the disk.
void fill(const std::string& path) {
    const std::string block(4096, 'F');
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT, 0600);
    while (::write(file, block.data(), block.size()) > 0) {
    }
    ::close(file);
}

/// @return the number of the error, 0 where it was saved
int numberOfSaving(const ProfileFile& file, const std::string& path) {
    try {
        file.save(path);
        return 0;
    } catch (const RuntimeError& error) {
        return error.number();
    }
}

class FullDisk : public testing::Test {
protected:
    void expectOn(const std::string& size, const std::function<bool()>& check) {
        const int ended = onDisk(folder_.path(), size, check);
        if (ended == hasNoDisk) {
            GTEST_SKIP() << "only the administrator may have a disk of his own";
        }
        EXPECT_EQ(ended, holds);
    }

    test::TemporaryFolder folder_;
    std::string path_ = folder_.file("table.ini");
};

TEST_F(FullDisk, KeepsTheOldFileAndTellsSo) {
    expectOn("size=64k", [this] {
        writeBytes(path_, oldContent);
        fill(folder_.file("rest"));
        return numberOfSaving(test::newFile(), path_) == run_time_error::diskFull &&
               bytesOf(path_) == oldContent && folder_.entries() == 2;
    });
}

TEST_F(FullDisk, WithoutRoomForANameKeepsTheOldFileAndTellsSo) {
    expectOn("size=64k,nr_inodes=2", [this] { // the folder, and the old file
        writeBytes(path_, oldContent);
        return numberOfSaving(test::newFile(), path_) == run_time_error::diskFull &&
               bytesOf(path_) == oldContent && folder_.entries() == 1;
    });
}

TEST_F(FullDisk, ThatHasRoomAgainTakesTheFile) {
    expectOn("size=64k", [this] {
        writeBytes(path_, oldContent);
        fill(folder_.file("rest"));
        const bool isRefused = numberOfSaving(test::newFile(), path_) != 0;
        ::unlink(folder_.file("rest").c_str());
        return isRefused && numberOfSaving(test::newFile(), path_) == 0 && bytesOf(path_) == newContent;
    });
}

TEST_F(FullDisk, ThatIsReadOnlyKeepsTheOldFileAndTellsSo) {
    expectOn("size=64k", [this] {
        writeBytes(path_, oldContent);
        return ::mount("none", folder_.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0 &&
               numberOfSaving(test::newFile(), path_) == run_time_error::permissionDenied &&
               bytesOf(path_) == oldContent;
    });
}

TEST_F(FullDisk, TellsOfEachLineOfALogThatItDoesNotTake) {
    expectOn("size=64k", [this] {
        test::ManualClock clock;
        MonitorLog log(clock);
        log.open(folder_.file("monitor.log"));
        const std::string line(999, 'L');
        int written = 0;
        while (log.write(line)) {
            ++written;
        }
        const bool isToldAgain = !log.write(line);
        const std::string found = bytesOf(folder_.file("monitor.log"));
        return isToldAgain && written > 60 && written < 66 &&
               found.size() >= std::size_t{1000} * static_cast<std::size_t>(written) &&
               found.size() < std::size_t{1000} * static_cast<std::size_t>(written + 1);
    });
}

} // namespace
} // namespace varda::faults
