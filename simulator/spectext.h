#ifndef SIMULATOR_SPECTEXT_H
#define SIMULATOR_SPECTEXT_H

#include <QString>

#include <utility>
#include <vector>

namespace simulator {

/** A setting on a command line: "HEAD" or "HEAD:KEY=VALUE,KEY=VALUE". */
struct SpecText {
    QString head;
    std::vector<std::pair<QString, QString>> settings;
    QString error; // the part that has no "=", quoted in a sentence; or empty
};

SpecText parseSpec(const QString& text);

} // namespace simulator

#endif
