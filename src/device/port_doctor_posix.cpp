#include "device/port_doctor.h"

#include "core/base/blanks.h"
#include "core/virtual/virtual_line.h"
#include "device/group_name_posix.h"
#include "device/node_kind_posix.h"
#include "device/node_target.h"
#include "device/port_holders_posix.h"
#include "device/refusals.h"
#include "device/serial_node.h"
#include "device/this_user_posix.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <sstream>

namespace varda::device {
namespace {

std::string quoted(const std::string& text) { return '"' + text + '"'; }

/// One examination of all ports: what it learns of the processes serves each of them.
class Examination {
public:
    explicit Examination(const std::string& root) : root_(root), holders_(root) {}

    /// @param name what the user calls the port; may be a link to it
    PortFindings of(const PortName& port, const std::string& name) const {
        PortFindings findings{port, {}, {}};
        if (!port.stableName.empty()) {
            findings.facts.push_back("Its name that stays: " + port.stableName);
        }
        if (isThere(port.node, findings)) {
            tellHolders(findings);
            tellLockFiles(findings, name);
            tellRights(findings);
            tellLatency(findings);
            tellConsole(findings);
        }
        return findings;
    }

private:
    /// Whether there is something that may be a serial port.
    bool isThere(const std::string& node, PortFindings& findings) const;
    void tellHolders(PortFindings& findings) const;
    void tellHolder(PortFindings& findings, int process) const;
    void tellLeftBehind(PortFindings& findings) const;
    void tellLockFiles(PortFindings& findings, const std::string& name) const;
    void tellRights(PortFindings& findings) const;
    void tellLatency(PortFindings& findings) const;
    void tellConsole(PortFindings& findings) const;
    std::string nameOf(int process) const;
    static std::string nameIn(const PortName& port) { return port.node.substr(port.node.rfind('/') + 1); }
    static std::string folderOf(const PortName& port) { return "/sys/class/tty/" + nameIn(port) + '/'; }
    std::string textIn(const std::string& file) const;

