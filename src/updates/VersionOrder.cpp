// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/VersionOrder.h"

#include <QChar>

#include <algorithm>
#include <vector>

namespace orvane {

namespace {

/// A number without leading zeros, or a run of letters. 0, and thus a missing number, is an empty
/// text.
struct Part {
    enum class Kind { letters, number };

    Kind kind = Kind::number;
    QStringView text;
};

struct Version {
    /// The numbers before the first letter.
    std::vector<Part> release;
    /// From the first letter on.
    std::vector<Part> preRelease;
};

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

bool isLetter(QChar character) {
    return character.isLetter();
}

QStringView takeRun(QStringView& text, bool (*belongs)(QChar)) {
    const auto end = std::find_if_not(text.begin(), text.end(), belongs);
    const QStringView run = text.first(end - text.begin());
    text = text.sliced(run.size());
    return run;
}

Part numberOf(QStringView digits) {
    while (digits.startsWith(u'0'))
        digits = digits.sliced(1);
    return {.kind = Part::Kind::number, .text = digits};
}

Version parse(QStringView text) {
    text = text.first(text.indexOf(u'-') < 0 ? text.size() : text.indexOf(u'-'));
    Version version;
    while (!text.isEmpty()) {
        const bool isRelease = version.preRelease.empty();
        if (isDigit(text.front()))
            (isRelease ? version.release : version.preRelease)
                .push_back(numberOf(takeRun(text, isDigit)));
        else if (isLetter(text.front()))
            version.preRelease.push_back(
                {.kind = Part::Kind::letters, .text = takeRun(text, isLetter)});
        else
            text = text.sliced(1);
    }
    return version;
}

std::weak_ordering order(int comparison) {
    return comparison <=> 0;
}

std::weak_ordering compareParts(const Part& first, const Part& second) {
    if (first.kind != second.kind)
        return first.kind == Part::Kind::letters ? std::weak_ordering::less
                                                 : std::weak_ordering::greater;
    if (first.kind == Part::Kind::letters)
        return order(first.text.compare(second.text, Qt::CaseInsensitive));
    // Without leading zeros, the longer number is the greater one.
    if (first.text.size() != second.text.size())
        return first.text.size() <=> second.text.size();
    return order(first.text.compare(second.text));
}

std::weak_ordering compareAll(const std::vector<Part>& first, const std::vector<Part>& second) {
    for (std::size_t i = 0; i < std::max(first.size(), second.size()); ++i) {
        const Part left = i < first.size() ? first[i] : Part{};
        const Part right = i < second.size() ? second[i] : Part{};
        if (const auto result = compareParts(left, right); result != 0)
            return result;
    }
    return std::weak_ordering::equivalent;
}

} // namespace

std::weak_ordering compareVersions(QStringView first, QStringView second) {
    const Version left = parse(first);
    const Version right = parse(second);
    const auto release = compareAll(left.release, right.release);
    return release != 0 ? release : compareAll(left.preRelease, right.preRelease);
}

} // namespace orvane
