#include "platform/systemInspector.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#ifndef _WIN32
namespace zint {
namespace {

namespace fs = std::filesystem;

/// The files that a system shows, below a folder of its own.
struct SystemInspectorTest : testing::Test {
    void put(const std::string& path, std::string_view bytes = {})
    {
        fs::create_directories(fs::path(root.path() + path).parent_path());
        TemporaryFolder::write(root.path() + path, bytes);
    }
    void link(const std::string& path, const std::string& target)
    {
        fs::create_directories(fs::path(root.path() + path).parent_path());
        fs::create_symlink(target, root.path() + path);
    }

    TemporaryFolder root;
    SystemInspector inspector{root.path()};
};

TEST_F(SystemInspectorTest, FindsThePortWhoHasItAndHowItsDriverIsSet)
{
    put("/dev/ttyUSB0");
    link("/dev/serial/by-id/usb-adapter", "../../ttyUSB0");
    put("/proc/4000001/comm", "minicom\n");
    link("/proc/4000001/fd/3", "/dev/ttyUSB0");
    put("/proc/4000002/comm", "ModemManager\n");
    link("/proc/4000002/fd/3", "/dev/ttyUSB1");
    put("/proc/meminfo");
    put("/run/lock/LCK..ttyUSB0", "   4000001\n");
    put("/sys/bus/usb-serial/devices/ttyUSB0/latency_timer", "16\n");
    const PortFacts facts = inspector.facts("/dev/serial/by-id/usb-adapter");
    EXPECT_EQ(facts.path, "/dev/ttyUSB0");
    EXPECT_TRUE(facts.exists && facts.mayBeUsed && facts.modemManagerRuns);
    EXPECT_FALSE(facts.brlttyRuns || facts.isSandboxed || facts.isBluetooth);
    EXPECT_EQ(facts.lockFile + " " + facts.lockHolder, "/run/lock/LCK..ttyUSB0 minicom (4000001)");
    EXPECT_EQ(facts.latency, std::chrono::milliseconds(16));
    EXPECT_LT(facts.age, std::chrono::seconds(15));
    EXPECT_EQ(inspector.holders("ttyUSB0"), std::vector<std::string>{"minicom (4000001)"});

    put("/dev/rfcomm0");
    put("/run/lock/LCK..rfcomm0", "4000003\n"); // its program has ended
    const PortFacts radio = inspector.facts("rfcomm0");
    EXPECT_TRUE(radio.isBluetooth);
    EXPECT_EQ(radio.lockFile, "");
    EXPECT_FALSE(inspector.facts("/dev/ttyUSB7").exists);
}

TEST_F(SystemInspectorTest, FindsConvertersThatAreNoPort)
{
    const auto plug = [this](const std::string& place, const std::string& maker) {
        put("/sys/bus/usb/devices/" + place + "/idVendor", maker + "\n");
        put("/sys/bus/usb/devices/" + place + "/idProduct", "7523\n");
        put("/sys/bus/usb/devices/" + place + "/" + place + ":1.0/bInterfaceClass", "ff\n");
    };
    plug("1-1", "1a86");
    put("/sys/bus/usb/devices/1-1/1-1:1.0/ttyUSB0/port_number");
    plug("1-2", "1a86");
    put("/sys/bus/usb/devices/1-2/product", "USB2.0-Serial\n");
    link("/sys/bus/usb/devices/1-2/1-2:1.0/driver", "../../../bus/usb/drivers/usbfs");
    plug("1-3", "046d"); // a mouse
    EXPECT_EQ(inspector.facts({}).portless,
              (std::vector<PortlessDevice>{{"1a86:7523", "USB2.0-Serial", "usbfs"}}));
}

} // namespace
} // namespace zint
#endif
