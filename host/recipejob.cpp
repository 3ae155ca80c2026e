#include "host/recipejob.h"

#include "host/paneloperator.h"
#include "host/recipefiles.h"
#include "runtime/panel/kcsvloader.h"
#include "runtime/panel/kdevice.h"

#include <QDir>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace {

constexpr int MOST_DIFFERENCES = 10; // told one by one

/** The driver sends no others: it sets bits 16 to 23 of every value to 0. */
constexpr quint32 SENT_BITS = 0xff00ffff;

/** The rows of programs in a file as the driver's own loader takes them. */
std::optional<QList<QStringList>> loadRows(const QString& path) {
    KCSVLoader loader(nullptr);
    if (!loader.openFile(path))
        return std::nullopt;
    QList<QStringList> rows = loader.fileContent();
    if (!rows.isEmpty())
        rows.removeFirst(); // the titles
    return rows;
}

/** The number at the end of the label that the driver gives a program; 0: none. */
int labelledProgram(const QString& label) {
    const QString mark = QString::fromUtf8("程序");
    return label.startsWith(mark) ? label.mid(mark.size()).toInt() : 0;
}

QString fileName(const QString& path) {
    return QFileInfo(path).fileName();
}

} // namespace

RecipeJob::RecipeJob(LinkSession& link, PanelOperator& panel, const RecipeOrder& order,
                     const RecipeTransfer::Progress& progress, Clock& clock)
    : m_link(link)
    , m_panel(panel)
    , m_order(order)
    , m_progress(progress)
    , m_transfer(link, order.slots_known.station, clock) {}

QString RecipeJob::stickFolder() const {
    return m_order.stick.isEmpty() ? KDevice::getInstance()->getMount(DEVICE_USB) : m_order.stick;
}

QString RecipeJob::lastLineError() const {
    const QString error = m_link.stationError(m_order.slots_known.station);
    return error.isEmpty() ? QString() : QString::fromLatin1(" (%1)").arg(error);
}

QStringList RecipeJob::failure(const TransferEnd& end, bool is_push, bool has_log) const {
    if (!end.error.isEmpty())
        return {end.error};
    const QString log = RecipeFiles(stickFolder(), m_order.program_id).errorLog(is_push);
    if (end.failed && has_log)
        return QStringList(
                   QString::fromLatin1("the driver has refused; its %1 says:").arg(fileName(log))) +
               logLines(log);
    if (end.failed)
        return {QStringLiteral("the driver has refused, and could write no error log") +
                lastLineError()};
    return {};
}

/** Lets the driver do it, and reports what it says. */
bool RecipeJob::transfer(TransferKind kind, RecipeReport& report) {
    const bool is_push = kind == TransferKind::Push;
    const FileMark log(RecipeFiles(stickFolder(), m_order.program_id).errorLog(is_push));
    m_panel.takeNotices(); // of another transfer
    const TransferEnd end = m_transfer.run(kind, m_order.program_id, m_order.count, m_progress);
    report.problems += m_panel.takeNotices();
    report.problems += failure(end, is_push, log.hasChanged());
    return report.ok();
}

void RecipeJob::checkSlots(int count, const char* result, RecipeReport& report) const {
    QVector<int> unknown;
    for (const int number : m_order.slots_known.unknown) {
        if (number <= count)
            unknown.append(number);
    }
    if (!unknown.isEmpty())
        report.problems.append(QString::fromLatin1("program %1: %2; the project has no tag for it")
                                   .arg(numberRanges(unknown), QLatin1String(result)));
}

/** The driver leaves a program that it could not read out of the file. */
void RecipeJob::findMissing(RecipeReport& report) const {
    const auto rows = loadRows(report.file);
    if (!rows) {
        report.problems.append(
            QString::fromLatin1("%1 cannot be read again").arg(fileName(report.file)));
        return;
    }
    for (const QStringList& row : *rows)
        report.programs.append(labelledProgram(row.value(0)));
    QVector<int> missing;
    for (const int number : m_order.slots_known.numbers) {
        if (!report.programs.contains(number))
            missing.append(number);
    }
    if (!missing.isEmpty())
        report.problems.append(
            QString::fromLatin1("program %1: not in the file; the controller did not answer%2")
                .arg(numberRanges(missing), lastLineError()));
    checkSlots(m_order.count, "not in the file", report);
}

RecipeReport RecipeJob::pull() {
    RecipeReport report;
    const FileMark before(RecipeFiles(stickFolder(), m_order.program_id).pulled());
    if (!transfer(TransferKind::Pull, report))
        return report;
    report.file = RecipeFiles(stickFolder(), m_order.program_id).pulled();
    if (before.hasChanged())
        findMissing(report);
    else
        report.problems.append(
            QString::fromLatin1("%1 has not been written").arg(fileName(report.file)));
    return report;
}
