#include "report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <stdexcept>

namespace varda::bench {

Memory memory(const std::string& process) {
    const std::string name = "/proc/" + process + "/smaps_rollup";
    std::ifstream file(name);
    Memory found;
    for (std::string word; file >> word;) {
        if (word == "Rss:") {
            file >> found.resident;
        } else if (word == "Private_Dirty:") {
            file >> found.own;
        }
    }
    if (found.resident == 0 || found.own == 0) {
        throw std::runtime_error("The memory of process " + process + " is not known: " + name +
                                 " does not tell.");
    }
    return found;
}

Memory most(const Memory& one, const Memory& other) {
    return {std::max(one.resident, other.resident), std::max(one.own, other.own)};
}

std::string today() {
    const std::time_t now = std::time(nullptr);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d", std::localtime(&now));
    return text.data();
}

std::string machineLoad() {
    std::array<double, 1> load{};
    if (::getloadavg(load.data(), 1) != 1) {
        return "unknown";
    }
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%.1f", load[0]);
    return text.data();
}

bool writeDocument(const std::string& path, const std::string& text) {
    std::ofstream file(path);
    file << text;
    return static_cast<bool>(file.flush());
}

} // namespace varda::bench
