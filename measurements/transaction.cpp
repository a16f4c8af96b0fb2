#include "allocation_count.h"
#include "reading.h"
#include "report.h"
#include "side_process.h"
#include "support/event_loop.h"
#include "support/link_ear.h"
#include "support/processor_time.h"
#include "support/pseudo_terminal.h"
#include "support/window_driver.h"
#include "system_calls.h"
#include "turns.h"
#include "window_measurement.h"

#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "window/controls/frame_font.h"
#include "window/shell/page_names.h"

#include <QCheckBox>
#include <QEventLoop>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <poll.h>
#include <unistd.h>

/// What a request and its answer cost the whole window that reads again and again over a pseudo-terminal, and
/// one that is sent by its button; by turns with a bare loop on a line of its own, and with an empty window
/// of Qt's in which the texts of the page change as they do there.
namespace {

using namespace std::chrono_literals;
using varda::Bytes;
using varda::Exchange;
using varda::Outcome;
using varda::bench::print;
using varda::bench::SideProcess;
using varda::bench::Turns;
using varda::test::LinkEar;
using varda::test::PseudoTerminal;
using varda::test::WindowDriver;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr auto period = 200ms;
constexpr auto answerShown = 100ms; ///< behind the request, as the link waits for a burst to be whole
constexpr int usualCount = 20;      ///< of one turn

int transactions = usualCount;

/// Counts how often a window is painted, in however many parts.
class PaintEar : public QObject {
public:
    explicit PaintEar(QWidget& window) { window.installEventFilter(this); }

    int count() const { return count_; }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        count_ += event->type() == QEvent::UpdateRequest ? 1 : 0;
        return false;
    }

private:
    int count_ = 0;
};

/// Something that goes through transactions, one a period.
class Reader {
public:
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    virtual ~Reader() = default;

    virtual void start() = 0;
    virtual void stop() = 0;
    virtual QWidget& window() = 0;

    /// Lets the event loop run until so many more have come to their end.
    void run(int count) {
        left_ = count;
        loop_.exec();
    }

protected:
    void transactionEnded() {
        if (--left_ == 0) {
            loop_.quit();
        }
    }

private:
    int left_ = 0;
    QEventLoop loop_;
};

/// The window, whose page sends by itself.
class ContinuousReader : public Reader {
public:
    ContinuousReader(WindowDriver& driver, const PseudoTerminal& line)
        : driver_(driver), answered_(Outcome::Answered, [this](const Exchange&) { transactionEnded(); }) {
        driver.window().link().observe(answered_);
        varda::bench::startReading(driver, line, static_cast<int>(period.count()));
        ContinuousReader::stop();
    }

    void start() override { box().setChecked(true); }
    void stop() override { box().setChecked(false); }
    QWidget& window() override { return driver_.window(); }

private:
    QCheckBox& box() { return *driver_.find<QCheckBox>("chkRTimer"); }

    WindowDriver& driver_;
    LinkEar answered_;
};

/// The window, whose button is pressed once a period.
class PressingReader : public Reader {
public:
    explicit PressingReader(WindowDriver& driver)
        : driver_(driver),
          button_(driver.find<QPushButton>("cmdRDSend")),
          answered_(Outcome::Answered, [this](const Exchange&) { transactionEnded(); }) {
        driver.window().link().observe(answered_);
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, button_, [this] { button_->click(); });
    }

    void start() override { timer_.start(period); }
    void stop() override { timer_.stop(); }
    QWidget& window() override { return driver_.window(); }

private:
    WindowDriver& driver_;
    QPushButton* button_;
    LinkEar answered_;
    QTimer timer_;
};

/// What Qt takes for it: fields as the page has them, emptied and filled again.
class FieldsOfQt : public Reader {
public:
    explicit FieldsOfQt(const std::string& answer) : answer_(QString::fromStdString(answer)) {
        auto* const layout = new QVBoxLayout(&window_);
        layout->addWidget(&shown_);
        layout->addWidget(&status_);
        layout->addWidget(&received_);
        shown_.setFont(varda::window::frameFont());
        for (QWidget* const field : {static_cast<QWidget*>(&shown_), static_cast<QWidget*>(&status_),
                                     static_cast<QWidget*>(&received_)}) {
            field->setFocusPolicy(Qt::NoFocus); // a caret that blinks is no part of it
        }
        window_.show();
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &window_, [this] { send(); });
    }

    void start() override { timer_.start(period); }
    void stop() override { timer_.stop(); }
    QWidget& window() override { return window_; }

private:
    void send() {
        shown_.clear();
        status_.clear();
        received_.setText(QStringLiteral("0"));
        QTimer::singleShot(answerShown, Qt::PreciseTimer, &window_, [this] { show(); });
    }

    void show() {
        shown_.setPlainText(answer_);
        status_.setText(QString::fromLatin1(varda::window::answeredStatus));
        received_.setText(QStringLiteral("22"));
        transactionEnded();
    }

    QString answer_;
    QWidget window_;
    QPlainTextEdit shown_{&window_};
    QLineEdit status_{&window_};
    QLineEdit received_{&window_};
    QTimer timer_;
};

/// Writes, waits and reads once a period; nothing else.
void readBare(const PseudoTerminal& line, const Bytes& request, std::size_t answerBytes) {
    std::array<std::uint8_t, 1024> answer{};
    auto due = std::chrono::steady_clock::now();
    for (;;) {
        std::size_t came = 0;
        auto done = ::write(line.nearEnd(), request.data(), request.size());
        while (done >= 0 && came < answerBytes) {
            pollfd waiting{line.nearEnd(), POLLIN, 0};
            ::poll(&waiting, 1, -1);
            done = ::read(line.nearEnd(), answer.data() + came, answer.size() - came);
            came += done > 0 ? static_cast<std::size_t>(done) : 0;
        }
        if (done < 0) {
            throw std::runtime_error("The bare loop cannot write and read.");
        }
        std::this_thread::sleep_until(due += period);
    }
}

