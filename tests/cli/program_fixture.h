#pragma once

#include "cli/program.h"

#include "support/pseudo_terminal.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <functional>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace varda::test {

using Json = nlohmann::json;

/// A stream that another thread may wait for.
class Output : public std::ostream {
public:
    Output() : std::ostream(nullptr) { rdbuf(&buffer_); }

    std::string text() const { return buffer_.str(); }
    void clearText() { buffer_.str({}); }
    /// Returns when something was written since it was asked for last.
    void waitForMore() { buffer_.waitForMore(); }

private:
    class Buffer : public std::stringbuf {
    public:
        void waitForMore() {
            std::unique_lock lock(mutex_);
            written_.wait_for(lock, std::chrono::seconds(10), [this] { return flushes_ > seen_; });
            seen_ = flushes_;
        }

    protected:
        int sync() override {
            const std::lock_guard lock(mutex_);
            ++flushes_;
            written_.notify_all();
            return 0;
        }

    private:
        std::mutex mutex_;
        std::condition_variable written_;
        int flushes_ = 0;
        int seen_ = 0;
    };

    Buffer buffer_;
};

/// The tool, run in this process.
class ProgramTest : public testing::Test {
protected:
    int run(const std::vector<std::string>& arguments, const std::string& input = {}) {
        return runInto(out, arguments, input);
    }

    int runInto(std::ostream& output, const std::vector<std::string>& arguments,
                const std::string& input = {}) {
        std::istringstream in(input);
        out.clearText();
        error.clearText();
        return cli::run(arguments, {in, output, error});
    }

    /// The output as objects, one a line.
    std::vector<Json> objects() const {
        std::vector<Json> read;
        std::istringstream lines(out.text());
        for (std::string text; std::getline(lines, text);) {
            read.push_back(Json::parse(text));
        }
        return read;
    }

    /// Runs a subcommand that waits for its line, whose far end does something once the port is open.
    int runBeside(const std::vector<std::string>& arguments, const std::function<void()>& farEnd) {
        return runBeside(out, arguments, farEnd);
    }

    int runBeside(std::ostream& output, const std::vector<std::string>& arguments,
                  const std::function<void()>& farEnd) {
        std::thread other([this, &farEnd] {
            error.waitForMore(); // the port is open
            farEnd();
        });
        const int code = runInto(output, arguments);
        other.join();
        return code;
    }

    /// Runs a subcommand that only a signal ends, which comes when the far end has done its part.
    int runUntilEnded(const std::vector<std::string>& arguments, const std::function<void()>& farEnd) {
        return runBeside(arguments, [&farEnd] {
            farEnd();
            std::raise(SIGTERM);
        });
    }

    std::string file(const std::string& name, const std::string& text) {
        std::string path = folder.file(name);
        writeBytes(path, text);
        return path;
    }

    std::string pairsFile() {
        return file("pairs.ini",
                    "[Information]\r\nTotal=1\r\n[Receive]\r\n0=0102030405\r\n[Send]\r\n0=AABBCC\r\n");
    }

    std::string scenarioFile() {
        return file("two.scn", "[Information]\r\nTotal=2\r\n[Scenario]\r\n"
                               "Scenario0=FF FF 21 03 00 00 08 BD 85 \r\n"
                               "Scenario1=FF FF 23 03 00 02 04 C5 20 \r\n");
    }

    TemporaryFolder folder;
    PseudoTerminal line;
    Output out;
    Output error;
};

} // namespace varda::test
