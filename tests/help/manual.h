#pragma once

#include <QString>
#include <QStringList>

#include <ostream>
#include <vector>

/// How GoogleTest shows a text that is not the expected one.
inline void PrintTo(const QString& text, std::ostream* stream) { *stream << text.toStdString(); }

namespace varda::test {

/// What a page of the manual says of itself and of other files.
struct ManualPage {
    QString error; ///< why the page cannot be parsed; empty where it can
    QString title;
    QStringList headings;
    QStringList links;    ///< of pages and style sheets
    QStringList pictures; ///< as the page names them
    QStringList anchors;
};

/// Parses a page as XML. @param path of the file
ManualPage readPage(const QString& path);

/// An entry of a contents or index file.
struct ManualEntry {
    QString name;
    QString page; ///< with its anchor

    bool operator==(const ManualEntry&) const = default;
};

inline void PrintTo(const ManualEntry& entry, std::ostream* stream) {
    *stream << entry.name.toStdString() << " at " << entry.page.toStdString();
}

/// The entries of a contents or index file (.hhc, .hhk), in their order.
std::vector<ManualEntry> readEntries(const QString& path);

/// The lines of one section of a project file (.hhp).
QStringList readSection(const QString& path, const QString& section);

/// Everything a file holds; a null text where it cannot be read.
QString readText(const QString& path);

} // namespace varda::test
