#include "window/master/single_page.h"

#include "core/link/serial_link.h"
#include "core/protocol/frame_image.h"
#include "window/controls/drop_down_list.h"
#include "window/controls/events.h"

namespace varda::window {

void SinglePage::adopt(const Controls& controls) {
    MasterPage::adopt(controls);
    Events& events = context().events;
    // kept: a key typed into the kind list re-runs the count's handler
    events.field(controls.registerLists.kind, [this] { kindChanged(); },
                 {.keyPress = [this] { countChanged(); }, .lostFocus = {}});
    events.field(controls.registerLists.number, [this] { numberChanged(); });
    events.field(controls.registerLists.bit, [this] { bitChanged(); });
    events.field(controls.registerLists.count, [this] { countChanged(); });
}

void SinglePage::optionChosen(Access access) {
    context().link.enterMode(mode());
    fields().offer(access, countLimit(access));
    accessTaken(access);
    takeStations();
}

void SinglePage::kindChanged() {
    clearRequest();
    fields().offerNumbers();
    kindTaken();
    showRequest();
}

void SinglePage::numberChanged() {
    clearRequest();
    if (!fields().hasKind()) {
        return;
    }
    if (fields().hasNumber()) { // an emptied number is about to be retyped, no error
        const int word = fields().wordAddress(access());
        if (access() == Access::Word) { // the address of a bit is written when its bit number is chosen
            writeAddress(wordAddressText(word));
        }
    }
    numberTaken();
    showRequest();
}

void SinglePage::bitChanged() {
    clearRequest();
    if (!fields().hasKind() || !fields().hasNumber()) {
        fields().lists().bit->clearEditText();
        return;
    }
    if (fields().hasBit()) {
        takeBit();
    }
    showRequest();
}

void SinglePage::takeBit() {
    writeAddress(bitAddressText(fields().wordAddress(Access::Bit), fields().bitNumber()));
}

void SinglePage::countChanged() {
    clearRequest();
    const auto typed = fields().readableCount();
    if (!typed) {
        fields().lists().count->clearEditText();
        return;
    }
    takeCount(*typed);
    makeRequest();
}

void SinglePage::writeAddress(const std::string& digits) {
    image().setLowHigh(offset::address, digits);
    makeFormat();
}

} // namespace varda::window
