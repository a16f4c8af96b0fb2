#include "core/files/append_file.h"
#include "core/files/atomic_file.h"
#include "core/files/profile_file.h"
#include "core/insight/trace_export.h"
#include "core/pairs/packet_file.h"
#include "core/pairs/packet_table.h"
#include "core/recordings/capture_file.h"
#include "core/recordings/capture_loading.h"
#include "core/runs/monitor_log.h"
#include "core/runs/scenario_file.h"
#include "core/virtual/controller_memory.h"
#include "faults/system_faults.h"
#include "support/child_process_posix.h"
#include "support/manual_clock.h"
#include "support/profile_file_checks.h"
#include "support/raises.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace varda::faults {
namespace {

using test::bytesOf;
using test::oldContent;
using test::writeBytes;

namespace fs = std::filesystem;

/// What is saved, and where the file stood before.
struct Saving {
    std::string name;
    std::string text; ///< as it stands in the file then
    std::function<void(const std::string& path)> save;
    std::function<void(const std::string& path)> prepare = [](const std::string& path) {
        writeBytes(path, oldContent);
    };
    bool isInPlace = false;
};

std::ostream& operator<<(std::ostream& out, const Saving& saving) { return out << saving.name; }

ProfileFile scenario() {
    ProfileFile file;
    storeScenario(std::vector<std::string>(200, "FF FF 21 03 00 00 08 BD 85"), file);
    return file;
}

ProfileFile pairs() {
    PacketTable table;
    const std::vector<std::string> rows(300, "FFFF210300000AB8D5");
    table.replace(rows, rows);
    ProfileFile file;
    storePackets(table, file);
    return file;
}

/// What takes a trace along.
std::string exported(TraceForm form) {
    Trace trace;
    std::vector<Trace::Number> lines;
    for (int number = 0; number < 300; ++number) {
        TraceLine line;
        line.bytes = {0xFF, 0xFF, 0x21, 0x03, 0x00, 0x00, 0x08, 0xBD, 0x85};
        lines.push_back(trace.append(std::move(line)));
    }
    std::string text;
    exportTrace(trace, lines, form, {}, [&text](std::string_view part) { text += part; });
    return text;
}

std::string memory() {
    ControllerMemory memory;
    return memoryText(memory);
}

Saving savingOf(std::string name, const ProfileFile& file) {
    return {std::move(name), file.text(), [file](const std::string& path) { file.save(path); }};
}

Saving savingOf(std::string name, const std::string& text) {
    return {std::move(name), text, [text](const std::string& path) { replaceFile(path, text); }};
}

Saving from(Saving saving, std::function<void(const std::string& path)> prepare) {
    saving.prepare = std::move(prepare);
    return saving;
}

Saving inPlace(Saving saving, std::function<void(const std::string& path)> save) {
    saving.save = std::move(save);
    saving.isInPlace = true;
    return saving;
}

void prepareLink(const std::string& path) {
    writeBytes(path + ".target", oldContent);
    fs::create_symlink(path + ".target", path);
}

std::vector<Saving> replacements() {
    return {savingOf("Over", test::newFile()),
            from(savingOf("New", test::newFile()), [](const std::string&) {}),
            from(savingOf("ThroughALink", test::newFile()), prepareLink),
            savingOf("Scenario", scenario()),
            savingOf("Pairs", pairs()),
            savingOf("TraceAsText", exported(TraceForm::Text)),
            savingOf("TraceAsCsv", exported(TraceForm::Csv)),
            savingOf("TraceAsJsonLines", exported(TraceForm::JsonLines)),
            savingOf("TraceAsHex", exported(TraceForm::Hex)),
            savingOf("TraceAsPcapng", exported(TraceForm::Pcapng)),
            savingOf("Memory", memory())};
}

std::vector<Saving> savings() {
    const std::string csv = exported(TraceForm::Csv);
    std::vector<Saving> all = replacements();
    all.push_back(
        inPlace(savingOf("InPlace", pairs()), [](const std::string& path) { pairs().saveInPlace(path); }));
    all.push_back(
        inPlace(savingOf("TraceInPlace", csv), [csv](const std::string& path) { overwriteFile(path, csv); }));
    return all;
}

std::string nameOfError(int error) {
    return error == EIO ? "Eio" : error == ENOSPC ? "Enospc" : error == EROFS ? "Erofs" : "Emfile";
}

/// The n-th call to the system of a save fails, for n = 1, 2, 3 .. until a save meets no fault.
class SavingCalls : public testing::TestWithParam<std::tuple<Saving, int, bool>> {
protected:
    static constexpr int mostCalls = 200;

