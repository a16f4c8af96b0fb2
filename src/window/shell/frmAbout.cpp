#include "window/shell/frmAbout.h"

#include "ui_frmAbout.h"
#include "window/shell/frmWebBrowser.h"
#include "window/shell/program_icon.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace varda::window {

FrmAbout::FrmAbout(const QString& title, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::FrmAbout>()) {
    constexpr int pictureSize = 64;
    ui_->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    ui_->programTitle->setText(title);
    ui_->programPicture->setPixmap(programIcon().pixmap(pictureSize));
    ui_->programVersion->setText(tr("Version %1").arg(QCoreApplication::applicationVersion()));
    ui_->qtVersion->setText(tr("Qt %1").arg(QString::fromLatin1(qVersion())));
    connect(ui_->homePageLink, &QLabel::linkActivated, this, [this] { showHomePage(); });
    // A label that follows its link by keyboard marks it, and takes the Enter key for it, at the second Tab
    // only.
    ui_->homePageLink->setFocusPolicy(Qt::StrongFocus);
    ui_->homePageLink->installEventFilter(this);
    connect(ui_->cmdAboutOK, &QPushButton::clicked, this, &QDialog::accept);
}

FrmAbout::~FrmAbout() = default;

bool FrmAbout::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        const auto linkLength = static_cast<int>(ui_->homePageLink->accessibleName().size());
        ui_->homePageLink->setSelection(0, event->type() == QEvent::FocusIn ? linkLength : 0);
    } else if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<const QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
            showHomePage();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void FrmAbout::showHomePage() { (new FrmWebBrowser(this))->open(); }

} // namespace varda::window
