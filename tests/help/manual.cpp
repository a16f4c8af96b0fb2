#include "help/manual.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace varda::test {
namespace {

void takeElement(QXmlStreamReader& reader, ManualPage& page) {
    const QXmlStreamAttributes attributes = reader.attributes();
    const auto note = [&attributes](QLatin1String attribute, QStringList& list) {
        if (attributes.hasAttribute(attribute)) {
            list.append(attributes.value(attribute).toString());
        }
    };
    note(QLatin1String("id"), page.anchors);
    note(QLatin1String("href"), page.links);
    note(QLatin1String("src"), page.pictures);
    if (reader.name() == QLatin1String("title")) {
        page.title = reader.readElementText();
    } else if (reader.name() == QLatin1String("h1")) {
        page.headings.append(reader.readElementText());
    }
}

} // namespace

QString readText(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

ManualPage readPage(const QString& path) {
    QXmlStreamReader reader(readText(path));
    ManualPage page;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            takeElement(reader, page);
        }
    }
    if (reader.hasError()) {
        page.error = QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString());
    }
    return page;
}

std::vector<ManualEntry> readEntries(const QString& path) {
    static const QRegularExpression entry(
        QStringLiteral(R"re(name="Name"\s+value="([^"]*)">\s*<param\s+name="Local"\s+value="([^"]*)")re"));
    std::vector<ManualEntry> entries;
    const QString text = readText(path);
    for (auto match = entry.globalMatch(text); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        entries.push_back({found.captured(1), found.captured(2)});
    }
    return entries;
}

QStringList readSection(const QString& path, const QString& section) {
    QStringList lines;
    bool inside = false;
    const QStringList all = readText(path).split(QLatin1Char('\n'));
    for (const QString& line : all) {
        if (line.startsWith(QLatin1Char('['))) {
            inside = line.trimmed() == QLatin1Char('[') + section + QLatin1Char(']');
        } else if (inside && !line.trimmed().isEmpty()) {
            lines.append(line.trimmed());
        }
    }
    return lines;
}

} // namespace varda::test
