#include "window/master/register_fields.h"

#include "core/base/conversion.h"
#include "window/controls/lists.h"

#include <QComboBox>

namespace varda::window {
namespace {

int typedNumber(const QComboBox* list) { return toInteger(list->currentText().toStdString()); }

} // namespace

RegisterFields::RegisterFields(QComboBox* kind, QComboBox* number, QComboBox* bit, QWidget* point,
                               QComboBox* count)
    : kind_(kind), number_(number), bit_(bit), point_(point), count_(count) {
    for (QWidget* const onlyForBits : {static_cast<QWidget*>(bit), point}) {
        keepPlaceWhenHidden(onlyForBits);
    }
    for (QComboBox* const list : {kind, number, bit, count}) {
        if (list != nullptr) {
            letTypeInto(list);
        }
    }
}

void RegisterFields::offer(Access access, int countLimit) {
    fillList(kind_, kindListTexts(access));
    if (count_ != nullptr) {
        fillList(count_, countListTexts(countLimit));
    }
    point_->setVisible(access == Access::Bit);
    bit_->setVisible(access == Access::Bit);
    fillList(number_, {});
    chooseNone(bit_);
}

void RegisterFields::offerNumbers() {
    const std::vector<std::string> numbers = numberListTexts(kindText());
    fillList(number_, numbers);
    fillList(bit_, numbers.empty() ? std::vector<std::string>() : bitListTexts());
}

void RegisterFields::offerBits() { fillList(bit_, bitListTexts()); }

std::string RegisterFields::kindText() const { return kind_->currentText().toStdString(); }

std::string RegisterFields::numberText() const { return number_->currentText().toStdString(); }

bool RegisterFields::hasKind() const { return !kind_->currentText().isEmpty(); }

bool RegisterFields::hasNumber() const { return !number_->currentText().isEmpty(); }

bool RegisterFields::hasBit() const { return !bit_->currentText().isEmpty(); }

bool RegisterFields::isFilled(Access access) const {
    return access == Access::None || (hasKind() && hasNumber() && (access == Access::Word || hasBit()));
}

bool RegisterFields::hasCount() const { return count_ == nullptr || !count_->currentText().isEmpty(); }

int RegisterFields::number() const { return typedNumber(number_); }

std::optional<int> RegisterFields::readableNumber() const { return readInteger(numberText()); }

std::optional<int> RegisterFields::readableBit() const {
    return readInteger(bit_->currentText().toStdString());
}

int RegisterFields::wordAddress(Access access) const { return registerAddress(access, kindText(), number()); }

int RegisterFields::bitNumber() const { return typedNumber(bit_); }

} // namespace varda::window
