// From the controller to a file.
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"

#include "runtime/base/clock.h"
#include "runtime/base/qtcompat.h"
#include "runtime/drivers/dmc50v3/transfer/programfiles.h"
#include "runtime/drivers/dmc50v3/transfer/programtable.h"
#include "runtime/drivers/dmc50v3/transfer/transferprogress.h"
#include "runtime/panel/kcsvsaver.h"

namespace {

const quint32 NoStickMsecs = 2000;    // how long the panel shows a transfer without a stick
const qint64 SlowestReadMsecs = 5000; // of one program
const int ReadShownMsecs = 2000;      // how long the panel shows the end
const int TemplateShownMsecs = 500;   // likewise of a template

} // namespace

void CSVImExporter::readDataFromDMC50Slot() {
    m_state.reading_enable = true;
    const int prog_id = m_state.prog_id;
    const bool is_template = prog_id == ProgramTable::TemplateProgramId;
    bool ok = false;
    const QString path = transferFile(TransferDirection::FromController, prog_id, ok);
    if (!ok) {
        pause(NoStickMsecs);
        m_state.reading_enable = false;
        m_driver.setProgramReading(false);
        return;
    }
    if (!m_csv_saver)
        m_csv_saver.reset(new KCSVSaver(nullptr));
    {
        const NarrowCodecScope codec(ProgramTable::HeaderCodecName);
        if (is_template)
            saveTemplate(codec, ProgramFiles::templateFile(path));
        else
            savePrograms(codec, path);
        m_state.reading_progress = 100;
    }
    m_environment.callLater(is_template ? TemplateShownMsecs : ReadShownMsecs, this,
                            SLOT(resetReadingFlag()));
    m_driver.setProgramReading(false);
}

void CSVImExporter::savePrograms(const NarrowCodecScope& codec, const QString& path) {
    QList<QStringList> rows;
    QStringList errors;
    rows.append(ProgramTable::headerRow(codec));
    switch (readPrograms(codec, rows, errors)) {
    case DriverGone:
        return;
    case ReadTimedOut:
        logErrors(TransferDirection::FromController, errors);
        return;
    case ReadComplete:
        break;
    }
    if (m_stick.saveTable(rows, path, *m_csv_saver))
        return;
    logErrors(TransferDirection::FromController, m_csv_saver->errorMessageList());
    m_state.reading_enable = false;
}

/** Appends a row per program. A slot that the project does not use, and a program
 *  that the controller did not give, are left out without a word. */
CSVImExporter::ReadEnd CSVImExporter::readPrograms(const NarrowCodecScope& codec,
                                                   QList<QStringList>& rows, QStringList& errors) {
    m_slots.list();
    const int count = m_state.prog_count;
    for (int number = 1; number <= count; ++number) {
        const qint64 start = m_environment.clock().msecsSinceBoot();
        const CommunicatorCommand& command = m_slots.commands().at(number - 1);
        if (!m_slots.isRegistered(command))
            continue;
        const QByteArray image = m_driver.readProgram(command);
        if (m_driver.isGone())
            return DriverGone;
        if (m_environment.clock().msecsSinceBoot() - start > SlowestReadMsecs) {
            errors.append(QString::fromLatin1("Reading Data Timeout,Please check the communication "
                                              "or the address [%1] is valid or not.")
                              .arg(command.address()));
            return ReadTimedOut;
        }
        m_state.reading_progress = TransferProgress::percent(number - 1, count);
        if (image.size() == ProgramTable::ProgramBytes)
            rows.append(ProgramTable::programRow(codec, number, image));
    }
    return ReadComplete;
}

void CSVImExporter::saveTemplate(const NarrowCodecScope& codec, const QString& path) {
    const int count = m_state.prog_count;
    QList<QStringList> rows;
    rows.append(ProgramTable::headerRow(codec));
    for (int number = 1; number <= count; ++number)
        rows.append(ProgramTable::templateRow(codec, number));
    if (m_stick.saveTable(rows, path, *m_csv_saver))
        return;
    notify(m_csv_saver->errorMessageList().join(QString::fromLatin1("\n")));
    m_state.reading_enable = false;
}
