#pragma once

#include <QDialog>

#include <memory>

namespace varda::window {

namespace Ui {
class FrmAbout;
}

/// The about box: title, versions, licence, and the way to the program's home page.
class FrmAbout : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY(FrmAbout)

public:
    /// @param title of the program
    FrmAbout(const QString& title, QWidget* parent);
    ~FrmAbout() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showHomePage();

    std::unique_ptr<Ui::FrmAbout> ui_;
};

} // namespace varda::window
