#include "sizes.h"
#include "support/temporary_folder.h"
#include "turns.h"

#include "core/files/profile_file.h"
#include "core/pairs/packet_file.h"

#include <QSettings>

#include <SimpleIni.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <optional>
#include <random>
#include <stdexcept>
#include <unordered_map>

/// Packet files saved and loaded by the program, by turns with two libraries that read and write such files;
/// and how a table is looked up.
namespace {

using varda::PacketTable;
using varda::ProfileFile;
using varda::bench::byTurns;
using varda::bench::leastProcessorTime;
using varda::bench::leastTime;

constexpr std::size_t few = 20'000;
constexpr std::size_t many = 200'000;

/// What a program would make of a file: both lists.
struct Lists {
    std::vector<std::string> requests;
    std::vector<std::string> answers;
};

void require(bool isWhole) {
    if (!isWhole) {
        throw std::runtime_error("a file was not loaded whole");
    }
}

PacketTable tableOf(std::size_t pairs) {
    constexpr unsigned seed = 20261123;
    PacketTable table;
    varda::bench::fill(table, varda::test::preparedReads(pairs, seed));
    return table;
}

void save(const PacketTable& table, const std::string& path) {
    ProfileFile file = ProfileFile::load(path);
    varda::storePackets(table, file);
    file.save(path);
}

PacketTable loaded(const std::string& path, std::size_t pairs) {
    PacketTable table;
    require(varda::loadPackets(table, ProfileFile::load(path)) == varda::PacketLoad::Complete &&
            table.answers().size() == pairs);
    return table;
}

void load(const std::string& path, std::size_t pairs) { loaded(path, pairs); }

void saveWithQt(const PacketTable& table, const std::string& path) {
    QSettings file(QString::fromStdString(path), QSettings::IniFormat);
    file.setValue(QStringLiteral("Information/Total"), static_cast<int>(table.requests().size()));
    for (std::size_t row = 0; row < table.requests().size(); ++row) {
        const QString key = QString::number(row);
        file.setValue(QStringLiteral("Receive/") + key, QString::fromStdString(table.requests()[row]));
        file.setValue(QStringLiteral("Send/") + key, QString::fromStdString(table.answers()[row]));
    }
    file.sync();
}

void loadWithQt(const std::string& path, std::size_t pairs) {
    const QSettings file(QString::fromStdString(path), QSettings::IniFormat);
    Lists lists;
    const int total = file.value(QStringLiteral("Information/Total")).toInt();
    for (int row = 0; row < total; ++row) {
        const QString key = QString::number(row);
        lists.requests.push_back(file.value(QStringLiteral("Receive/") + key).toString().toStdString());
        lists.answers.push_back(file.value(QStringLiteral("Send/") + key).toString().toStdString());
    }
    require(lists.answers.size() == pairs && !lists.answers.back().empty());
}

void saveWithSimpleIni(const PacketTable& table, const std::string& path) {
    CSimpleIniA file;
    file.LoadFile(path.c_str());
    file.SetValue("Information", "Total", std::to_string(table.requests().size()).c_str());
    for (std::size_t row = 0; row < table.requests().size(); ++row) {
        const std::string key = std::to_string(row);
        file.SetValue("Receive", key.c_str(), table.requests()[row].c_str());
        file.SetValue("Send", key.c_str(), table.answers()[row].c_str());
    }
    file.SaveFile(path.c_str());
}

void loadWithSimpleIni(const std::string& path, std::size_t pairs) {
    CSimpleIniA file;
    file.LoadFile(path.c_str());
    Lists lists;
    const int total = std::atoi(file.GetValue("Information", "Total", ""));
    for (int row = 0; row < total; ++row) {
        const std::string key = std::to_string(row);
        lists.requests.emplace_back(file.GetValue("Receive", key.c_str(), ""));
        lists.answers.emplace_back(file.GetValue("Send", key.c_str(), ""));
    }
    require(lists.answers.size() == pairs && !lists.answers.back().empty());
}

struct Library {
    const char* name;
    void (*save)(const PacketTable& table, const std::string& path);
    void (*load)(const std::string& path, std::size_t pairs);
};

constexpr auto libraries = std::to_array<Library>(
    {{"QSettings", saveWithQt, loadWithQt}, {"SimpleIni", saveWithSimpleIni, loadWithSimpleIni}});

void measureFiles(const varda::test::TemporaryFolder& folder) {
    const PacketTable table = tableOf(few);
    const std::string path = folder.file("pairs.ini");
    save(table, path);
    for (const Library& library : libraries) {
        print("load 20,000 pairs, file to table", library.name, "ms",
              byTurns([&] { return leastProcessorTime([&] { load(path, few); }); },
                      [&] { return leastProcessorTime([&] { library.load(path, few); }); }));
        const std::string copy = folder.file(library.name);
        print("save 20,000 pairs over the same file", library.name, "ms",
              byTurns([&] { return leastTime([&] { save(table, path); }); },
                      [&] { return leastTime([&] { library.save(table, copy); }); }));
    }
}

/// As in a program that loads one file and goes on with it: each load has memory of its own, which the system
/// has to give it first, and the table stays.
double firstLoadTime(const std::string& path, std::size_t pairs) {
    std::optional<PacketTable> table;
    return leastProcessorTime([&] { table = loaded(path, pairs); },
                              [&] {
                                  table.reset();
                                  ::malloc_trim(0);
                              });
}

/// Nanoseconds of one look-up, in the order given.
template <typename Find>
double lookUpTime(const Find& find, const std::vector<std::string>& requests) {
    std::size_t found = 0;
    const double time = leastProcessorTime([&] {
        for (const std::string& request : requests) {
            found += find(request);
        }
    });
    require(found > 0);
    return time * 1e6 / static_cast<double>(requests.size());
}

/// Of a table that comes from its file, beside the container that one would take without a thought.
void measureLookUp(const std::string& path, std::size_t pairs, const std::string& words) {
    constexpr std::size_t lookUps = 100'000;
    const PacketTable table = loaded(path, pairs);
    std::unordered_map<std::string, std::size_t> rows;
    for (std::size_t row = 0; row < pairs; ++row) {
        rows.try_emplace(table.requests()[row], row);
    }
    std::mt19937 engine(1);
    std::vector<std::string> drawn;
    for (std::size_t index = 0; index < lookUps; ++index) {
        drawn.push_back(table.requests()[engine() % pairs]);
    }
    const auto inTable = [&](const std::string& request) { return table.find(request).value_or(0); };
    const auto inMap = [&](const std::string& request) { return rows.at(request); };
    print("look-up of drawn requests in " + words + " pairs", "std::unordered_map", "ns",
          byTurns([&] { return lookUpTime(inTable, drawn); }, [&] { return lookUpTime(inMap, drawn); }));
}

} // namespace

int main() try {
    const varda::test::TemporaryFolder folder;
    const std::string fewPairs = folder.file("few.ini");
    const std::string manyPairs = folder.file("many.ini");
    save(tableOf(few), fewPairs);
    save(tableOf(many), manyPairs);
    measureFiles(folder);
    print("load 200,000 pairs", "20,000 pairs", "ms",
          byTurns([&] { return firstLoadTime(manyPairs, many); },
                  [&] { return firstLoadTime(fewPairs, few); }));
    measureLookUp(fewPairs, few, "20,000");
    measureLookUp(manyPairs, many, "200,000");
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
