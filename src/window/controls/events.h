#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <exception>
#include <functional>
#include <string_view>
#include <utility>

class QAbstractButton;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace varda::inline core {
class RuntimeError;
} // namespace varda::core

namespace varda::window {

class MessageBoxes;

/// Binds the controls of a window to their handlers, and is the one place where a RuntimeError that leaves a
/// handler becomes the report that the user sees.
///
/// The rule for a field: its Change handler runs at every change of its text, at a click (for a list: at
/// choosing an entry) and before a typed key reaches it; the field is yellow while it has the focus. A
/// binding states only its exceptions.
class Events : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void()>;

    /// What a field does other than the rule; an empty handler follows the rule.
    struct Exceptions {
        Handler keyPress;  ///< runs instead of Change before a typed key
        Handler lostFocus; ///< runs after the field has its window colour back
    };

    explicit Events(MessageBoxes& boxes);

    void field(QComboBox* list, const Handler& change, const Exceptions& exceptions = {});
    void field(QLineEdit* text, const Handler& change, const Exceptions& exceptions = {});
    /// A text that only runs its Change handler when its text changes.
    void textChange(QLineEdit* text, const Handler& change);
    void click(QAbstractButton* button, const Handler& clicked);
    /// An option of a group: its handler runs when the user chooses it.
    void option(QRadioButton* option, const Handler& chosen);

    /// Chooses an option by program: its handler runs even where it was chosen already. @throws what the
    /// handler throws
    void choose(QRadioButton* option) const;
    /// Runs the Click handler of a button by its name. @throws what the handler throws
    void press(std::string_view button) const { run(clicks_, button); }

    /// Runs a handler; a RuntimeError of it becomes a report. Any other exception is a defect of the program:
    /// each is reported once, however often it comes, and the program goes on.
    void guard(const Handler& handler);
    /// The same function behind that guard, for who calls it later; not when these events are gone.
    template <typename... Arguments>
    std::function<void(Arguments...)> guarded(std::function<void(Arguments...)> handler) {
        return [events = QPointer(this), handler = std::move(handler)](Arguments... arguments) {
            if (events) {
                events->guard([&] { handler(arguments...); });
            }
        };
    }
    /// Reports an error that comes later than the handler it belongs to.
    void report(const RuntimeError& error) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Watched {
        Handler click;
        Handler keyPress;
        Handler lostFocus;
    };

    static void run(const QHash<QString, Handler>& handlers, std::string_view name);
    void watch(QWidget* field, const Handler& change, const Exceptions& exceptions);
    void moveFocus(QWidget* now);
    void reportDefect(const QString& description);

    MessageBoxes& boxes_;
    QHash<QString, Handler> clicks_;
    QHash<QObject*, Watched> watched_;
    QPointer<QWidget> focused_; ///< the field that is yellow
    QSet<QString> reportedDefects_;
};

} // namespace varda::window
