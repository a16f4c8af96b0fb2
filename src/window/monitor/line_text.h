#pragma once

#include <QFrame>
#include <QString>

namespace varda::window {

/// Shows one text of any length and any characters as it is, in rows of the fixed-width font. Only what can
/// be seen is laid out: a text widget would take seconds for a line of megabytes, and would change some
/// characters.
class LineText : public QFrame {
    Q_OBJECT
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    explicit LineText(QWidget* parent);

    const QString& text() const { return text_; }
    void setText(const QString& text);

    /// The size at which all of the text can be seen. @param widest in pixels, at most
    QSize sizeToShowAll(int widest) const;

signals:
    void textChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    qsizetype charactersInRow(int width) const;

    QString text_;
};

} // namespace varda::window
