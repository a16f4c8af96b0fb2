#include "window/controls/register_fields.h"

#include "core/base/conversion.h"
#include "window/controls/drop_down_list.h"
#include "window/controls/lists.h"
#include "window/controls/texts.h"

namespace varda::window {
namespace {

bool isFilled(const DropDownList* list) { return !list->currentText().isEmpty(); }

} // namespace

RegisterFields::RegisterFields(const Lists& lists) : lists_(lists) {
    for (QWidget* const onlyForBits : {static_cast<QWidget*>(lists.bit), lists.dot}) {
        keepPlaceWhenHidden(onlyForBits);
    }
    for (DropDownList* const list : {lists.kind, lists.number, lists.bit, lists.count}) {
        if (list != nullptr) {
            letTypeInto(list);
        }
    }
}

void RegisterFields::offer(Access access, int countLimit) {
    fillList(lists_.kind, kindListTexts(access));
    if (lists_.count != nullptr) {
        fillList(lists_.count, countListTexts(countLimit));
    }
    lists_.dot->setVisible(access == Access::Bit);
    lists_.bit->setVisible(access == Access::Bit);
    fillList(lists_.number, {});
    chooseNone(lists_.bit);
}

void RegisterFields::offerNumbers() {
    const std::vector<std::string> numbers = numberListTexts(kindText());
    fillList(lists_.number, numbers);
    fillList(lists_.bit, numbers.empty() ? std::vector<std::string>() : bitListTexts());
}

void RegisterFields::offerBits() { fillList(lists_.bit, bitListTexts()); }

std::string RegisterFields::kindText() const { return textOf(lists_.kind); }

std::string RegisterFields::numberText() const { return textOf(lists_.number); }

std::string RegisterFields::bitText() const { return textOf(lists_.bit); }

std::string RegisterFields::countText() const { return textOf(lists_.count); }

bool RegisterFields::hasKind() const { return isFilled(lists_.kind); }

bool RegisterFields::hasNumber() const { return isFilled(lists_.number); }

bool RegisterFields::hasBit() const { return isFilled(lists_.bit); }

bool RegisterFields::hasCount() const { return lists_.count == nullptr || isFilled(lists_.count); }

bool RegisterFields::isNamed(Access access) const {
    return hasKind() && hasNumber() && (access == Access::Word || hasBit());
}

int RegisterFields::number() const { return toInteger(numberText(), "Register number"); }

std::optional<int> RegisterFields::readableNumber() const { return readInteger(numberText()); }

std::optional<int> RegisterFields::readableBit() const { return readInteger(bitText()); }

std::optional<int> RegisterFields::readableCount() const { return readInteger(countText()); }

int RegisterFields::wordAddress(Access access) const {
    return registerAddress(access, kindText(), numberText());
}

int RegisterFields::bitNumber() const { return toInteger(bitText(), "Bit number"); }

} // namespace varda::window
