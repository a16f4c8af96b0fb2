#include "core/recordings/capture_file.h"

#include "core/recordings/capture_loading.h"
#include "core/recordings/recordings.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace varda::test {
namespace {

/// A disk that is full from some size of a file on.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &before_), 0);
        const struct rlimit small = {bytes, before_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() {
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &before_), 0);
        std::signal(SIGXFSZ, signal_);
    }

private:
    struct rlimit before_ {};
    void (*signal_)(int);
};

TEST(CaptureFilePosix, AFullDiskIsToldAndWhatCameBeforeCanBeRead) {
    const TemporaryFolder folder;
    const std::string path = folder.file("line.pcapng");
    ManualClock clock;
    CaptureFile file(clock);
    file.open(path);
    std::size_t written = 0;
    {
        const SmallDisk disk(1000);
        while (file.write({recordingBegin, true, wordRequest, wordRequest.size(), ""})) {
            ASSERT_LT(++written, 100U);
        }
    }
    EXPECT_FALSE(file.write({recordingBegin, true, wordRequest, wordRequest.size(), ""}))
        << "not behind a stump";
    const ReadCapture read = loadCapture(path);
    EXPECT_TRUE(read.isCut);
    EXPECT_EQ(read.recording.size(), written);
    EXPECT_GT(written, 5U);
}

} // namespace
} // namespace varda::test
