#include "apps/dmc50demo/recipeact.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <algorithm>

using namespace host;

namespace {

constexpr int ProgramId = 7;
constexpr int EditedProgram = 3;
constexpr int EditedValue = 855; // degrees
const char FileCodec[] = "UTF-16LE";

using Table = QVector<QStringList>; // of fields; the titles first

Table readTable(const QString& path) {
    QFile file(path);
    Table table;
    if (!file.open(QIODevice::ReadOnly))
        return table;
    QTextStream stream(&file);
    stream.setCodec(FileCodec);
    while (!stream.atEnd())
        table.append(stream.readLine().split(QLatin1Char('\t')));
    return table;
}

bool writeTable(const Table& table, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream stream(&file);
    stream.setCodec(FileCodec);
    stream.setGenerateByteOrderMark(true);
    for (const QStringList& row : table)
        stream << row.join(QLatin1Char('\t')) << '\n';
    return true;
}

QVector<quint32> valuesIn(const QString& path) {
    QVector<quint32> values;
    for (const QStringList& row : readTable(path).mid(1)) {
        for (const QString& field : row.mid(1))
            values.append(field.toUInt());
    }
    return values;
}

QString seconds(const QElapsedTimer& timer) {
    return QString::fromLatin1("%1 s").arg(double(timer.elapsed()) / 1000, 0, 'f', 1);
}

} // namespace

RecipeAct::RecipeAct(Screen& screen, PanelSession& session, const Project& project,
                     const simulator::Line& line, PanelOperator& panel, const QString& stick)
    : m_screen(screen)
    , m_session(session)
    , m_line(line)
    , m_panel(panel)
    , m_slots(recipeSlots(project, linksWithRecipes(project).value(0), RecipePrograms))
    , m_stick(stick) {}

QString RecipeAct::path() const {
    return QDir(m_stick).filePath(QString::fromLatin1("PROG_%1.txt").arg(ProgramId));
}

RecipeReport RecipeAct::transfer(RecipeReport (RecipeJob::*what)(), int count) {
    RecipeOrder order;
    order.slots_known = m_slots;
    order.program_id = ProgramId;
    order.count = count;
    order.stick = m_stick;
    RecipeJob job(m_session.link(m_slots.link_id), m_panel, order,
                  [this](const char* doing, int percent) { m_screen.progress(doing, percent); });
    return (job.*what)();
}

RecipeAct::Memory RecipeAct::memory() const {
    const simulator::Station* const station = m_line.station(quint8(m_slots.station));
    Memory values;
    for (int number = 1; number <= RecipePrograms; ++number) {
        for (int i = 0; i < RecipeColumns; ++i)
            values.append(station->read(recipeSlotAddress(number) + quint32(i), m_line.elapsed()));
    }
    return values;
}

Result<void> RecipeAct::pull() {
    m_screen.begin(QString::fromLatin1("Pulling %1 programs to a USB stick").arg(RecipePrograms));
    QElapsedTimer timer;
    timer.start();
    const RecipeReport report = transfer(&RecipeJob::pull, RecipePrograms);
    if (!report.ok())
        return Failure(report.problems.join(QLatin1Char('\n')));
    if (valuesIn(path()) != memory())
        return Failure(QStringLiteral("The file is not what the controller holds"));
    m_screen.done(QString::fromLatin1("%1 on the stick after %2, value by value what station %3 "
                                      "holds")
                      .arg(QFileInfo(path()).fileName(), seconds(timer))
                      .arg(m_slots.station));
    return {};
}

Result<void> RecipeAct::pushEdited() {
    Table table = readTable(path());
    QString& field = table[EditedProgram][RecipeTemperature];
    m_screen.begin(QString::fromUtf8("Pushing them back, program %1 with %2 °C instead of %3")
                       .arg(EditedProgram)
                       .arg(EditedValue)
                       .arg(field));
    field = QString::number(EditedValue);
    Memory expected = memory();
    quint32& changed = expected[(EditedProgram - 1) * RecipeColumns + RecipeTemperature - 1];
    const quint32 before = changed;
    changed = EditedValue;
    if (!writeTable(table, path()))
        return Failure(QStringLiteral("The file cannot be edited"));
    const RecipeReport report = transfer(&RecipeJob::push, RecipePrograms);
    if (!report.ok())
        return Failure(report.problems.join(QLatin1Char('\n')));
    if (memory() != expected)
        return Failure(QStringLiteral("The controller's memory is not what the file says"));
    m_screen.done(QString::fromLatin1("double word %1 of station %2 was %3, is %4 now; the other "
                                      "%5 are as before")
                      .arg(recipeSlotAddress(EditedProgram), 8, 16, QLatin1Char('0'))
                      .arg(m_slots.station)
                      .arg(before)
                      .arg(EditedValue)
                      .arg(expected.size() - 1));
    return {};
}

Result<void> RecipeAct::pushBad() {
    m_screen.begin(QStringLiteral("Pushing a file with three bad fields"));
    Table table = readTable(path());
    table[1][RecipeTemperature] = QStringLiteral("85O");
    table[4][RecipeMinutes] = QStringLiteral("1.5");
    table[9][RecipePidGroup].clear();
    if (!writeTable(table, path()))
        return Failure(QStringLiteral("The file cannot be edited"));
    const Memory before = memory();
    const RecipeReport report = transfer(&RecipeJob::push, RecipePrograms);
    if (report.problems.size() != 1 + 3) // a line for the log, and the log
        return Failure(QStringLiteral("The driver has not refused the three fields"));
    if (memory() != before)
        return Failure(QStringLiteral("The controller's memory has changed"));
    m_screen.print(report.problems);
    m_screen.done(QStringLiteral("refused, and nothing was written"));
    return {};
}
