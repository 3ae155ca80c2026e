#include "host/project/spelling.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace host {

namespace {

/** Letters to put in, take out, change, or swap with their neighbour. */
int editDistance(const QString& from, const QString& to) {
    std::vector<int> before(size_t(to.size()) + 1); // the row of from without its last two letters
    std::vector<int> above = before;                // ... without its last letter
    std::vector<int> row = before;
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < from.size(); ++i) {
        before = std::exchange(above, row);
        row[0] = i + 1;
        for (int j = 0; j < to.size(); ++j) {
            const size_t column = size_t(j) + 1;
            row[column] = std::min(
                {above[column - 1] + (from[i] != to[j]), above[column] + 1, row[column - 1] + 1});
            const bool swapped = i > 0 && j > 0 && from[i] == to[j - 1] && from[i - 1] == to[j];
            if (swapped)
                row[column] = std::min(row[column], before[column - 2] + 1);
        }
    }
    return row.back();
}

} // namespace

QString nearestSpelling(const QString& text, const QStringList& candidates) {
    QString nearest;
    int least = std::max(1, int(text.size()) / 3) + 1;
    for (const QString& candidate : candidates) {
        const int distance = editDistance(text.toLower(), candidate.toLower());
        if (distance < least) {
            least = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

QString spellingHint(const QString& text, const QStringList& candidates) {
    const QString nearest = nearestSpelling(text, candidates);
    if (!nearest.isEmpty())
        return QString::fromLatin1("; did you mean '%1'?").arg(nearest);
    if (candidates.isEmpty())
        return QString();
    return QString::fromLatin1("; known are ") + candidates.join(QLatin1String(", "));
}

} // namespace host
