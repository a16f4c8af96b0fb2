#pragma once

#include <QLayout>
#include <QList>

class QBoxLayout;

namespace varda::window {

/// A row that goes on in a further line where it is too narrow for all of its items, as a text does. A label
/// that wraps its own text has the rest of a line, or a line for itself where it needs more; what is made to
/// grow does so at the end of a line.
class WrappingRow : public QLayout {
public:
    /// Takes the place of a row in its column, with the items of that row; its spacers are left out.
    static void replace(QBoxLayout* column, QBoxLayout* row);

    explicit WrappingRow(int spacing) { setSpacing(spacing); }
    Q_DISABLE_COPY_MOVE(WrappingRow)
    ~WrappingRow() override;

    void addItem(QLayoutItem* item) override { items_.append(item); }
    int count() const override { return static_cast<int>(items_.size()); }
    QLayoutItem* itemAt(int index) const override { return items_.value(index); }
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return arrange(QRect(0, 0, width, 0), false); }
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// @return the height of all lines
    int arrange(const QRect& rect, bool isReal) const;

    QList<QLayoutItem*> items_;
};

} // namespace varda::window
