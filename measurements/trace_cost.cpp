#include "core/insight/link_statistics.h"
#include "core/insight/register_watch.h"
#include "core/insight/trace_export.h"
#include "core/insight/trace_recorder.h"
#include "core/insight/trace_view.h"
#include "core/insight/verdict_words.h"
#include "core/link/serial_link.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "support/fake_port.h"
#include "support/manual_clock.h"
#include "support/processor_time.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

/// What the trace, the statistics and the watch cost: prints processor time, which belongs to a machine.
namespace {

using namespace varda;
using test::FakeWire;
using test::ManualClock;

const Bytes request = bytesOfText("05 00 23 03 00 02 02 0B 22 ");
const Bytes answer = bytesOfText("00 05 A3 04 34 12 CD AB 47 42 ");

template <typename Work>
double secondsOf(Work&& work) {
    const auto before = test::processorTime();
    work();
    return (test::processorTime() - before).count();
}

enum class Insight { None, Closed, Open };

/// A link with everything that may look at it, on a line in memory.
class Bench {
public:
    explicit Bench(Insight insight)
        : port_(insight == Insight::None ? bare() : traced(bare(), recorder_, clock_)) {
        port_.setEventHandler([this](CommEvent event, const std::string&) { link_.commPLC_OnComm(event); });
        link_.enterMode(Mode::WordRead);
        if (insight != Insight::None) {
            link_.observe(recorder_);
            link_.observe(statistics_);
            link_.observe(watch_);
        }
        if (insight == Insight::Open) {
            recorder_.open();
            statistics_.open();
            watch_.open();
        }
        port_.open();
    }

    void exchange() {
        wire_.forgetCalls();
        link_.startRequest();
        link_.SendRequest(request, static_cast<int>(answer.size()));
        wire_.receiveAt(clock_.now(), answer);
        wire_.raiseReceived();
        clock_.advance(100);
    }

    Trace& trace() { return trace_; }

private:
    MSComm::LineFactory bare() {
        return [this](const std::string& name) { return std::make_unique<FakeWire::NearEnd>(wire_, name); };
    }

    ManualClock clock_;
    FakeWire wire_;
    Trace trace_;
    TraceRecorder recorder_{trace_, clock_};
    LinkStatistics statistics_;
    RegisterWatch watch_;
    MSComm port_;
    SerialLink link_{port_, clock_};
};

double microsecondsPerExchange(Insight insight, int exchanges) {
    double least = 1e9;
    for (int round = 0; round < 5; ++round) {
        Bench bench(insight);
        least = std::min(least, secondsOf([&] {
                             for (int count = 0; count < exchanges; ++count) {
                                 bench.exchange();
                             }
                         }));
    }
    return least / exchanges * 1e6;
}

void printExchanges() {
    constexpr int exchanges = 60'000;
    constexpr double bitsOfByte = 10;
    const double bare = microsecondsPerExchange(Insight::None, exchanges);
    const double closed = microsecondsPerExchange(Insight::Closed, exchanges);
    const double open = microsecondsPerExchange(Insight::Open, exchanges);
    std::printf("an exchange of %zu bytes: %.3f us without, %.3f us closed, %.3f us open\n",
                request.size() + answer.size(), bare, closed, open);
    const double perSecond = 38400 / bitsOfByte / static_cast<double>(request.size() + answer.size());
    std::printf("38400 baud without a pause: %.0f exchanges a second, open %.4f %% of a core\n", perSecond,
                perSecond * (open - bare) * 1e-4);
}

void printNearest() {
    for (const int pairs : {2'000, 20'000, 100'000}) {
        PacketTable table;
        std::vector<std::string> requests;
        for (int count = 0; count < pairs; ++count) {
            const std::string other = hex(count * 40'503 & 0xFFFF, 4); // none of them is near
            requests.push_back(std::string(other).append(other).append(other).append("990000"));
        }
        table.replace(requests, std::vector<std::string>(requests.size(), "00"));
        const double seconds = secondsOf([&] { nearestPair(table, request, request.size()); });
        std::printf("nearest of %d pairs: %.3f ms\n", pairs, seconds * 1e3);
    }
}

void printLines() {
    Bench bench(Insight::Open);
    while (bench.trace().size() < Trace::mostLines) {
        bench.exchange();
    }
    TraceView view(bench.trace());
    view.update({bench.trace().begin(), bench.trace().end(), {}});
    for (const char* const typed :
         {"", "sent", "station 5", "hex 34 12", "word read", "W 0001", "wrong", "wrong"}) {
        const double seconds = secondsOf([&] {
            view.setFilter(readTraceFilter(typed));
            view.fill();
        });
        std::printf("filter \"%s\" over %zu lines: %.1f ms, %zu pass\n", typed, bench.trace().size(),
                    seconds * 1e3, view.rows());
    }
    std::vector<Trace::Number> all;
    for (Trace::Number number = bench.trace().begin(); number < bench.trace().end(); ++number) {
        all.push_back(number);
    }
    for (const TraceForm form : {TraceForm::Text, TraceForm::Csv, TraceForm::JsonLines, TraceForm::Pcapng}) {
        std::size_t bytes = 0;
        const double seconds = secondsOf([&] {
            exportTrace(bench.trace(), all, form, noNames(),
                        [&](std::string_view part) { bytes += part.size(); });
        });
        std::printf("export %d: %.0f ms, %.1f MB\n", static_cast<int>(form), seconds * 1e3,
                    static_cast<double>(bytes) / 1e6);
    }
}

} // namespace

int main() {
    printExchanges();
    printNearest();
    printLines();
    return 0;
}
