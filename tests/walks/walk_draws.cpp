#include "walks/world.h"

namespace varda::window_model {
namespace {

/// A dialog that opens a file does not take one that is not there.
Action saveOrLoad(const World& world, Draw& draw, const std::string& what, const std::string& file) {
    const bool loads = draw.once(2) && world.profiles.count(file) != 0;
    return {loads ? "load" : "save", what, file};
}

} // namespace

Action ScenarioModel::draw(Draw& draw) const {
    const auto lines = static_cast<int>(world_.desk.lines(list_).size());
    switch (draw.below(12)) {
    case 0:
    case 1:
        return {"press", "cmdAddScenario", ""};
    case 2:
        return {"press", "cmdDelScenario", ""};
    case 3:
        return lines > 0 ? Action{"line", list_, std::to_string(draw.below(lines))}
                         : Action{"press", "cmdAddScenario", ""};
    case 4:
        return {"paste", "txtScnPeriod", draw.oneOf<std::string>({"100", "200", "500", "50", "700"})};
    case 5:
        if (draw.once(4)) {
            return {"write", "Data/walk0.scn",
                    draw.oneOf<std::string>(
                        {"", "0", "-1", "x", "1 FF FF 21 03 00 00 01", "2 FF FF 23 03 00 00 02"})};
        }
        return saveOrLoad(world_, draw, "scenario", "Data/walk" + std::to_string(draw.below(3)) + ".scn");
    case 6:
    case 7:
    case 8:
        return {"press", "cmdRunScenario", ""};
    case 9:
        return {"press", "cmdStopScenario", ""};
    default:
        return {"advance", "", std::to_string(50 * (1 + draw.below(12)))};
    }
}

Action SimulatorModel::draw(Draw& draw) const {
    switch (draw.below(10)) {
    case 0:
    case 1:
        return drawTraffic(draw);
    case 2:
    case 3:
        return drawPair(draw);
    case 4:
        return draw.once(3) ? drawFile(draw) : drawTraffic(draw);
    default:
        return drawField(draw);
    }
}

Action SimulatorModel::drawField(Draw& draw) const {
    const Desk& desk = world_.desk;
    const auto entryOf = [&desk, &draw](const std::string& list) {
        const auto count = static_cast<int>(desk.lines(list).size());
        const int index = count == 0     ? 0
                          : draw.once(3) ? count - 1 - draw.below(std::min(count, 2))
                                         : draw.below(count);
        return Action{"choose", list, std::to_string(index)};
    };
    const Lines next = {"cbSimReg", "cbSimAddress", "cbSimBit", "cbSimLength"};
    for (const std::string& list : next) {
        if (desk.isVisible(list) && desk.text(list).empty() && !draw.once(8)) {
            return entryOf(list);
        }
    }
    switch (draw.below(isRead() ? 8 : 14)) {
    case 0:
        return {"choose", "cbSimMode", std::to_string(draw.once(6) ? draw.below(6) : draw.below(4))};
    case 1:
        return entryOf(draw.once(2) ? "cbSimDA" : "cbSimSA");
    case 2:
        return entryOf(draw.oneOf(next));
    case 3:
        if (isRead()) {
            return {
                "type", "txtSimSendData",
                draw.oneOf<std::string>({"00ff", "0F", "1a2B", "ffff00001234", "", "FF0", "zq", "00FF00ff"})};
        }
        return {"option", "optSimOnOff_" + std::to_string(draw.below(2)), ""};
    case 4:
    case 5:
        return {"press", "cmdSimSendDataInputOK", ""};
    case 6:
    case 7:
        return {"press", "cmdSimInputOK", ""};
    case 8:
        if (kind_ == "Bit Write") {
            return {"option", "optSimOnOff_1", ""};
        }
        return draw.once(3)
                   ? Action{"toggle", "chkSimHexDec", ""}
                   : Action{"paste", "txtSimData", draw.oneOf<std::string>({"12", "1A2B", "65535", "7", ""})};
    case 9:
        return desk.lines("lstSimMixed").empty()
                   ? Action{"press", "cmdSimAddListBox", ""}
                   : Action{"line", "lstSimMixed",
                            std::to_string(draw.below(static_cast<int>(desk.lines("lstSimMixed").size())))};
    case 10:
        return {"press", "cmdSimDelListBox", ""};
    default:
        return {"press", "cmdSimAddListBox", ""};
    }
}

Action SimulatorModel::drawPair(Draw& draw) const {
    const auto pairs = static_cast<int>(world_.desk.lines("lstSimReceive").size());
    if (pairs == 0) {
        return drawField(draw);
    }
    const std::string row = std::to_string(draw.below(pairs));
    switch (draw.below(7)) {
    case 0:
        return {"press", "cmdSimDelete", ""};
    case 1:
        return draw.once(3) ? Action{"press", "cmdSimClear", ""} : drawField(draw);
    case 2:
    case 3:
        return {"double", "lstSimReceive", row};
    case 4:
        return {"line", "lstSimSend", row};
    default:
        return {"line", "lstSimReceive", row};
    }
}

Action SimulatorModel::drawTraffic(Draw& draw) const {
    const Lines& requests = world_.desk.lines("lstSimReceive");
    if (requests.empty() || draw.once(2)) {
        return {"advance", "",
                draw.oneOf<std::string>({"1", "50", "100", "149", "150", "151", "300", "500"})};
    }
    std::string request = draw.oneOf(requests);
    switch (draw.below(6)) {
    case 0:
        request.resize(request.size() / 4 * 2); // a part of it
        break;
    case 1:
        request += "00";
        break;
    case 2:
        request = request.substr(request.size() / 4 * 2); // what follows the part
        break;
    default:
        break;
    }
    return {"deliver", "", request};
}

Action SimulatorModel::drawFile(Draw& draw) const {
    const std::string file = "Data/walk" + std::to_string(draw.below(3)) + ".ini";
    if (draw.once(4)) {
        const std::string pair = "FFFF2103000001" + hexText(check(octetsOf("FFFF2103000001")), "");
        return {"write", file, draw.oneOf<std::string>({"", "0", "-1", "x", "1 " + pair, "2 " + pair})};
    }
    return saveOrLoad(world_, draw, "simulator", file);
}

} // namespace varda::window_model
