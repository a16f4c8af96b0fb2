#pragma once

#include <QString>

#include <cstddef>
#include <string>

class QLabel;

namespace varda::window {

class Announcer;

/// The line beside the counters: tells of the open port what no field has room for.
class LineNotice {
public:
    LineNotice(QLabel* label, Announcer& announcer);

    /// Tells `news` until others come; empty ones tell nothing. Frames that are not sent matter more.
    void tell(const std::string& news);
    /// Tells of a file that was loaded where it is not seen, until it is, or other news come.
    void tellOfFile(const std::string& news);
    void fileIsSeen();
    /// Tells of frames that were not sent because the line is too slow.
    void tellUnsent(std::size_t frames);

private:
    void show();

    QLabel* label_;
    Announcer& announcer_;
    QString whySlow_; ///< the form's tool tip
    QString news_;
    bool isOfFile_ = false;
    std::size_t unsent_ = 0;
};

} // namespace varda::window
