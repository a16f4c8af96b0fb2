#include "window/monitor/monitor_delegate.h"

#include "window/controls/texts.h"
#include "window/monitor/monitor_model.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontInfo>

#include <algorithm>
#include <cmath>
#include <span>

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

const MonitorLine& lineOf(const QModelIndex& index) {
    return static_cast<const MonitorModel*>(index.model())->line(index.row());
}

QString paintedText(const MonitorLine& line, std::size_t most) {
    const std::string painted = line.text(std::min(most, MonitorModel::paintedBytes));
    return MonitorDelegate::withoutControls(
        QString::fromLatin1(painted.data(), static_cast<qsizetype>(painted.size())));
}

/// Characters that every font has itself; others it may borrow from one of another width.
bool hasPlainLetters(const MonitorLine& line) {
    constexpr std::uint8_t first = 0x20;
    constexpr std::uint8_t last = 0x7E;
    const auto painted = std::span(line.burst).first(std::min(line.burst.size(), MonitorModel::paintedBytes));
    return !line.asCharacters ||
           std::ranges::all_of(painted, [](std::uint8_t byte) { return byte >= first && byte <= last; });
}

/// The characters of a line between the edges of its view, one more at either edge.
struct Sight {
    qsizetype first = 0;
    qsizetype end = 0;
};

Sight sightOf(const QStyleOptionViewItem& item, double width) {
    const auto* const view = qobject_cast<const QAbstractItemView*>(item.widget);
    const int right = view != nullptr ? view->viewport()->width() : item.rect.right() + 1;
    const double hidden = std::max(0, -item.rect.left()) / width;
    return {std::max<qsizetype>(0, static_cast<qsizetype>(hidden) - 1),
            static_cast<qsizetype>(std::ceil((right - item.rect.left()) / width)) + 1};
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

/// A line that is listed later is seldom longer than all before: it is not measured again then.
QSize MonitorDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const auto* const model = static_cast<const MonitorModel*>(index.model());
    QStyleOptionViewItem item(option);
    initStyleOption(&item, model->index(model->longestRow()));
    const QStyle* const style = item.widget != nullptr ? item.widget->style() : QApplication::style();
    if (!measured_ || measured_->text != item.text || measured_->font != item.font ||
        measured_->style != style) {
        measured_ = {item.text, item.font, style,
                     style->sizeFromContents(QStyle::CT_ItemViewItem, &item, QSize(), item.widget)};
    }
    return measured_->size;
}

void MonitorDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    QStyleOptionViewItem item(option);
    initWithoutText(&item, index);
    const MonitorLine& line = lineOf(index);
    const double width = hasPlainLetters(line) ? widthOfLetters(item.font) : 0;
    if (width <= 0) {
        item.text = paintedText(line, MonitorModel::paintedBytes);
        paintItem(painter, item, {});
        return;
    }
    const Sight sight = sightOf(item, width);
    item.text = paintedText(line, static_cast<std::size_t>(sight.end)); // a byte is a character at least
    item.text.truncate(sight.end);
    paintItem(painter, item, {sight.first, static_cast<double>(sight.first) * width});
}

void MonitorDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    initWithoutText(option, index);
    option->text = paintedText(lineOf(index), MonitorModel::paintedBytes);
}

/// The base class would ask for the whole text, which may be millions of characters long.
void MonitorDelegate::initWithoutText(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, QModelIndex());
    option->index = index;
    option->features |= QStyleOptionViewItem::HasDisplay;
}

double MonitorDelegate::widthOfLetters(const QFont& font) const {
    if (!letters_ || letters_->font != font) {
        letters_ = {font, QFontInfo(font).fixedPitch() ? characterWidth(font) : 0};
    }
    return letters_->width;
}

} // namespace varda::window
