#include "device/port_doctor.h"
#include "device/port_identity.h"
#include "device/port_names.h"

#include <gtest/gtest.h>

// In this order: the first defines what the others use.
#include <windows.h>

#include <devguid.h>
#include <setupapi.h>

#include <algorithm>
#include <string>

namespace varda {

using namespace device;
namespace {

/// An adapter in the system's list of devices, and its port among those of the drivers, while it lives.
class MadeUpAdapter {
public:
    MadeUpAdapter(std::wstring port, std::wstring id, const std::wstring& kind, const std::wstring& maker)
        : port_(std::move(port)), list_(::SetupDiCreateDeviceInfoList(&GUID_DEVCLASS_PORTS, nullptr)) {
        device_.cbSize = sizeof(device_);
        isListed_ = ::SetupDiCreateDeviceInfoW(list_, id.c_str(), &GUID_DEVCLASS_PORTS, nullptr, nullptr, 0,
                                               &device_) != 0 &&
                    ::SetupDiRegisterDeviceInfo(list_, &device_, 0, nullptr, nullptr, nullptr) != 0;
        setProperty(SPDRP_FRIENDLYNAME, kind + L" (" + port_ + L")");
        setProperty(SPDRP_MFG, maker);
        HKEY key =
            ::SetupDiCreateDevRegKeyW(list_, &device_, DICS_FLAG_GLOBAL, 0, DIREG_DEV, nullptr, nullptr);
        ::RegSetValueExW(key, L"PortName", 0, REG_SZ, bytesOf(port_), sizeOf(port_));
        ::RegCloseKey(key);
        plugIn();
    }
    MadeUpAdapter(const MadeUpAdapter&) = delete;
    MadeUpAdapter& operator=(const MadeUpAdapter&) = delete;
    ~MadeUpAdapter() {
        unplug();
        ::SetupDiRemoveDevice(list_, &device_);
        ::SetupDiDestroyDeviceInfoList(list_);
    }

    bool isListed() const { return isListed_; }

    void plugIn() {
        const HKEY ports = openPorts();
        ::RegSetValueExW(ports, driver().c_str(), 0, REG_SZ, bytesOf(port_), sizeOf(port_));
        ::RegCloseKey(ports);
    }

    void unplug() {
        const HKEY ports = openPorts();
        ::RegDeleteValueW(ports, driver().c_str());
        ::RegCloseKey(ports);
    }

private:
    static HKEY openPorts() {
        HKEY key = nullptr;
        ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, nullptr,
                          REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, nullptr);
        return key;
    }
    static const BYTE* bytesOf(const std::wstring& text) {
        return reinterpret_cast<const BYTE*>(text.c_str());
    }
    static DWORD sizeOf(const std::wstring& text) {
        return static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    }

    std::wstring driver() const { return L"\\Device\\Adapter" + port_; }

    void setProperty(DWORD which, const std::wstring& text) {
        ::SetupDiSetDeviceRegistryPropertyW(list_, &device_, which, bytesOf(text), sizeOf(text));
    }

    std::wstring port_;
    HDEVINFO list_;
    SP_DEVINFO_DATA device_{};
    bool isListed_ = false;
};

PortName portNamed(const std::string& node) {
    const auto ports = portNames();
    const auto found = std::ranges::find(ports, node, &PortName::node);
    return found == ports.end() ? PortName{} : *found;
}

class PortNamesOnWindows : public testing::Test {
protected:
    PortNamesOnWindows() { EXPECT_TRUE(adapter.isListed()) << ::GetLastError(); }

    MadeUpAdapter adapter{L"COM42", L"USB\\VID_0403&PID_6001\\A10K", L"USB Serial Port", L"Maker"};
};

TEST_F(PortNamesOnWindows, TellWhatAnAdapterIs) {
    const PortName port = portNamed("COM42");
    EXPECT_EQ(port.description, "USB Serial Port");
    EXPECT_EQ(port.maker, "Maker");
    EXPECT_EQ(port.serialNumber, "A10K");
    EXPECT_EQ(describe(port), "COM42 - USB Serial Port, Maker (serial number A10K)");
}

TEST_F(PortNamesOnWindows, AreThoseOfTheDriversThatAreThere) {
    adapter.unplug();
    EXPECT_EQ(portNamed("COM42"), PortName{});
    adapter.plugIn();
    EXPECT_EQ(portNamed("COM42").node, "COM42");
}

TEST_F(PortNamesOnWindows, AnAdapterIsKnownAgainUnderAnotherNumber) {
    const std::string identity = identityOfPort("COM42");
    EXPECT_EQ(identity, "USB\\VID_0403&PID_6001\\A10K");
    for (const char* const name : {"com42", R"(\\.\COM42)", " COM42 "}) {
        EXPECT_EQ(identityOfPort(name), identity) << name;
    }
    EXPECT_EQ(nameOfDevice(identity, "COM42"), "COM42");
    EXPECT_EQ(nameOfDevice(identity, "COM7"), "COM42");
    adapter.unplug();
    EXPECT_EQ(nameOfDevice(identity, "COM42"), "");
}

TEST_F(PortNamesOnWindows, TheDoctorPutsTheChosenPortFirst) {
    const auto findings = examinePorts("com42");
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.front().port.node, "COM42");
    EXPECT_EQ(findings.front().remedies.front().command, "devmgmt.msc");
    const std::string report = reportOf(findings);
    EXPECT_EQ(report.find("There is no such port"), std::string::npos) << report;
}

} // namespace
} // namespace varda
