// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/BuiltInChannels.h"

namespace orvane {

using namespace Qt::StringLiterals;

// The ids are stored in the users' preferences: never change one.
// clang-format off
const QList<Channel>& builtInChannels() {
    using enum ChannelCategory;
    static const QList<Channel> channels = {
        {u"alarabiya"_s, u"العربية"_s, u"Al Arabiya"_s, u"AlArabiya"_s, featured, u"n7eQejkXbnM"_s},
        {u"alhadath"_s, u"العربية الحدث"_s, u"Al Hadath"_s, u"AlHadath"_s, featured, u"0STUpSryLWY"_s},
        {u"aljazeera"_s, u"الجزيرة"_s, u"Al Jazeera"_s, u"aljazeera"_s, featured, u"bNyUyrR0PHo"_s},
        {u"aljazeeralive"_s, u"الجزيرة مباشر"_s, u"AJ Mubasher"_s, u"AljazeeraMubasher"_s, featured, u"rvJOGTSQNj8"_s},
        {u"saudinews"_s, u"الإخبارية السعودية"_s, u"Saudi News"_s, u"SaudiNewsTV"_s, saudiGulf, u"yYJjtr3fbZE"_s},
        {u"skynewsarabia"_s, u"سكاي نيوز عربية"_s, u"Sky News Arabia"_s, u"skynewsarabia"_s, saudiGulf, u"U--OjmpjF5o"_s},
        {u"asharqnews"_s, u"تلفزيون الشرق"_s, u"Asharq News"_s, u"AsharqNews"_s, saudiGulf, u"f6VpkfV7m4Y"_s},
        {u"abudhabitv"_s, u"قناة أبوظبي"_s, u"Abu Dhabi TV"_s, u"AbuDhabiTV"_s, saudiGulf, u"NsFGcKfRI6U"_s},
        {u"saudiquran"_s, u"قناة القرآن الكريم"_s, u"Saudi Quran"_s, u"SaudiQuranTV"_s, religious, u"Cm1v4bteXbI"_s},
        {u"saudisunnah"_s, u"قناة السنة النبوية"_s, u"Saudi Sunnah"_s, u"SaudiSunnahTV"_s, religious, u"9A1S0xAPVIs"_s},
        {u"france24en"_s, QString(), u"France 24 EN"_s, u"france24_en"_s, international, u"Ap-UM1O9RBU"_s},
        {u"dwnews"_s, QString(), u"DW News"_s, u"DWNews"_s, international, u"LuKwFajn37U"_s},
        {u"euronews"_s, QString(), u"Euronews"_s, u"euronews"_s, international, u"pykpO5kQJ98"_s},
        {u"trtworld"_s, QString(), u"TRT World"_s, u"TRTWorld"_s, international, u"1VUhRQpz_9o"_s},
        {u"abcnews"_s, QString(), u"ABC News"_s, u"ABCNews"_s, international, u"iipR5yUp36o"_s},
        {u"nbcnews"_s, QString(), u"NBC News NOW"_s, u"NBCNews"_s, international, u"aSoTupCeeYw"_s},
        {u"cbsnews"_s, QString(), u"CBS News 24/7"_s, u"CBSNews"_s, international, u"fF6jx00L3pQ"_s},
        {u"livenowfox"_s, QString(), u"LiveNOW from FOX"_s, u"LiveNOWFOX"_s, international, u"wNy7l8tbBVY"_s},
        {u"skynewsuk"_s, QString(), u"Sky News UK"_s, u"SkyNews"_s, international, u"EV7MDhqcA_o"_s},
        {u"cgtn"_s, QString(), u"CGTN"_s, u"CGTN"_s, international, u"-8o2EcNilL8"_s},
        {u"wion"_s, QString(), u"WION"_s, u"WION"_s, international, u"U_qguHzE-JU"_s},
        {u"aljazeeradoc"_s, u"الجزيرة الوثائقية"_s, u"AJ Documentary"_s, u"AlJazeeraDocumentary"_s, international, u"TiPYdMXt_XI"_s},
        {u"alarabiyaen"_s, u"العربية English"_s, u"Al Arabiya EN"_s, u"AlArabiyaEnglish"_s, international, u"QKvWXjEgo-8"_s},
    };
    return channels;
}
// clang-format on

} // namespace orvane
