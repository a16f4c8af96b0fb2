#include "walks/mixed_page_model.h"

namespace varda::walks {

namespace {

constexpr int wordMark = 0x40;

} // namespace

MixedReadPageModel::MixedReadPageModel()
    : MixedPageModel({2,
                      "cbMRegister",
                      "cbMRegAddress",
                      "cbMRegBit",
                      "cbMRLength",
                      "txtMRDDA",
                      "txtMRDSA",
                      "optMRead_0",
                      "optMRead_1",
                      "lblMRBitPoint",
                      "cmdMRDSend",
                      "chkMRTimer",
                      "txtMReadTimerValue",
                      "txtSendMRData",
                      "txtReceiveMRData",
                      "txtMRStatus",
                      "txtWStatus",
                      "txtMRStatus",
                      "cmdRDSend",
                      "cmdMRDSend",
                      true,
                      "500"},
                     {"lstMRReadReg", "cmdMRAdd", "cmdMRDel", "25"}) {
    setEnabled("cmdRDSend", false);
    setEnabled("cmdMRDSend", true);
}

void MixedReadPageModel::modeEntered() {
    MixedPageModel::modeEntered();
    setEnabled("cmdMRAdd", true);
    setEnabled("cmdMRDel", true);
    setEnabled("cmdMRDSend", isEnabled("cmdMRDSend") || isOpen());
}

Action MixedReadPageModel::draw(std::mt19937& engine) const {
    switch (engine() % 8) {
    case 0:
    case 1:
    case 2:
        return {"click", "cmdMRAdd", ""};
    case 3:
        return {"click", "cmdMRDel", ""};
    case 4:
        return {"line", "lstMRReadReg", std::to_string(lines() == 0 ? 0 : engine() % lines())};
    case 5:
        return {"put", "cbMRLength", std::to_string(engine() % 4 == 0 ? engine() % 260 : engine() % 12)};
    default:
        return drawCommon(
            engine, {"0", "1", "7", "12", "0003", "15", "16", "126", "253", "-1", "x", "100", "R", "r", "K"});
    }
}

std::string MixedReadPageModel::newLine() {
    if (!isComplete() || text("cbMRLength").empty()) {
        return {};
    }
    const std::string name = text("cbMRegister") + text("cbMRegAddress");
    return bits() ? "BIT\t" + name + "." + text("cbMRegBit") + "\t" + text("cbMRLength")
                  : "WORD\t" + name + "\t" + text("cbMRLength");
}

bool MixedReadPageModel::countPoint(const Point& point, int& sum) {
    const Number length = number16(point.last);
    if (!length) {
        error(length.error);
        return false;
    }
    return addTo(sum, point.isBit ? length.value : 2 * length.value);
}

bool MixedReadPageModel::pointLength(const Point& point, int& sum) {
    const Number length = number16(point.last);
    if (!length) {
        error(length.error);
        return false;
    }
    return addTo(sum, 2 * length.value);
}

bool MixedReadPageModel::buildPoint(const Point& point) {
    const Number count = number16(point.last);
    const Number bit = point.isBit ? number16(point.bit) : Number{};
    int word = 0;
    if (!count || !bit) {
        error(!count ? count.error : bit.error);
        return false;
    }
    if (!address(point, word)) {
        return false;
    }
    for (int place = 0; place < count.value; ++place) {
        const std::string digits =
            point.isBit ? bitAddress(word, bit.value + place) : wordAddress(word + place);
        const int high = hexNumber(digits.substr(0, 2)).value;
        put(length() + 4, digits.substr(2, 2));
        put(length() + 5, hex(point.isBit ? high : high | wordMark, 2));
        if (!grow(2)) {
            return false;
        }
    }
    return true;
}

} // namespace varda::walks
