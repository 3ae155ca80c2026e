#include "host/recipe/recipeformat.h"

#include <QRegularExpression>

namespace host {

const QStringList& recipeTitles() {
    static const QStringList titles = {
        QStringLiteral(" "),
        QStringLiteral("設定溫度"),
        QStringLiteral("設定時間(時)"),
        QStringLiteral("設定時間(分)"),
        QStringLiteral("設定時間(秒)"),
        QStringLiteral("G. SOAK +"),
        QStringLiteral("G. SOAK  -"),
        QStringLiteral("PID 群組"),
        QStringLiteral("Empty"),
        QStringLiteral("EVENT1 機械泵ON"),
        QStringLiteral("EVENT2 粗抽閥"),
        QStringLiteral("EVENT3 魯式ON"),
        QStringLiteral("EVENT4 備壓"),
        QStringLiteral("EVENT5 氮氣分壓"),
        QStringLiteral("EVENT6 加熱"),
        QStringLiteral("EVENT7 混合氣分壓"),
        QStringLiteral("EVENT8 測漏"),
        QStringLiteral("EVENT9 脈衝換氣"),
        QStringLiteral("EVENT10"),
        QStringLiteral("EVENT11"),
        QStringLiteral("EVENT12"),
        QStringLiteral("DI1"),
        QStringLiteral("DI2"),
        QStringLiteral("DI3 程式結束"),
        QStringLiteral("DI4 真空未達 HOLD"),
    };
    return titles;
}

QString recipeLabel(int number) {
    return QStringLiteral("程序%1").arg(number);
}

int recipeLabelNumber(const QString& label) {
    static const QRegularExpression pattern(QStringLiteral("^程序([1-9][0-9]{0,3})$"));
    return pattern.match(label).captured(1).toInt();
}

} // namespace host
