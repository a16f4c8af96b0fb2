#pragma once

#include <QDir>
#include <QImage>

class QWidget;

/// Saves the pictures of the tour.
class Pictures {
public:
    explicit Pictures(const QDir& folder) : folder_(folder) {}

    /// @param name of the file, without its extension. @return whether it was saved
    bool save(QWidget& window, const char* name);
    bool save(const QImage& picture, const char* name);

private:
    QDir folder_;
};
