// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/EditDistance.h"

#include <QList>

#include <algorithm>
#include <numeric>

namespace orvane {

qsizetype editDistance(QStringView a, QStringView b) {
    // Of the table of distances between all beginnings only the row before is needed.
    QList<qsizetype> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        qsizetype diagonal = std::exchange(row[0], i + 1);
        for (qsizetype j = 0; j < b.size(); ++j) {
            const qsizetype change = diagonal + (a.at(i) == b.at(j) ? 0 : 1);
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({change, row.at(j) + 1, diagonal + 1});
        }
    }
    return row.last();
}

bool mayBeSlip(QStringView typed, QStringView wanted) {
    return editDistance(typed, wanted) <= std::max(qsizetype{1}, wanted.size() / 3);
}

} // namespace orvane
