#include "tests/plugin/dynamicsymbols.h"

#include <QProcess>
#include <QRegExp>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

/** "[value [size]] kind name[@version]" */
DynamicSymbol parsed(const QString& line) {
    const QStringList words = line.trimmed().split(QLatin1Char(' '));
    const QString size = words.size() == 4 ? words.at(1) : QString();
    const DynamicSymbol symbol = {words.last().section(QLatin1Char('@'), 0, 0).toStdString(),
                                  words.at(words.size() - 2).at(0).toLatin1(),
                                  std::size_t(size.toULongLong(nullptr, 16))};
    return symbol;
}

std::vector<DynamicSymbol> symbols(const char* which, const char* file) {
    QProcess nm;
    nm.start(QString::fromLatin1("nm"),
             QStringList() << QString::fromLatin1("-D") << QString::fromLatin1("-S")
                           << QString::fromLatin1(which) << QString::fromUtf8(file));
    EXPECT_TRUE(nm.waitForFinished());
    const QString output = QString::fromLatin1(nm.readAllStandardOutput().trimmed());
    EXPECT_FALSE(output.isEmpty()) << file;
    const QStringList lines = output.split(QLatin1Char('\n'));
    std::vector<DynamicSymbol> found;
    for (int i = 0; i < lines.size() && !output.isEmpty(); ++i)
        found.push_back(parsed(lines.at(i)));
    return found;
}

} // namespace

std::vector<DynamicSymbol> definedSymbols(const char* file) {
    return symbols("--defined-only", file);
}

std::vector<DynamicSymbol> undefinedSymbols(const char* file) {
    return symbols("--undefined-only", file);
}

bool isOfPanelService(const std::string& name) {
    const QRegExp service(QString::fromLatin1(
        "^_Z(?:(?:NK?|T[VIS]|Th?n\\d+_N)\\d+(?:KCSV[A-Z]|KBuzzer|KDevice|KSetting|MessageCenter|"
        "PlatformInterface|ArmLinuxHmi|X86LinuxHmi|AbstractBuzzerInterface|FramDevice)|"
        "\\d+(?:p|setP)anelPaths)"));
    return service.indexIn(QString::fromStdString(name)) == 0;
}
