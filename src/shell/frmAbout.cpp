#include "shell/frmAbout.h"

#include "shell/frmWebBrowser.h"
#include "ui_frmAbout.h"

#include <QCoreApplication>
#include <QIcon>

namespace varda {

FrmAbout::FrmAbout(const QString& title, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::FrmAbout>()) {
    constexpr int pictureSize = 64;
    ui_->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    ui_->programTitle->setText(title);
    ui_->programPicture->setPixmap(windowIcon().pixmap(pictureSize));
    ui_->programVersion->setText(tr("Version %1").arg(QCoreApplication::applicationVersion()));
    ui_->qtVersion->setText(tr("Qt %1").arg(QString::fromLatin1(qVersion())));
    connect(ui_->homePageLink, &QLabel::linkActivated, this, [this] { showHomePage(); });
    connect(ui_->cmdAboutOK, &QPushButton::clicked, this, &QDialog::accept);
}

FrmAbout::~FrmAbout() = default;

void FrmAbout::showHomePage() { (new FrmWebBrowser(this))->open(); }

} // namespace varda
