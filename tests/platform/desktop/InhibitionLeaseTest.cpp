// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/InhibitionLease.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

using Way = InhibitionLease::Way;
using Ask = InhibitionLease::Ask;
using Release = InhibitionLease::Release;

class InhibitionLeaseTest : public testing::Test {
protected:
    /// Describes the commands and remembers the last request.
    QString doing(const InhibitionLease::Commands& commands) {
        static const QStringList names{u"saver"_s, u"portal"_s, u"server"_s};
        QStringList words;
        for (const auto& command : commands) {
            if (const auto* asked = std::get_if<Ask>(&command)) {
                ask = *asked;
                words += u"ask "_s + names.at(int(asked->way));
            } else {
                const auto& held = std::get<Release>(command);
                words += u"release %1 %2"_s.arg(names.at(int(held.way)), held.token.toString());
            }
        }
        return words.join(u", "_s);
    }

    InhibitionLease lease;
    Ask ask{};
};

TEST_F(InhibitionLeaseTest, AsksTheServicesInOrderAndReleasesOnce) {
    EXPECT_EQ(doing(lease.want()), u"ask saver"_s);
    EXPECT_EQ(doing(lease.want()), u""_s);
    EXPECT_EQ(doing(lease.refused(ask)), u"ask portal"_s);
    EXPECT_EQ(doing(lease.granted(ask, 1)), u""_s);
    EXPECT_EQ(doing(lease.want()), u""_s);
    EXPECT_EQ(doing(lease.unwant()), u"release portal 1"_s);
    EXPECT_EQ(doing(lease.unwant()), u""_s);

    EXPECT_EQ(doing(lease.want()), u"ask saver"_s);
    EXPECT_EQ(doing(lease.refused(ask)), u"ask portal"_s);
    EXPECT_EQ(doing(lease.refused(ask)), u"ask server"_s);
    EXPECT_EQ(doing(lease.refused(ask)), u""_s);
    EXPECT_EQ(doing(lease.serviceCame(Way::portal)), u"ask saver"_s) << "the first service";
}

TEST_F(InhibitionLeaseTest, ReleasesALateGrantAtOnce) {
    EXPECT_EQ(doing(lease.want()), u"ask saver"_s);
    EXPECT_EQ(doing(lease.unwant()), u""_s);
    EXPECT_EQ(doing(lease.want()), u""_s) << "the request is still pending";
    EXPECT_EQ(doing(lease.unwant()), u""_s);
    EXPECT_EQ(doing(lease.granted(ask, 1)), u"release saver 1"_s);

    EXPECT_EQ(doing(lease.want()), u"ask saver"_s);
    const Ask first = ask;
    EXPECT_EQ(doing(lease.serviceWent(Way::screenSaver)), u"ask saver"_s);
    EXPECT_EQ(doing(lease.refused(first)), u""_s);
    EXPECT_EQ(doing(lease.granted(first, 1)), u"release saver 1"_s);
    EXPECT_EQ(doing(lease.granted(ask, 2)), u""_s);
    EXPECT_EQ(doing(lease.unwant()), u"release saver 2"_s);
}

TEST_F(InhibitionLeaseTest, FollowsServicesThatAppearAndVanish) {
    EXPECT_EQ(doing(lease.serviceCame(Way::screenSaver)), u""_s);
    EXPECT_EQ(doing(lease.want()), u"ask saver"_s);
    EXPECT_EQ(doing(lease.granted(ask, 1)), u""_s);
    EXPECT_EQ(doing(lease.serviceCame(Way::portal)), u""_s) << "not preferred";
    EXPECT_EQ(doing(lease.serviceWent(Way::portal)), u""_s);
    EXPECT_EQ(doing(lease.serviceWent(Way::screenSaver)), u"ask saver"_s) << "nothing to release";
    EXPECT_EQ(doing(lease.refused(ask)), u"ask portal"_s);
    EXPECT_EQ(doing(lease.serviceCame(Way::screenSaver)), u""_s);
    EXPECT_EQ(doing(lease.granted(ask, 2)), u"release portal 2, ask saver"_s);
    EXPECT_EQ(doing(lease.refused(ask)), u"ask portal"_s);
    EXPECT_EQ(doing(lease.serviceCame(Way::screenSaver)), u""_s);
    EXPECT_EQ(doing(lease.refused(ask)), u"ask saver"_s);
    EXPECT_EQ(doing(lease.refused(ask)), u"ask portal"_s);
    EXPECT_EQ(doing(lease.refused(ask)), u"ask server"_s);
    EXPECT_EQ(doing(lease.granted(ask, {})), u""_s);
    EXPECT_EQ(doing(lease.serviceCame(Way::screenSaver)), u"release server , ask saver"_s);
    EXPECT_EQ(doing(lease.unwant()), u""_s);
    EXPECT_EQ(doing(lease.serviceWent(Way::screenSaver)), u""_s);
    EXPECT_EQ(doing(lease.serviceCame(Way::screenSaver)), u""_s) << "no inhibition is wanted";
}

} // namespace
} // namespace orvane
