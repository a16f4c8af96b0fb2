#pragma once

#include "core/base/bytes.h"
#include "core/link/exchange.h"

#include <QObject>

#include <functional>
#include <map>
#include <string>
#include <string_view>

class QHelpEvent;
class QPlainTextEdit;
class QWidget;

namespace varda::window {

/// Says in a tool tip what the byte below the pointer is, in every frame text of a window.
class FrameTips : public QObject, public LinkObserver {
    Q_OBJECT

public:
    explicit FrameTips(QWidget& window) : window_(window) {}

    /// Takes in every frame text; called once, when all pages stand.
    void watchFrames();

    /// Remembers what the answer that a page shows is the answer to: its fields may have changed since.
    void told(const Exchange& exchange) override;

    /// The request that the frame in an answer's field answers; empty for other fields, and where none is
    /// known.
    Bytes requestOf(const QPlainTextEdit* answer) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void keepRequest(std::string_view field, const Bytes& request);
    bool showTip(QPlainTextEdit* frame, const QHelpEvent& where) const;

    QWidget& window_;
    std::map<std::string, Bytes, std::less<>> requests_; ///< by the name of the field that shows the answer
};

} // namespace varda::window
