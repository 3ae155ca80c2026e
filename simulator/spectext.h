#ifndef SIMULATOR_SPECTEXT_H
#define SIMULATOR_SPECTEXT_H

#include "common/result.h"

#include <QString>

#include <utility>
#include <vector>

namespace simulator {

/** What stands on a command line: "HEAD" or "HEAD:KEY=VALUE,KEY=VALUE". */
using SpecSettings = std::vector<std::pair<QString, QString>>; // keys and values

QString specHead(const QString& text);

/** An error quotes the part that has no "=". */
Result<SpecSettings> specSettings(const QString& text);

} // namespace simulator

#endif
