#include "window/system/raise_window.h"

#include <QFile>
#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include <cstdlib>
#include <xcb/xcb.h>

namespace varda::window {
namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

/// The parent of a process; 0 where that is not known.
qint64 parentOf(qint64 process) {
    QFile status(QStringLiteral("/proc/%1/stat").arg(process));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QByteArray line = status.readAll();
    const QList<QByteArray> behindName = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return behindName.size() > 1 ? behindName.at(1).toLongLong() : 0;
}

/// An opener stays between this program and the viewer that it started.
bool descendsFrom(qint64 process, qint64 ancestor) {
    constexpr int mostGenerations = 20;
    for (int generation = 0; process > 1 && generation < mostGenerations; ++generation) {
        if (process == ancestor) {
            return true;
        }
        process = parentOf(process);
    }
    return false;
}

/// The window manager's side of one X11 connection.
class WindowManager {
public:
    explicit WindowManager(xcb_connection_t* connection)
        : connection_(connection), root_(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {}

    std::vector<std::uint32_t> windows() const { return numbers(root_, "_NET_CLIENT_LIST"); }

    /// 0 where none has the keyboard.
    xcb_window_t activeWindow() const {
        const std::vector<std::uint32_t> window = numbers(root_, "_NET_ACTIVE_WINDOW");
        return window.empty() ? 0 : window.front();
    }

    qint64 processOf(xcb_window_t window) const {
        const std::vector<std::uint32_t> process = numbers(window, "_NET_WM_PID");
        return process.empty() ? 0 : process.front();
    }

    void activate(xcb_window_t window) const { ask(window, "_NET_ACTIVE_WINDOW", {byTheUser, 0}); }

    void close(xcb_window_t window) const { ask(window, "_NET_CLOSE_WINDOW", {0, byTheUser}); }

private:
    static constexpr std::uint32_t byTheUser = 2;

    void ask(xcb_window_t window, const char* request, const std::array<std::uint32_t, 2>& data) const {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = atom(request);
        std::ranges::copy(data, message.data.data32);
        xcb_send_event(connection_, 0, root_,
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(connection_);
    }

    xcb_atom_t atom(const QByteArray& name) const {
        const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 1, static_cast<std::uint16_t>(name.size()), name.constData()),
            nullptr));
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    std::vector<std::uint32_t> numbers(xcb_window_t window, const char* property) const {
        constexpr std::uint32_t most = 4096;
        const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            connection_,
            xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, most),
            nullptr));
        if (!reply || reply->format != 32) {
            return {};
        }
        const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return {first, first + reply->value_len};
    }

    xcb_connection_t* connection_;
    xcb_window_t root_;
};

/// Null where there is no X11, or no screen at all.
xcb_connection_t* ownConnection() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

/// Does something to every window of a process, or of one that it started. @return how many there were
template <typename Act>
int forWindowsOf(qint64 process, Act act) {
    xcb_connection_t* const connection = ownConnection();
    if (connection == nullptr) {
        return 0;
    }
    const WindowManager manager(connection);
    int found = 0;
    for (const xcb_window_t window : manager.windows()) {
        if (descendsFrom(manager.processOf(window), process)) {
            act(manager, window);
            ++found;
        }
    }
    return found;
}

} // namespace

bool raiseWindowOf(qint64 process) {
    return forWindowsOf(process, [](const WindowManager& manager, xcb_window_t window) {
               manager.activate(window);
           }) > 0;
}

bool isInFront(qint64 process) {
    xcb_connection_t* const connection = ownConnection();
    if (connection == nullptr) {
        return false;
    }
    const WindowManager manager(connection);
    const xcb_window_t window = manager.activeWindow();
    return window != 0 && descendsFrom(manager.processOf(window), process);
}

bool closeWindowOf(qint64 process) {
    return forWindowsOf(process,
                        [](const WindowManager& manager, xcb_window_t window) { manager.close(window); }) > 0;
}

} // namespace varda::window
