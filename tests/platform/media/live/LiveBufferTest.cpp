// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileDescriptor.h"
#include "platform/media/live/BufferFile.h"
#include "platform/media/live/BufferPolicy.h"
#include "platform/media/live/LiveEdge.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace orvane {

using namespace std::chrono_literals;

namespace {

/// A viewer of a stream that arrives in segments of two seconds.
class LiveEdgeTest : public testing::Test {
protected:
    static constexpr double segment = 2;

    /// Lets time pass, with a sample each second.
    void pass(int seconds, bool isAdvancing = true) {
        for (int i = 0; i < seconds; ++i) {
            now += 1s;
            clock += 1;
            position += isAdvancing ? 1 : 0;
            sample(isAdvancing);
        }
    }
    void sample(bool isAdvancing = true) {
        const double end = shift + std::floor((isFrozen ? frozenAt : clock) / segment) * segment;
        edge.sampled({.position = position, .start = start, .end = end, .isAdvancing = isAdvancing},
                     now);
    }
    void go(std::optional<double> place) {
        ASSERT_TRUE(place);
        edge.jumped(*place);
        position = *place;
    }
    [[nodiscard]] double behind() const { return edge.behind().count(); }

    LiveEdge edge;
    LiveEdge::TimePoint now{1h};
    double clock = 6;
    double position = 0;
    std::optional<double> start = 0;
    /// Of the timestamps that arrive.
    double shift = 0;
    bool isFrozen = false;
    double frozenAt = 0;
};

TEST_F(LiveEdgeTest, IsLiveUntilThePauseThatCounts) {
    sample();
    pass(30);
    EXPECT_EQ(behind(), 0) << "whatever lies between two segments";
    pass(20, false);
    EXPECT_EQ(behind(), 0) << "a stall is no pause";
    pass(10);
    edge.pause();
    pass(20, false);
    EXPECT_NEAR(behind(), 20, 1);
    pass(60);
    EXPECT_NEAR(behind(), 20, 1) << "it plays on from there";
    go(edge.placeOfLive());
    EXPECT_TRUE(edge.isLive());
    pass(60);
    EXPECT_EQ(behind(), 0);
}

TEST_F(LiveEdgeTest, GoesBackAsOftenAsSomethingIsKept) {
    sample();
    EXPECT_FALSE(edge.placeBack(10s)) << "nothing is kept";
    pass(35);
    for (const double expected : {10.0, 20.0, 30.0}) {
        go(edge.placeBack(10s));
        EXPECT_NEAR(behind(), expected, 0.1);
        sample();
        EXPECT_NEAR(behind(), expected, 0.5);
    }
    go(edge.placeBack(10s));
    EXPECT_NEAR(position, 0.5, 0.1) << "the earliest place, and a margin";
    pass(2);
    EXPECT_NEAR(edge.kept().count(), 2.5, 0.1);
    go(edge.placeBack(-10s));
    EXPECT_NEAR(position, 12.5, 0.1);
    go(edge.placeBack(-40s));
    EXPECT_TRUE(edge.isLive()) << "there is nothing later than live";
}

TEST_F(LiveEdgeTest, DoesNotBelieveAJumpThatFailed) {
    sample();
    pass(60);
    go(edge.placeBack(30s));
    pass(5);
    const double before = position;
    go(edge.placeOfLive());
    position = before;
    pass(1);
    EXPECT_TRUE(edge.isLive()) << "not at once: the answer may be an old one";
    pass(5);
    EXPECT_NEAR(behind(), 30, 1);
    // Old answers, and only then the new place: nothing breaks there.
    const std::optional<double> place = edge.placeOfLive();
    go(place);
    position = before;
    pass(2);
    position = *place + 2;
    pass(10);
    EXPECT_TRUE(edge.isLive());
    EXPECT_NEAR(edge.kept().count(), position, 0.1) << "all of it can still be reached";
}

TEST_F(LiveEdgeTest, FollowsASiteThatStands) {
    sample();
    pass(30);
    edge.pause();
    pass(5, false);
    isFrozen = true;
    frozenAt = clock;
    pass(300);
    EXPECT_LT(behind(), 25) << "what does not arrive is not missed";
}

TEST_F(LiveEdgeTest, SurvivesTimestampsThatStartAnew) {
    sample();
    pass(100);
    go(edge.placeBack(30s));
    sample();
    // The site's times begin again, 30 seconds of play before the viewer gets there.
    shift = -clock;
    pass(10);
    EXPECT_NEAR(behind(), 30, 1) << "not compared with other times";
    EXPECT_FALSE(edge.placeOfLive());
    EXPECT_TRUE(edge.placeBack(10s));
    pass(5, false);
    EXPECT_NEAR(behind(), 35, 1);
    // They get there. What was kept before cannot be reached from here.
    position = 0;
    start = 70;
    pass(1);
    EXPECT_NEAR(behind(), clock + shift - position - edge.lead().count(), 2);
    EXPECT_EQ(edge.kept().count(), 0);
    EXPECT_FALSE(edge.placeBack(10s));
    EXPECT_FALSE(edge.placeOfLive());
    // Not even if the times before the break are earlier ones too.
    start = -20;
    pass(5);
    EXPECT_NEAR(edge.kept().count(), 5, 0.1);
    EXPECT_NEAR(*edge.placeBack(10s), 1.5, 0.1);
    start.reset();
    pass(1);
    EXPECT_FALSE(edge.placeBack(10s)) << "libmpv sees no way";
    EXPECT_FALSE(edge.placeOfLive());
    start = 0;
    pass(1);
    // At live the break passes by itself.
    go(edge.placeOfLive());
    shift = 1000 - clock;
    pass(3);
    position = 1000;
    start = 0;
    pass(5);
    EXPECT_TRUE(edge.isLive());
    EXPECT_TRUE(edge.placeOfLive());
}

TEST(BufferPolicy, KeepsWhatTheDiskCanBear) {
    using namespace BufferPolicy;
    constexpr std::int64_t gib = std::int64_t(1) << 30;
    EXPECT_TRUE(hasRoom({.free = 2 * gib}, Presence::absent));
    EXPECT_FALSE(hasRoom({.free = gib * 3 / 4}, Presence::absent));
    EXPECT_TRUE(hasRoom({.free = gib * 3 / 4}, Presence::present)) << "it does not come and go";
    EXPECT_FALSE(hasRoom({.free = gib / 4}, Presence::present));

    EXPECT_EQ(keptTime(300s, {.used = gib / 4}, 300s), 300s);
    EXPECT_EQ(keptTime(300s, {.used = gib / 4}, 1s), 300s) << "too early to tell";
    EXPECT_NEAR(keptTime(300s, {.used = gib}, 300s).count(), 146, 1) << "500 MiB of it";

    EXPECT_EQ(bytesBefore(300s, 100), 30000);
    EXPECT_EQ(rateOf({.span = 100s, .bytes = 5000}), 50);
    EXPECT_FALSE(rateOf({.span = -100s, .bytes = 5000})) << "times that start anew";
}

TEST(BufferFile, CutsWhatIsOldOutOfFilesThatOnlyGrow) {
    namespace fs = std::filesystem;
    const QTemporaryDir parent;
    const std::string folder = parent.path().toStdString();
    fs::create_directories(folder + "/live-999999999-1/x");
    fs::create_directories(folder + "/live-1-1");
    fs::create_directories(folder + "/other");
    {
        BufferFile buffer(folder);
        ASSERT_TRUE(buffer.prepare());
        EXPECT_FALSE(fs::exists(folder + "/live-999999999-1")) << "its program is gone";
        EXPECT_TRUE(fs::exists(folder + "/live-1-1"));

        constexpr std::int64_t part = 1 << 20;
        const std::string path = buffer.folder() + "/cache.dat";
        FileDescriptor file(open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600));
        unlink(path.c_str());
        const std::string data(part, 'x');
        BufferFile::TimePoint now{1h};
        for (int i = 0; i < 8; ++i) {
            ASSERT_EQ(write(file.get(), data.data(), data.size()), part);
            now += 5s;
            const auto disk = buffer.cutBefore(now - 10s, now);
            EXPECT_LE(disk.used, 3 * part);
            EXPECT_GT(disk.free, 0);
        }
        struct stat status{};
        fstat(file.get(), &status);
        EXPECT_EQ(status.st_size, 8 * part) << "its reader sees no change";
        char last = 0;
        ASSERT_EQ(pread(file.get(), &last, 1, status.st_size - part), 1);
        EXPECT_EQ(last, 'x');
        // libmpv has closed it.
        file.reset();
        EXPECT_EQ(buffer.cutBefore(now, now).used, 0);
    }
    EXPECT_TRUE(fs::exists(folder + "/other"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 2);

    BufferFile nowhere("/proc/none");
    EXPECT_FALSE(nowhere.prepare());
}

} // namespace

} // namespace orvane
