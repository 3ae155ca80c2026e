#include "host/transfer/recipejob.h"

#include "host/recipe/recipetext.h"
#include "host/transfer/paneloperator.h"
#include "host/transfer/recipefiles.h"
#include "runtime/panel/kdevice.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace host {

namespace {

constexpr int MostTold = 10; // one by one

/** The driver sends no others: it sets bits 16 to 23 of every value to 0. */
constexpr quint32 SentBits = 0xff00ffff;

const char PushedInPart[] = "the controller may hold a part of the programs; push them again";

/** The rows of programs in a file; none when the driver would not load it. */
std::optional<QList<QStringList>> loadRows(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const RecipeText text = readRecipeText(file.readAll());
    const auto refused = [](const RecipeFinding& finding) {
        return finding.severity == RecipeSeverity::Refused;
    };
    if (std::any_of(text.findings.begin(), text.findings.end(), refused))
        return std::nullopt;
    QList<QStringList> rows;
    for (const RecipeLine& line : text.lines.mid(1)) // without the titles
        rows.append(line.fields);
    return rows;
}

/** Whether every row lands in the program that it is labelled for: the driver goes
 *  by the rows alone, and a pull leaves out programs that it could not read. */
QStringList misplacedRows(const QList<QStringList>& rows, int count) {
    QStringList texts;
    for (int row = 0; row < std::min(rows.size(), count); ++row) {
        const int labelled = recipeLabelNumber(rows[row].value(0));
        if (labelled != 0 && labelled != row + 1)
            texts.append(QString::fromLatin1("row %1 is labelled for program %2, but would be "
                                             "written to program %1")
                             .arg(row + 1)
                             .arg(labelled));
    }
    return texts;
}

/** Whether the driver writes such rows: one bad field, and it writes none. */
bool canBeWritten(const QList<QStringList>& rows, int count) {
    bool is_good = true;
    for (const QStringList& row : rows.mid(0, count)) {
        for (int column = 1; column <= RecipeColumns && is_good; ++column)
            row.value(column).toUInt(&is_good, 10);
    }
    return is_good;
}

/** The first of @p texts, and how many more there are. */
QStringList shortened(const QStringList& texts) {
    QStringList shown = texts.mid(0, MostTold);
    if (texts.size() > MostTold)
        shown.append(QString::fromLatin1("and %1 more").arg(texts.size() - MostTold));
    return shown;
}

QString folderOf(const RecipeOrder& order) {
    return order.stick.isEmpty() ? KDevice::getInstance()->getMount(DEVICE_USB) : order.stick;
}

QString fileName(const QString& path) {
    return QFileInfo(path).fileName();
}

} // namespace

RecipeJob::RecipeJob(LinkSession& link, PanelOperator& panel, const RecipeOrder& order,
                     Progress progress, Clock& clock)
    : m_link(link)
    , m_panel(panel)
    , m_order(order)
    , m_folder(folderOf(order))
    , m_files(m_folder, order.program_id)
    , m_progress(std::move(progress))
    , m_transfer(link, order.slots_known.station, clock) {}

QString RecipeJob::lastLineError() const {
    const QString error = m_link.stationError(m_order.slots_known.station);
    return error.isEmpty() ? QString() : QString::fromLatin1(" (%1)").arg(error);
}

QStringList RecipeJob::failure(const TransferEnd& end, bool is_push, bool has_log) const {
    if (!end.error.isEmpty())
        return {end.error + lastLineError()};
    const QString log = m_files.errorLog(is_push);
    if (end.failed && has_log)
        return QStringList(QString::fromLatin1("the driver has given up; its %1 says:")
                               .arg(fileName(log))) +
               logLines(log);
    if (end.failed)
        return {QStringLiteral("the driver has given up, and could write no error log") +
                lastLineError()};
    return {};
}

