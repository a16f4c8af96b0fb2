#pragma once

#include "support/temporary_folder.h"

#include <filesystem>
#include <string>

namespace varda::test {

/// The system's folders of a computer with the ports and programs of a test.
class MadeUpComputer {
protected:
    /// A terminal of a driver, below a device's folder; /sys/class/tty leads there by a link.
    std::filesystem::path addTerminal(const std::string& name, const std::string& device) {
        namespace files = std::filesystem;
        files::path terminal = root / device / "tty" / name;
        files::create_directories(terminal);
        files::create_directories(root / "sys/class/tty");
        files::create_directories(root / "dev/serial/by-id");
        files::create_directory_symlink(root / device, terminal / "device");
        files::create_directory_symlink(terminal, root / "sys/class/tty" / name);
        writeBytes((root / "dev" / name).string(), "");
        return terminal;
    }

    /// A USB adapter in the socket `place`, with or without a serial number.
    void plugIn(const std::string& name, const std::string& place, const std::string& serialNumber) {
        const std::string usb = "sys/devices/pci0/usb1/" + place;
        const std::string part = usb + '/' + place + ":1.0";
        addTerminal(name, part + '/' + name);
        tell(usb + "/idVendor", "0403");
        tell(usb + "/idProduct", "6001");
        tell(usb + "/product", "USB Serial");
        tell(usb + "/manufacturer", "Maker");
        if (!serialNumber.empty()) {
            tell(usb + "/serial", serialNumber);
        }
        tell(part + "/bInterfaceNumber", "00");
    }

    void unplug(const std::string& name, const std::string& place) {
        std::filesystem::remove_all(root / "sys/devices/pci0/usb1" / place);
        std::filesystem::remove(root / "sys/class/tty" / name);
        std::filesystem::remove(root / "dev" / name);
    }

    void tell(const std::string& file, const std::string& text) { writeFile(file, text + '\n'); }

    void writeFile(const std::string& file, const std::string& text) {
        std::filesystem::create_directories((root / file).parent_path());
        writeBytes((root / file).string(), text);
    }

    void addStableName(const std::string& name, const std::string& node) {
        std::filesystem::create_symlink("../../" + node, root / "dev/serial/by-id" / name);
    }

    /// A process of a program that has a node open, or nothing.
    void runProgram(int process, const std::string& program, const std::string& node = {}) {
        const std::string own = "proc/" + std::to_string(process);
        tell(own + "/comm", program);
        std::filesystem::create_directories(root / own / "fd");
        if (!node.empty()) {
            std::filesystem::create_symlink(node, root / own / "fd/3");
        }
    }

    /// The same for one that made a pseudo-terminal, and holds its far end besides.
    void runMaker(int process, const std::string& program, const std::string& index) {
        runProgram(process, program, "/dev/pts/" + index);
        std::filesystem::create_symlink("/dev/ptmx", root / "proc" / std::to_string(process) / "fd/5");
        writeFile("proc/" + std::to_string(process) + "/fdinfo/5", "pos:\t0\ntty-index:\t" + index + "\n");
    }

    TemporaryFolder folder;
    std::filesystem::path root = folder.path();
};

} // namespace varda::test