    std::string root_;
    PortHolders holders_;
};

bool Examination::isThere(const std::string& node, PortFindings& findings) const {
    struct stat found {};
    if (::stat((root_ + node).c_str(), &found) != 0) {
        const std::string meant = meantInCapitals(nameIn(findings.port));
        findings.facts.push_back("There is no such device." +
                                 (meant.empty() ? "" : " Did you mean " + meant + ", in capitals?"));
        findings.remedies.push_back({"ls -l /dev/serial/by-id/", "What is plugged in"});
        return false;
    }
    // below a folder of a test's, nodes are files
    const char* const kind = root_.empty() ? otherKind(found) : nullptr;
    if (kind != nullptr) {
        findings.facts.push_back(std::string("It is ") + kind + ", not a serial port.");
    } else if (textIn(folderOf(findings.port) + "type") == "0") {
        findings.facts.emplace_back("The name is there, but this computer has no such port.");
        return false;
    }
    return kind == nullptr;
}

std::string Examination::nameOf(int process) const {
    if (process == ::getpid()) {
        return "This program";
    }
    const std::string program = holders_.programOf(process);
    return (program.empty() ? "A program" : program) + " (process " + std::to_string(process) + ')';
}

void Examination::tellHolders(PortFindings& findings) const {
    const auto processes = holders_.of(findings.port.node);
    for (const int process : processes) {
        tellHolder(findings, process);
    }
    if (processes.empty()) {
        findings.facts.emplace_back(holders_.sawAll() ? "No program has it open."
                                                      : "No program of yours has it open.");
        if (keepsClaims(findings.port.node)) {
            tellLeftBehind(findings);
        }
    }
    if (!holders_.sawAll()) {
        findings.remedies.push_back(
            {"sudo lsof " + findings.port.node, "Programs of other users, which cannot be seen from here"});
    }
}

/// A claim that a killed program left goes with the line alone.
void Examination::tellLeftBehind(PortFindings& findings) const {
    findings.facts.push_back(std::string("If Test finds it in use all the same, ") +
                             refusal::claimLeftBehind);
    for (const int maker : holders_.makersOf(findings.port.node)) {
        findings.facts.push_back(nameOf(maker) + " made the line.");
        findings.remedies.push_back({"kill " + std::to_string(maker), "Ends the line, to be started anew"});
    }
}

/// Two services of many systems take adapters for what they are not; ended, they would start again.
void Examination::tellHolder(PortFindings& findings, int process) const {
    findings.facts.push_back(nameOf(process) + " has it open.");
    const std::string program = holders_.programOf(process);
    if (program == "ModemManager") {
        findings.remedies.push_back(
            {"sudo systemctl stop ModemManager", "Keeps it from looking for a modem"});
    } else if (program == "brltty") {
        findings.remedies.push_back({"sudo apt remove brltty", "Where no braille display is in use"});
    } else if (process != ::getpid()) {
        findings.remedies.push_back({"kill " + std::to_string(process), "Ends " + nameOf(process)});
    }
}

void Examination::tellLockFiles(PortFindings& findings, const std::string& name) const {
    for (const FoundLockFile& file : lockFilesOf({findings.port.node, name}, root_)) {
        if (!file.owner) {
            findings.facts.push_back("The lock file " + file.path + " names no process that could be read.");
        } else if (holders_.lives(*file.owner)) {
            findings.facts.push_back("The lock file " + file.path + " is of " + nameOf(*file.owner) + '.');
        } else {
            findings.facts.push_back("The lock file " + file.path + " is left over from process " +
                                     std::to_string(*file.owner) + ", which has ended. Test takes it over.");
        }
    }
}

void Examination::tellRights(PortFindings& findings) const {
    const std::string path = root_ + findings.port.node;
    if (::access(path.c_str(), R_OK | W_OK) == 0) {
        findings.facts.emplace_back("You may use it.");
        return;
    }
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) {
        return; // unplugged meanwhile
    }
    const std::string group = groupName(found.st_gid);
    if ((found.st_mode & (S_IRGRP | S_IWGRP)) != (S_IRGRP | S_IWGRP)) {
        findings.facts.push_back("You may not use it, and neither may its group, " + quoted(group) +
                                 ". Ask the administrator for access.");
    } else if (hasJoined(found.st_gid)) {
        findings.facts.push_back("You may not use it yet: you have joined the group " + quoted(group) +
                                 " since you logged in. Log out of the whole desktop and in again.");
    } else {
        findings.facts.push_back("You may not use it: you are not in the group " + quoted(group) + '.');
        findings.remedies.push_back({"sudo usermod -aG " + group + ' ' + userName(),
                                     "Joins the group; log out of the whole desktop and in again after it"});
    }
}

/// Adapters hold back what comes in for as long as this, in case more comes.
void Examination::tellLatency(PortFindings& findings) const {
    const std::string file = folderOf(findings.port) + "device/latency_timer";
    const std::string text = textIn(file);
    int milliseconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), milliseconds);
    if (error != std::errc{} || milliseconds <= 0) {
        return;
    }
    findings.facts.push_back("Its latency timer is " + std::to_string(milliseconds) +
                             " ms: an answer may come that much later.");
    if (milliseconds > 1) {
        findings.remedies.push_back(
            {"echo 1 | sudo tee " + file, "Shortens the latency timer until it is unplugged"});
    }
}

void Examination::tellConsole(PortFindings& findings) const {
    const std::string name = nameIn(findings.port);
    std::istringstream consoles(textIn("/sys/class/tty/console/active"));
    const std::istream_iterator<std::string> first(consoles);
    if (std::find(first, {}, name) != std::istream_iterator<std::string>()) {
        findings.facts.push_back("The system writes messages of its own to it (console=" + name +
                                 " at its start).");
    }
}

std::string Examination::textIn(const std::string& file) const {
    std::ifstream stream(root_ + file);
    std::string line;
    std::getline(stream, line);
    return line;
}

/// Where the node of the chosen port stands; empty where none is chosen, or the embedded controller, which
/// has none.
std::string chosenNode(const std::string& chosen, const std::string& root) {
    const std::string node = deviceNode(chosen);
    if (node.empty() || withoutBlanksAround(chosen) == virtualPortName) {
        return {};
    }
    return nodeTarget(node, root);
}

/// All ports, the chosen one first, also where it is none of them.
std::vector<PortName> portsToExamine(const std::string& chosen, const std::string& root) {
    auto ports = portNames(root);
    const auto others = std::stable_partition(
        ports.begin(), ports.end(), [&chosen](const PortName& port) { return port.node == chosen; });
    if (!chosen.empty() && others == ports.begin()) {
        ports.insert(ports.begin(), PortName{chosen, {}});
    }
    return ports;
}

} // namespace

std::vector<PortFindings> examinePorts(const std::string& chosen, const std::string& root) {
    const std::string node = chosenNode(chosen, root);
    const Examination examination(root);
    std::vector<PortFindings> findings;
    for (const PortName& port : portsToExamine(node, root)) {
        findings.push_back(examination.of(port, port.node == node ? deviceNode(chosen) : port.node));
    }
    return findings;
}

} // namespace varda::device