/** Lets the driver do it, and reports what it says. */
TransferEnd RecipeJob::transfer(TransferKind kind, RecipeReport& report) {
    const bool is_push = kind == TransferKind::Push;
    const FileMark log(m_files.errorLog(is_push));
    const FolderMark is_there(m_folder);
    m_panel.takeNotices(); // of another transfer
    const char* const what = is_push                          ? "pushing"
                             : kind == TransferKind::Template ? "writing"
                                                              : "pulling";
    const TransferEnd end = m_transfer.run(kind, m_order.program_id, m_order.count,
                                           [&](int percent) { m_progress(what, percent); });
    report.problems += m_panel.takeNotices();
    report.problems += failure(end, is_push, log.hasChanged());
    // The driver writes into the empty mount point of a stick that has gone.
    if (!is_push && !m_folder.isEmpty() && !is_there.holds())
        report.problems.append(QStringLiteral("the stick has been taken out"));
    if (!report.ok() && m_folder.isEmpty())
        report.problems.append(QStringLiteral("mount a stick, or give a folder with --stick DIR"));
    return end;
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
        report.programs.append(recipeLabelNumber(row.value(0)));
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

/** Lets the driver write @p file. A driver that was not seen at 100 % may have come
 *  so far between two looks: then the file tells. */
bool RecipeJob::writeFile(TransferKind kind, const QString& file, RecipeReport& report) {
    const FileMark before(file);
    const bool completed = transfer(kind, report).completed;
    if (!report.ok())
        return false;
    report.file = file;
    if (completed || before.hasChanged())
        return true;
    report.problems.append(QString::fromLatin1("%1 has not been written").arg(fileName(file)));
    return false;
}

RecipeReport RecipeJob::pull() {
    RecipeReport report;
    if (writeFile(TransferKind::Pull, m_files.pulled(), report))
        findMissing(report);
    return report;
}

RecipeReport RecipeJob::makeTemplate() {
    RecipeReport report;
    if (writeFile(TransferKind::Template, m_files.templateFile(), report))
        report.programs = m_order.slots_known.numbers;
    return report;
}

/** The name of the file that the driver will take, unless that is open. */
Result<QString> RecipeJob::filePushed() const {
    const QStringList names = m_files.pushable();
    const QString wanted = QFileInfo(m_order.file).fileName();
    const QString joined = names.join(QLatin1String(", "));
    if (names.isEmpty())
        return Failure(QString::fromLatin1("there is neither PROG_%1.txt nor PROG_%1_*.txt in %2")
                           .arg(m_order.program_id)
                           .arg(m_folder));
    if (wanted.isEmpty() && names.size() > 1)
        return Failure(
            QString::fromLatin1("several files match; choose one with --file: %1").arg(joined));
    if (!wanted.isEmpty() && !names.contains(wanted))
        return Failure(
            QString::fromLatin1("%1 is none of the files that match: %2").arg(wanted, joined));
    return wanted.isEmpty() ? names.first() : wanted;
}

RecipeReport RecipeJob::push() {
    RecipeReport report;
    if (m_folder.isEmpty()) {
        transfer(TransferKind::Push, report); // for the driver's own words
        return report;
    }
    const Result<QString> name = filePushed();
    if (!name) {
        report.problems.append(name.error());
        return report;
    }
    report.file = m_files.path(*name);
    const auto rows = loadRows(report.file); // if not, the driver says why
    const QStringList misplaced = rows ? misplacedRows(*rows, m_order.count) : QStringList();
    if (!misplaced.isEmpty() && !m_order.ignore_labels) {
        report.problems = shortened(misplaced);
        report.problems.append(
            QStringLiteral("nothing has been written; --ignore-labels writes it all the same"));
        return report;
    }
    m_panel.chooseFile(*name);
    transfer(TransferKind::Push, report);
    if (report.ok() && rows)
        compare(*rows, report);
    else if (report.ok())
        report.problems.append(
            QStringLiteral("the file cannot be compared with what the controller holds"));
    else if (rows && canBeWritten(*rows, m_order.count))
        report.problems.append(QLatin1String(PushedInPart));
    return report;
}

QStringList RecipeJob::differences(const QStringList& row, int number,
                                   const QByteArray& held) const {
    QStringList texts;
    for (int i = 0; i < RecipeColumns; ++i) {
        const QString field = row.value(i + 1);
        const quint32 value = qFromLittleEndian<quint32>(held.constData() + 4 * i);
        if (field.toUInt() == value)
            continue;
        const bool is_cut = (field.toUInt() & SentBits) == value;
        texts.append(
            QString::fromLatin1("program %1, value %2: the file says %3, the controller holds %4%5")
                .arg(number)
                .arg(i + 1)
                .arg(field)
                .arg(value)
                .arg(is_cut ? QStringLiteral("; the driver sets bits 16 to 23 to 0") : QString()));
    }
    return texts;
}

/** Row by row against what the controller gives back. */
void RecipeJob::compare(const QList<QStringList>& rows, RecipeReport& report) {
    const int count = std::min(rows.size(), m_order.count);
    const RecipeSlots& known = m_order.slots_known;
    QStringList texts;
    for (int i = 0; i < known.numbers.size() && known.numbers[i] <= count; ++i) {
        const int number = known.numbers[i];
        m_progress("reading back", 100 * (number - 1) / count);
        const TagResult held = m_link.read(known.tags[i]);
        if (!held.ok()) {
            texts.append(QString::fromLatin1("program %1 and those behind it cannot be read back: "
                                             "%2")
                             .arg(number)
                             .arg(held.error));
            break;
        }
        const QStringList found = differences(rows[number - 1], number, held.data);
        if (found.isEmpty())
            report.programs.append(number);
        texts += found;
    }
    report.problems += shortened(texts);
    checkSlots(count, "not written", report);
    if (count == 0)
        report.problems.append(QStringLiteral("the file has no programs"));
}

} // namespace host
