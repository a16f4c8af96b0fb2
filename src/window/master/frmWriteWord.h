#pragma once

#include <QDialog>

#include <memory>

namespace varda::window {

class Events;

namespace Ui {
class FrmWriteWord;
}

/// The word entry dialog: one value of 0 .. 65535, decimal or hexadecimal.
class FrmWriteWord : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY(FrmWriteWord)

public:
    /// @param registerName shown as the title @param present the cell's text, selected for typing over it
    FrmWriteWord(Events& events, const QString& registerName, const QString& present, bool hexadecimal,
                 QWidget* parent);
    ~FrmWriteWord() override;

signals:
    /// OK with a value in range. @param text the value as typed
    void valueAccepted(int value, const QString& text, bool hexadecimal);
    /// OK with a value out of range; the dialog stays open and says why.
    void outOfRange();

private:
    void cmdInputOK_Click();
    void showReason(const QString& reason);
    bool isHexadecimal() const;

    std::unique_ptr<Ui::FrmWriteWord> ui_;
};

} // namespace varda::window