    /// @return whether the fault was met
    bool saveWith(CallPlan plan) {
        const Saving& saving = std::get<0>(GetParam());
        const test::TemporaryFolder folder;
        const std::string path = folder.file("table.ini");
        saving.prepare(path);
        const std::string before = bytesOf(path);
        std::optional<RuntimeError> error;
        const bool isMet = met(saving, path, plan, error);
        const bool isDamaged = error && std::string(error->what()).find("damaged") != std::string::npos;
        EXPECT_TRUE(saving.isInPlace || !isDamaged) << "call " << plan.call;
        if (!isDamaged) {
            EXPECT_TRUE(bytesOf(path) == (error ? before : saving.text)) << "call " << plan.call;
        }
        EXPECT_TRUE(!error || std::string(error->what()).find(path) != std::string::npos);
        saving.save(path); // no more faults: for a damaged one, too
        EXPECT_TRUE(bytesOf(path) == saving.text) << "after call " << plan.call;
        return isMet;
    }

private:
    static bool met(const Saving& saving, const std::string& path, CallPlan plan,
                    std::optional<RuntimeError>& error) {
        const SystemFault fault(plan);
        error = test::raisedBy([&] { saving.save(path); });
        return fault.hasStruck();
    }
};

std::string nameOfSaving(const testing::TestParamInfo<SavingCalls::ParamType>& set) {
    const auto& [saving, error, isLasting] = set.param;
    return saving.name + nameOfError(error) + (isLasting ? "ForGood" : "Once");
}

INSTANTIATE_TEST_SUITE_P(Files, SavingCalls,
                         testing::Combine(testing::ValuesIn(savings()),
                                          testing::Values(EIO, ENOSPC, EROFS, EMFILE), testing::Bool()),
                         nameOfSaving);

TEST_P(SavingCalls, EachMayFail) {
    constexpr int fewestCalls = 8;
    int call = 1;
    while (call < mostCalls &&
           saveWith({.call = call, .error = std::get<1>(GetParam()), .isLasting = std::get<2>(GetParam())})) {
        ++call;
    }
    EXPECT_GT(call, fewestCalls) << "the faults were not met";
    EXPECT_LT(call, mostCalls) << "the faults did not end";
}

/// Saves in a process of its own. @return whether that was killed at the call
bool isKilledAt(int call, const Saving& saving, const std::string& path) {
    const pid_t child = test::divideProcess();
    if (child == 0) {
        const SystemFault fault({.call = call});
        saving.save(path);
        ::_exit(0);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFSIGNALED(status);
}

class KilledSaves : public testing::TestWithParam<Saving> {};

INSTANTIATE_TEST_SUITE_P(Files, KilledSaves, testing::ValuesIn(replacements()),
                         [](const auto& set) { return set.param.name; });

TEST_P(KilledSaves, LeaveTheOldFileOrTheNewOne) {
    const std::string& wanted = GetParam().text;
    int kills = 0;
    for (bool isKilled = true; isKilled;) {
        const test::TemporaryFolder folder;
        const std::string path = folder.file("table.ini");
        GetParam().prepare(path);
        const std::string before = bytesOf(path);
        isKilled = isKilledAt(kills + 1, GetParam(), path);
        kills += isKilled ? 1 : 0;
        const std::string found = bytesOf(path);
        EXPECT_TRUE(found == wanted || (isKilled && found == before)) << "killed at call " << kills;
        const auto entries = folder.entries();
        GetParam().save(path); // which clears away what was left
        EXPECT_EQ(bytesOf(path), wanted);
        EXPECT_LE(folder.entries(), std::max<std::ptrdiff_t>(entries, 1));
    }
    EXPECT_GT(kills, 8);
}

/// A log to which a line is written every second.
class LogCalls : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Files, LogCalls, testing::Values(EIO, ENOSPC, EROFS, EMFILE),
                         [](const auto& set) { return nameOfError(set.param); });

/// @return the lines of which it was told that they were written
std::vector<std::string> writeLog(const std::string& path, CallPlan plan, bool& isMet) {
    test::ManualClock clock;
    MonitorLog log(clock);
    std::vector<std::string> written;
    const SystemFault fault(plan);
    for (int number = 0; number < 5; ++number) {
        const std::string line = "line " + std::to_string(number);
        try {
            if (!log.isOpen()) {
                log.open(path);
            }
        } catch (const RuntimeError&) {
            continue;
        }
        if (log.write(line)) {
            written.push_back(line);
        }
    }
    isMet = fault.hasStruck();
    return written;
}

/// The n-th call fails, for n = 1, 2, 3 .. until no fault is met; once, and with all behind it.
/// @param attempt writes with such a fault, looks at what became of it, and tells whether the fault was met
/// @return how many calls there were
int failEach(int error, const std::function<bool(const CallPlan&)>& attempt) {
    int call = 0;
    for (bool isMet = true; isMet;) {
        ++call;
        for (const bool isLasting : {false, true}) {
            isMet = attempt({.call = call, .error = error, .isLasting = isLasting});
        }
    }
    return call - 1;
}

TEST_P(LogCalls, WhatIsToldToBeWrittenIsThere) {
    const int calls = failEach(GetParam(), [](const CallPlan& plan) {
        const test::TemporaryFolder folder;
        const std::string path = folder.file("monitor.log");
        bool isMet = false;
        const auto written = writeLog(path, plan, isMet);
        std::string expected;
        for (const std::string& line : written) {
            expected += line + '\n';
        }
        std::string found = bytesOf(path);
        std::erase_if(found, [last = '\n'](char letter) mutable { // of a line that was cut
            return std::exchange(last, letter) == '\n' && letter == '\n';
        });
        EXPECT_EQ(found, expected) << "call " << plan.call;
        EXPECT_GE(written.size(), plan.isLasting ? 0U : 4U) << "call " << plan.call;
        return isMet;
    });
    EXPECT_GT(calls, 5); // an opening, a look at what was opened, five lines
}

/// A capture of five packets. @return how many of them it was told that they were written
std::size_t writeCapture(const std::string& path, CallPlan plan, bool& isMet) {
    test::ManualClock clock;
    CaptureFile capture(clock);
    const Bytes bytes = {0xFF, 0xFF, 0x23};
    std::size_t written = 0;
    const SystemFault fault(plan);
    try {
        capture.open(path);
        for (int left = 5; left > 0; --left) {
            written +=
                capture.write({.time = {}, .bytes = bytes, .size = bytes.size(), .comment = {}}) ? 1 : 0;
        }
    } catch (const RuntimeError& error) {
        EXPECT_NE(std::string(error.what()), "");
    }
    isMet = fault.hasStruck();
    return written;
}

TEST_P(LogCalls, WhatIsToldToBeCapturedCanBeRead) {
    const int calls = failEach(GetParam(), [](const CallPlan& plan) {
        const test::TemporaryFolder folder;
        const std::string path = folder.file("line.pcapng");
        bool isMet = false;
        const std::size_t written = writeCapture(path, plan, isMet);
        if (written > 0) {
            EXPECT_EQ(loadCapture(path).recording.size(), written) << "call " << plan.call;
        }
        EXPECT_TRUE(isMet || written == 5) << "call " << plan.call;
        return isMet;
    });
    EXPECT_GT(calls, 8);
}

/// What the thread that brings a file to the disk asks for may fail: the file has every line all the same.
TEST_P(LogCalls, OfTheDiskLoseNothing) {
    for (const bool isLasting : {false, true}) {
        for (int call = 1; call < 4; ++call) {
            const test::TemporaryFolder folder;
            const std::string path = folder.file("monitor.log");
            AppendFile file(path);
            const SystemFault fault({.call = call,
                                     .error = GetParam(),
                                     .isLasting = isLasting,
                                     .callers = Callers::OtherThreads});
            for (int wish = 1; wish < 4; ++wish) {
                ASSERT_TRUE(file.append("line\n"));
                file.sync();
                while (fault.calls() < wish) { // the thread may not serve two wishes at once here
                    std::this_thread::yield();
                }
            }
            EXPECT_TRUE(fault.hasStruck());
            EXPECT_EQ(bytesOf(path), "line\nline\nline\n");
        }
    }
}

/// Without a thread, or a handle for it, the system brings the file to the disk in its own time.
TEST_P(LogCalls, ForTheThreadOfTheDiskLoseNothing) {
    for (int call = 1; call < 4; ++call) {
        const test::TemporaryFolder folder;
        const std::string path = folder.file("monitor.log");
        AppendFile file(path);
        {
            const SystemFault fault({.call = call, .error = GetParam()});
            file.sync();
            EXPECT_EQ(fault.hasStruck(), call < 3); // a handle of its own, and the thread
        }
        EXPECT_TRUE(file.append("line\n"));
        file.sync();
        EXPECT_EQ(bytesOf(path), "line\n");
    }
}

/// A save as it must not be: into the file itself.
TEST(SavingCallsCanary, AFileThatIsNeitherOldNorNewIsFound) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("table.ini");
    writeBytes(path, oldContent);
    const SystemFault fault({.call = 2, .error = ENOSPC});
    const int file = ::open(path.c_str(), O_WRONLY | O_TRUNC);
    EXPECT_LT(::write(file, "new", 3), 0);
    ::close(file);
    EXPECT_TRUE(fault.hasStruck());
    EXPECT_EQ(fault.calls(), 3);
    EXPECT_EQ(bytesOf(path), "");
}

} // namespace
} // namespace varda::faults
