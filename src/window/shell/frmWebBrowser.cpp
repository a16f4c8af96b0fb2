#include "window/shell/frmWebBrowser.h"

#include "ui_frmWebBrowser.h"

#include <QDesktopServices>
#include <QUrl>

/// The page stands in a library, from which nobody else would fetch it. A macro that takes no namespace.
static void addHomePage() { Q_INIT_RESOURCE(home); }

namespace varda::window {

FrmWebBrowser::FrmWebBrowser(QWidget* parent) : QDialog(parent), ui_(std::make_unique<Ui::FrmWebBrowser>()) {
    addHomePage();
    ui_->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    ui_->homePage->setSource(QUrl(QStringLiteral("qrc:/home/index.html")));
    connect(ui_->homePage, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) { follow(link); });
    connect(ui_->closeBrowser, &QPushButton::clicked, this, &QDialog::accept);
}

FrmWebBrowser::~FrmWebBrowser() = default;

void FrmWebBrowser::follow(const QUrl& link) {
    if (link.scheme() == QLatin1String("qrc")) {
        ui_->homePage->setSource(link);
    } else if (!QDesktopServices::openUrl(link)) {
        ui_->linkNote->setText(tr("No browser opens %1").arg(link.toDisplayString()));
    }
}

} // namespace varda::window
