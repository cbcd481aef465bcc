// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/EditDistance.h"

#include <QList>

#include <algorithm>
#include <numeric>

namespace orvane {

qsizetype editDistance(QStringView a, QStringView b) {
    // Only the previous row of the table of distances between all prefixes is needed.
    QList<qsizetype> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        qsizetype diagonal = std::exchange(row[0], i + 1);
        for (qsizetype j = 0; j < b.size(); ++j) {
            const qsizetype replaced = diagonal + (a.at(i) == b.at(j) ? 0 : 1);
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({replaced, row.at(j) + 1, diagonal + 1});
        }
    }
    return row.last();
}

bool isLikelyTypo(QStringView typed, QStringView known) {
    return editDistance(typed, known) <= std::max(qsizetype{1}, known.size() / 3);
}

} // namespace orvane
