#include "window/shell/attach_again.h"

#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace varda::test {
namespace {

using window::AttachAgain;
using Texts = std::vector<std::string>;

/// A computer whose devices come and go as the test says.
class AttachAgainTest : public testing::Test {
protected:
    AttachAgainTest() {
        devices["ttyUSB0"] = "adapter";
        attachAgain.opened("ttyUSB0");
    }

    std::string identityOf(const std::string& name) const {
        const auto device = devices.find(name);
        return device == devices.end() ? std::string() : device->second;
    }

    std::string nameOf(const std::string& identity, const std::string& lastName) const {
        if (identityOf(lastName) == identity) {
            return lastName;
        }
        for (const auto& [name, device] : devices) {
            if (device == identity) {
                return name;
            }
        }
        return {};
    }

    bool open(const std::string& name) {
        tried.push_back(name);
        if (isReady) {
            attachAgain.opened(name);
        }
        return isReady;
    }

    void lose() {
        devices.clear();
        attachAgain.lost();
    }

    void wait() { clock.advance(AttachAgain::lookingPeriod); }

    ManualClock clock;
    std::map<std::string, std::string> devices; ///< identities by names
    bool isReady = true;
    Texts tried;
    ManualTimer timer{clock, [this] { attachAgain.tick(); }};
    AttachAgain attachAgain{
        {.identityOf = [this](const std::string& name) { return identityOf(name); },
         .nameOf = [this](const std::string& identity,
                          const std::string& lastName) { return nameOf(identity, lastName); },
         .open = [this](const std::string& name) { return open(name); }},
        timer};
};

TEST_F(AttachAgainTest, IsOffAtFirst) {
    lose();
    EXPECT_FALSE(attachAgain.isWished());
    EXPECT_FALSE(timer.isRunning());
    devices["ttyUSB0"] = "adapter";
    wait();
    EXPECT_TRUE(tried.empty());
}

TEST_F(AttachAgainTest, OpensTheDeviceOnceItIsBack) {
    attachAgain.wish(true);
    lose();
    EXPECT_EQ(attachAgain.awaited(), "ttyUSB0");
    wait();
    EXPECT_TRUE(tried.empty());
    devices["ttyUSB0"] = "adapter";
    wait();
    EXPECT_EQ(tried, Texts{"ttyUSB0"});
    EXPECT_EQ(attachAgain.awaited(), "");
    wait();
    EXPECT_EQ(tried.size(), 1U);
}

TEST_F(AttachAgainTest, LooksForNothingWhileNothingIsLost) {
    attachAgain.wish(true);
    EXPECT_FALSE(timer.isRunning());
    lose();
    EXPECT_TRUE(timer.isRunning());
    devices["ttyUSB0"] = "adapter";
    wait();
    EXPECT_FALSE(timer.isRunning());
}

TEST_F(AttachAgainTest, FindsTheDeviceUnderAnotherName) {
    attachAgain.wish(true);
    lose();
    devices["ttyUSB1"] = "adapter";
    wait();
    EXPECT_EQ(tried, Texts{"ttyUSB1"});
}

TEST_F(AttachAgainTest, LeavesAnotherDeviceOfTheSameNameAlone) {
    attachAgain.wish(true);
    lose();
    devices["ttyUSB0"] = "another";
    wait();
    EXPECT_TRUE(tried.empty());
    EXPECT_TRUE(timer.isRunning());
}

TEST_F(AttachAgainTest, TriesAgainWhereTheDeviceIsNotReady) {
    attachAgain.wish(true);
    lose();
    devices["ttyUSB0"] = "adapter";
    isReady = false;
    wait();
    wait();
    EXPECT_EQ(tried.size(), 2U);
    isReady = true;
    wait();
    wait();
    EXPECT_EQ(tried.size(), 3U);
}

TEST_F(AttachAgainTest, CanBeWishedAfterTheLossAndTakenBack) {
    lose();
    attachAgain.wish(true);
    EXPECT_EQ(attachAgain.awaited(), "ttyUSB0");
    attachAgain.wish(false);
    EXPECT_EQ(attachAgain.awaited(), "");
    devices["ttyUSB0"] = "adapter";
    wait();
    EXPECT_TRUE(tried.empty());
}

TEST_F(AttachAgainTest, EndsWhereTheUserTurnsToSomethingElse) {
    attachAgain.wish(true);
    lose();
    attachAgain.forget();
    devices["ttyUSB0"] = "adapter";
    wait();
    EXPECT_TRUE(tried.empty());
    EXPECT_TRUE(attachAgain.isWished()) << "for the next loss";
}

TEST_F(AttachAgainTest, WaitsForNoDeviceThatWouldNotBeKnown) {
    attachAgain.opened("/dev/pts/5");
    attachAgain.wish(true);
    lose();
    EXPECT_FALSE(attachAgain.isKnown());
    EXPECT_FALSE(timer.isRunning());
}

TEST_F(AttachAgainTest, WaitsAgainAfterTheNextLoss) {
    attachAgain.wish(true);
    for (int round = 0; round < 3; ++round) {
        lose();
        devices["ttyUSB0"] = "adapter";
        wait();
    }
    EXPECT_EQ(tried.size(), 3U);
}

} // namespace
} // namespace varda::test
