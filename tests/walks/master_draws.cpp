#include "walks/master_model.h"

namespace varda::walks {

std::string MasterModel::drawnEntry(std::mt19937& engine, const std::string& list) const {
    const auto& offered = items_.at(list);
    return offered.empty() ? std::string() : offered[engine() % offered.size()];
}

Action MasterModel::drawCommon(std::mt19937& engine, const std::vector<std::string>& numberTexts) const {
    const auto anyOf = [&engine](const std::vector<std::string>& texts) {
        return texts[engine() % texts.size()];
    };
    std::vector<std::string> lists = {names_.kind, names_.kind, names_.number, names_.number, names_.bit};
    if (!names_.count.empty()) {
        lists.push_back(names_.count);
    }
    const std::vector<std::string> stations = {names_.destination, names_.source};
    const std::vector<std::string> stationTexts = {"0", "5",   "16",   "255", "256", "-1",
                                                   "x", "&HF", "&H1F", "007", "12"};
    switch (engine() % 24) {
    case 0:
        return {"type", anyOf(stations), anyOf(stationTexts)};
    case 1:
        return {"put", anyOf(stations), anyOf(stationTexts)};
    case 2:
        return {engine() % 2 == 0 ? "clear" : "back", anyOf(stations), ""};
    case 3:
        return {"click", engine() % 3 == 0 ? "cmdPortOpen" : anyOf(stations), ""};
    case 4:
        return {"click", anyOf({names_.bitOption, names_.wordOption}), ""};
    case 5:
        return {"click", names_.continuous, ""};
    case 6:
        return {"visit", "", std::to_string((static_cast<unsigned>(names_.mode) + 1 + engine() % 3) % 4)};
    case 7:
        return {anyOf({"enter", "escape", "clear", "back"}), anyOf(lists), ""};
    case 8:
        return {anyOf({"type", "put"}), anyOf(lists), anyOf(numberTexts)};
    case 9:
        return {anyOf({"type", "put"}), names_.period, anyOf({"50", "100", "250", "40000", "x", "1234"})};
    case 10:
        return {"answer", "",
                std::to_string(engine() % 3 == 0 ? 1 + engine() % 20
                                                 : static_cast<unsigned>(expected_ > 0 ? expected_ : 7))};
    case 11:
    case 12:
        return {"tick", "", ""};
    case 13:
    case 14:
    case 15:
        return {"click", names_.sendButton, ""};
    case 16:
        return {engine() % 2 == 0 ? "enter" : "back", anyOf(stations), ""};
    default: {
        const std::string list = anyOf(lists);
        return {"choose", list, drawnEntry(engine, list)};
    }
    }
}

} // namespace varda::walks
