#pragma once

#include <QComboBox>

namespace varda::window {

/// A list that opens below its field. The field is as wide as its minimumContentsLength says in characters,
/// whatever its entries are, and an accidental turn of the wheel does not change it. Opened, it marks the
/// entry that stands in the field, none for a text that is none of them, and is there at once however long
/// it is.
///
/// Nothing here makes what opens before it is shown: with that of every list of the window a twentieth of the
/// time to its first painting went by.
class DropDownList : public QComboBox {
    Q_OBJECT

public:
    explicit DropDownList(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    void showPopup() override;

protected:
    void wheelEvent(QWheelEvent* event) override;

    /// The first entry that gives the field exactly this text; -1 where none does.
    int rowOf(const QString& text) const;
    /// In the open list; -1 marks none.
    void mark(int row);

private:
    int shownRow() const;
};

} // namespace varda::window
