#pragma once

#include <QDialog>

#include <memory>

class QUrl;

namespace varda::window {

namespace Ui {
class FrmWebBrowser;
}

/// Shows the home page that the program carries with it. Links to other places leave through the desktop's
/// browser.
class FrmWebBrowser : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY(FrmWebBrowser)

public:
    explicit FrmWebBrowser(QWidget* parent);
    ~FrmWebBrowser() override;

private:
    void follow(const QUrl& link);

    std::unique_ptr<Ui::FrmWebBrowser> ui_;
};

} // namespace varda::window
