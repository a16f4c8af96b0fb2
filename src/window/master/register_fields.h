#pragma once

#include "core/protocol/registers.h"

#include <optional>
#include <string>

class QComboBox;
class QWidget;

namespace varda::window {

/// The lists of a master page that name a register: kind, number, bit and, where the page has one, count.
class RegisterFields {
public:
    /// @param point the "." between number and bit @param count nullptr where the page has no count
    RegisterFields(QComboBox* kind, QComboBox* number, QComboBox* bit, QWidget* point, QComboBox* count);

    /// Offers the kinds of an access and the counts up to `countLimit`; shows the bit for bit access only.
    /// All texts are empty afterwards; the bits that are offered stay.
    void offer(Access access, int countLimit);

    /// Offers the numbers and bits of the kind that is chosen; none for an unknown one.
    void offerNumbers();

    /// Offers the bits again, with none chosen.
    void offerBits();

    std::string kindText() const;
    std::string numberText() const;
    bool hasKind() const;
    bool hasNumber() const;
    bool hasBit() const;
    /// Whether a request can be sent: kind and number, and for bits the bit; all is well where no access is
    /// chosen.
    bool isFilled(Access access) const;
    /// True where the page has no count.
    bool hasCount() const;

    /// The chosen number. @throws RuntimeError 13, 6 where it is none
    int number() const;
    /// The chosen number and bit; nothing where the text is none.
    std::optional<int> readableNumber() const;
    std::optional<int> readableBit() const;
    /// Word address of the chosen register. @throws RuntimeError 13, 6 where the number is none
    int wordAddress(Access access) const;
    /// The chosen bit. @throws RuntimeError 13, 6
    int bitNumber() const;

private:
    QComboBox* kind_;
    QComboBox* number_;
    QComboBox* bit_;
    QWidget* point_;
    QComboBox* count_;
};

} // namespace varda::window
