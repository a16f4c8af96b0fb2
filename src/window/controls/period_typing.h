#pragma once

#include <QObject>
#include <QString>

class QKeyEvent;
class QLineEdit;

namespace varda::window {

/// Lets a period be typed digit by digit although its field is rewritten at the first one: a digit typed
/// right after a rewriting continues the digits that were rewritten. So 2, 5, 0 show 100, 100, 250.
///
/// The series ends with any other key, with a click, a paste, a turn of the wheel, any other move of the
/// caret or marking, and where the focus leaves.
class PeriodTyping : public QObject {
    Q_OBJECT

public:
    explicit PeriodTyping(QLineEdit* field);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool takeKey(const QKeyEvent& key);
    void typeDigit(QChar digit);
    QString textWith(QChar digit) const;
    void endSeries();

    QLineEdit* field_;
    QString rewritten_; ///< what was typed before the field rewrote it; empty where no series goes on
    bool isTyping_ = false;
};

} // namespace varda::window
