#include "window/monitor/monitor_delegate.h"

#include "window/monitor/monitor_model.h"

namespace varda::window {
namespace {

constexpr char16_t controlPictures = 0x2400;
constexpr char16_t deletePicture = 0x2421;
constexpr char16_t otherPicture =
    0x2426; ///< for the controls above 0x7F, which have no pictures of their own

QChar standIn(QChar character) {
    if (character < u' ') {
        return {static_cast<char16_t>(controlPictures + character.unicode())};
    }
    if (character == u'\x7F') {
        return {deletePicture};
    }
    return character > u'\x7F' && character < u'\xA0' ? QChar(otherPicture) : character;
}

} // namespace

QString MonitorDelegate::withoutControls(QString text) {
    for (QChar& character : text) {
        character = standIn(character);
    }
    return text;
}

QString MonitorDelegate::displayText(const QVariant& value, const QLocale& /*locale*/) const {
    return withoutControls(value.toString());
}

QSize MonitorDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const auto* const model = static_cast<const MonitorModel*>(index.model());
    return QStyledItemDelegate::sizeHint(option, model->index(model->longestRow()));
}

void MonitorDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    const auto* const model = static_cast<const MonitorModel*>(index.model());
    const std::string painted = model->line(index.row()).text(MonitorModel::paintedBytes);
    // The base class would ask for the whole text, which may be millions of characters long.
    QStyledItemDelegate::initStyleOption(option, QModelIndex());
    option->index = index;
    option->features |= QStyleOptionViewItem::HasDisplay;
    option->text =
        withoutControls(QString::fromLatin1(painted.data(), static_cast<qsizetype>(painted.size())));
}

} // namespace varda::window
