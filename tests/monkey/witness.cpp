#include "monkey/witness.h"

#include "core/protocol/independent_check.h"
#include "core/virtual/virtual_line.h"
#include "window/controls/mode_page.h"
#include "window/master/master_page.h"
#include "window/scenario/scenario_panel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTabWidget>

#include <algorithm>

namespace varda::monkey {
namespace {

constexpr int pageOfSimulation = 4;
constexpr int pageOfMonitor = 5;
constexpr std::size_t mostWindows = 40; ///< of the program at a time; each pop-up that was opened once is one

std::string hexText(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789ABCDEF"[byte / 16];
        text += "0123456789ABCDEF"[byte % 16];
        text += ' ';
    }
    return text;
}

/// Its check stands behind as many bytes as its third one says. @return false too where it is too short for
/// that
bool hasRightCheck(const Bytes& frame) {
    const std::size_t covered = frame.size() > 3 ? frame[3] + std::size_t{4} : 0;
    if (covered == 0 || frame.size() < covered + 2) {
        return false;
    }
    const unsigned check = test::frameCheck(frame, covered);
    return frame[covered] == test::low(check) && frame[covered + 1] == test::high(check);
}

bool goesOut(Outcome outcome) {
    return outcome == Outcome::AnsweredByPair || outcome == Outcome::AnsweredFromMemory;
}

} // namespace

Witness::Witness(test::DrivenWindow& window) : window_(window) {
    window.window().link().observe(*this);
    window.window().link().observeCounters(*this);
}

void Witness::find(const std::string& what) {
    if (finding_.empty()) {
        finding_ = what;
    }
}

void Witness::told(const Exchange& exchange) {
    if (exchange.outcome == Outcome::Sent) {
        told_.push_back(exchange.request);
        lastSent_ = exchange.request;
        lookAtRequest(exchange);
    } else if (goesOut(exchange.outcome) && !exchange.answer.empty()) {
        told_.push_back(exchange.answer);
    }
}

void Witness::lookAtRequest(const Exchange& exchange) {
    const std::string sent = hexText(exchange.request);
    const auto* const scenario = window_.window().findChild<ScenarioPanel*>();
    if (const auto line = scenario->lineBeingSent()) {
        const std::string wanted = scenario->line(static_cast<int>(*line)) + " ";
        if (wanted.find(sent) == std::string::npos) {
            find("a run sent " + sent + "for the line " + wanted);
        }
        return;
    }
    if (!hasRightCheck(exchange.request)) {
        find("a request with a wrong check went out: " + sent);
    }
    const ModePage* const page = pageOf(exchange.mode);
    const std::string shown = page != nullptr ? page->requestText() : "no page";
    const bool isMixed = exchange.mode == Mode::MixedRead || exchange.mode == Mode::MixedWrite;
    if (shown !=
        (isMixed ? sent.substr(0, sent.size() - 3) : sent)) { // a mixed frame has a byte more on the line
        find("sent " + sent + "and shows " + shown);
    }
}

void Witness::counted(Counter /*counter*/, int value) {
    if (value < 0) {
        find("a counter shows " + std::to_string(value));
    }
}

const ModePage* Witness::pageOf(Mode mode) {
    for (const auto* const page : window_.window().findChildren<MasterPage*>()) {
        if (page->serves(mode)) {
            return page;
        }
    }
    return nullptr;
}

void Witness::lookAtLine() {
    const std::vector<Bytes> told = std::exchange(told_, {});
    const auto written = window_.farEnd().takeWritten();
    const bool wereFaults = std::exchange(areFaults_, window_.window().bench().faults().isActive());
    const bool isVirtual = window_.window().link().port().commPort() == virtualPortName;
    if (isVirtual || wereFaults || areFaults_) {
        return; // the embedded controller got it, or it was altered on purpose
    }
    const bool isSame = std::equal(told.begin(), told.end(), written.begin(), written.end(),
                                   [](const Bytes& one, const auto& other) { return one == other.bytes; });
    if (!isSame) {
        find("told of " + std::to_string(told.size()) + " frames, " + std::to_string(written.size()) +
             " others were written");
    }
}

void Witness::lookAtMode() {
    const int shown = window_.find<QTabWidget>("tabMode")->currentIndex();
    if (!window_.find<QAbstractButton>("optMode_" + std::to_string(shown))->isChecked()) {
        find("the option of the shown page is not chosen");
    }
    const Mode mode = window_.window().link().state().CommMode;
    const auto* const page = pageOf(mode);
    const bool fits = mode == Mode::Scenario     ? true
                      : mode == Mode::Simulation ? shown == pageOfSimulation
                      : mode == Mode::Monitoring || mode == Mode::MonitorIdle
                          ? shown == pageOfMonitor
                          : page != nullptr && page->isVisible();
    if (!fits && window_.window().isVisible()) {
        find("the link is in mode " + std::to_string(static_cast<int>(mode)) + " and page " +
             std::to_string(shown) + " is shown");
    }
}

void Witness::lookAtLink() {
    const LinkState& link = window_.window().link().state();
    if (link.RxCount < 0 || link.RxExpected < 0 || link.WaitTicks < 0) {
        find("the link counts " + std::to_string(link.RxCount) + " of " + std::to_string(link.RxExpected) +
             " bytes, " + std::to_string(link.WaitTicks) + " ticks");
    }
}

void Witness::lookAtDesktop() {
    std::size_t shown = 0;
    for (const QWidget* const widget : QApplication::topLevelWidgets()) {
        const auto* const box = qobject_cast<const QMessageBox*>(widget);
        if (box != nullptr && box->text().startsWith(QStringLiteral("A defect of this program"))) {
            find(box->text().toStdString());
        }
        shown += widget->isVisible() ? 1 : 0;
    }
    if (shown > mostWindows) {
        find(std::to_string(shown) + " windows are open");
    }
}

std::string Witness::finding() {
    lookAtLine();
    lookAtMode();
    lookAtLink();
    lookAtDesktop();
    return std::exchange(finding_, {});
}

} // namespace varda::monkey
