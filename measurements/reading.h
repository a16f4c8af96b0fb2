#pragma once

#include "support/pseudo_terminal.h"
#include "support/window_driver.h"

#include "core/virtual/controller.h"

#include <chrono>
#include <functional>
#include <span>
#include <string>

namespace varda::bench {

/// What is read again and again: the first words of a page of registers.
constexpr int wordsRead = 8;

/// Opens the line and reads on it, once in every `period`.
inline void startReading(test::WindowDriver& driver, const test::PseudoTerminal& line, int period) {
    driver.click("optMode_0");
    driver.click("optRead_1");
    driver.choose("cbRegister", "W");
    driver.choose("cbRegAddress", "0000");
    driver.choose("cbRLength", std::to_string(wordsRead));
    driver.paste("txtReadTimerValue", std::to_string(period));
    driver.openPort(line.path());
    driver.click("chkRTimer");
}

/// Answers single reads at the far end as a controller does, until that is over.
inline void answerReads(
    const test::PseudoTerminal& line, const std::function<bool()>& isOver = [] { return false; }) {
    constexpr std::size_t requestBytes = 9;
    Controller controller;
    Bytes waiting; // after a stall of the window more than one request may come at once
    while (!isOver()) {
        const Bytes more = line.read(1, std::chrono::milliseconds(100));
        waiting.insert(waiting.end(), more.begin(), more.end());
        while (waiting.size() >= requestBytes) {
            line.write(controller.answer(std::span(waiting).first(requestBytes)).value_or(Bytes()));
            waiting.erase(waiting.begin(), waiting.begin() + requestBytes);
        }
    }
}

} // namespace varda::bench
