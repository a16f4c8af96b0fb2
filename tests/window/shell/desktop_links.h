#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

namespace varda::test {

/// Takes what would leave through the desktop's browser.
class DesktopLinks : public QObject {
    Q_OBJECT

public:
    DesktopLinks() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "take"); }
    ~DesktopLinks() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }
    DesktopLinks(const DesktopLinks&) = delete;
    DesktopLinks& operator=(const DesktopLinks&) = delete;

    Q_INVOKABLE void take(const QUrl& url) { taken.append(url); }

    QList<QUrl> taken;
};

} // namespace varda::test