/// The bare loop on a line of its own, and who answers it.
struct BareLoop {
    BareLoop(const Bytes& request, std::size_t answerBytes)
        : farEnd([this] { varda::bench::answerReads(line); }),
          loop([&] { readBare(line, request, answerBytes); }) {}

    PseudoTerminal line;
    SideProcess farEnd;
    SideProcess loop;
};

/// Of one transaction.
struct Costs {
    double milliseconds = 0;
    double allocations = 0;
    double kibibytes = 0;
    double paintings = 0;
};

Costs costsOf(Reader& reader) {
    reader.start();
    reader.run(2); // whoever begins may have to fill a store first
    const PaintEar paintings(reader.window());
    const auto time = varda::test::processorTime();
    const auto taken = varda::bench::allocations();
    reader.run(transactions);
    const auto [count, bytes] = varda::bench::allocations();
    const Costs costs = {.milliseconds =
                             Milliseconds(varda::test::processorTime() - time).count() / transactions,
                         .allocations = static_cast<double>(count - taken.count) / transactions,
                         .kibibytes = static_cast<double>(bytes - taken.bytes) / 1024 / transactions,
                         .paintings = static_cast<double>(paintings.count()) / transactions};
    reader.stop();
    varda::test::runFor(period);
    return costs;
}

double millisecondsOf(const SideProcess& loop) {
    const auto before = loop.processorTime();
    varda::test::runFor(transactions * period); // the window goes on ticking meanwhile
    return Milliseconds(loop.processorTime() - before).count() / transactions;
}

struct Figure {
    const char* what;
    const char* unit;
    double Costs::*value;
};

constexpr std::array figures = {Figure{"processor time", "ms", &Costs::milliseconds},
                                Figure{"allocations", "", &Costs::allocations},
                                Figure{"memory asked for", "KiB", &Costs::kibibytes},
                                Figure{"repaints of the window", "", &Costs::paintings}};

/// One reader beside Qt's fields and the bare loop.
void measure(const char* what, Reader& reader, FieldsOfQt& fields, const BareLoop& bare) {
    std::array<Turns, figures.size()> besideQt;
    Turns besideLoop;
    for (int turn = 0; turn < varda::bench::turnCount; ++turn) {
        const Costs ours = costsOf(reader);
        const Costs ofQt = costsOf(fields);
        for (std::size_t figure = 0; figure < figures.size(); ++figure) {
            besideQt.at(figure).ours.push_back(ours.*figures.at(figure).value);
            besideQt.at(figure).theirs.push_back(ofQt.*figures.at(figure).value);
        }
        besideLoop.ours.push_back(ours.milliseconds);
        besideLoop.theirs.push_back(millisecondsOf(bare.loop));
    }
    for (std::size_t figure = 0; figure < figures.size(); ++figure) {
        print(std::string(what) + ": " + figures.at(figure).what, "fields of Qt", figures.at(figure).unit,
              besideQt.at(figure));
    }
    print(std::string(what) + ": processor time", "bare loop", "ms", besideLoop);
}

/// One turn, since they are counted.
void countSystemCalls(const char* what, Reader& reader, const BareLoop& bare) {
    reader.start();
    reader.run(2);
    const auto ours = varda::bench::systemCalls(::getpid(), [&] { reader.run(transactions); });
    reader.stop();
    const auto theirs =
        varda::bench::systemCalls(bare.loop.id(), [] { varda::test::runFor(transactions * period); });
    if (ours && theirs) {
        print(std::string(what) + ": system calls", "bare loop", "",
              {{static_cast<double>(*ours) / transactions}, {static_cast<double>(*theirs) / transactions}});
    } else {
        std::printf("System calls are not counted: strace is not there, or may not look.\n");
    }
}

/// @param only what to measure, for a profile: "continuous", "button" or "fields"; everything where it is
/// empty
int run(std::string_view only) {
    const PseudoTerminal line;
    const SideProcess farEnd([&] { varda::bench::answerReads(line); });
    WindowDriver driver;
    ContinuousReader continuous(driver, line);
    PressingReader pressing(driver);
    const Bytes request = varda::bytesOfText(driver.text("txtSendRData"));
    const Bytes answer = varda::Controller().answer(request).value();
    FieldsOfQt fields(varda::hexGroups(answer));
    for (const auto& [name, reader] : {std::pair<std::string_view, Reader*>{"continuous", &continuous},
                                       {"button", &pressing},
                                       {"fields", &fields}}) {
        if (only == name) {
            const Costs costs = costsOf(*reader);
            std::printf("%.3f ms, %.1f allocations, %.1f KiB, %.2f repaints; load %s\n", costs.milliseconds,
                        costs.allocations, costs.kibibytes, costs.paintings,
                        varda::bench::machineLoad().c_str());
            return 0;
        }
    }
    const BareLoop bare(request, answer.size());
    measure("continuous reading", continuous, fields, bare);
    measure("Send pressed", pressing, fields, bare);
    countSystemCalls("continuous reading", continuous, bare);
    countSystemCalls("Send pressed", pressing, bare);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return varda::bench::measureWindow(argc, argv, [&] {
        transactions = argc > 2 ? std::atoi(argv[2]) : usualCount;
        return run(argc > 1 ? argv[1] : "");
    });
}
