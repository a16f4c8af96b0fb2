#include "walks/page_model.h"

namespace varda::walks {

std::string printed(const std::vector<Octets>& frames) {
    std::string line;
    for (const Octets& frame : frames) {
        for (const std::uint8_t octet : frame) {
            line += hex(octet, 2) + " ";
        }
        line += "/ ";
    }
    return line;
}

std::string printed(const std::vector<std::string>& boxes) {
    std::string line;
    for (const std::string& box : boxes) {
        line += "[" + box + "]";
    }
    return line;
}

Observation PageModel::expected() {
    Observation all = shown();
    all["boxes"] = printed(std::exchange(boxes_, {}));
    all["sent"] = printed(std::exchange(sent_, {}));
    return all;
}

} // namespace varda::walks
