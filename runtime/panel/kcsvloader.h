#ifndef RUNTIME_PANEL_KCSVLOADER_H
#define RUNTIME_PANEL_KCSVLOADER_H

#include "runtime/panel/kcsvinterface.h"

#include <QList>

class CsvMemory;
class CsvRowReader;
class QTextStream;

/** Loads a table from a delimited text file.
 *
 *  The encoding is the codec's, unless the file begins with a byte-order mark:
 *  that overrules the codec, so a UTF-16BE or UTF-8 file with a mark is read
 *  right whatever the codec. Carriage returns are dropped wherever they stand.
 *  Time is linear in the file's size and the padding of its short rows. A file
 *  counts as one that cannot be opened if it is not a regular one, if it is
 *  longer than 256 Mi characters, or if its table takes more memory than the
 *  process has available, by its size before anything is read, else as soon as
 *  that shows; if most of it went into the padding of short rows, an error says
 *  so. Nothing is thrown. */
class PANEL_SERVICE KCSVLoader : public KCSVInterface {
    Q_OBJECT

public:
    explicit KCSVLoader(QWidget* parent);

    // The order of the invokable methods is part of the contract.
    Q_INVOKABLE QStringList errorMessageList() const;
    Q_INVOKABLE QStringList warningMessageList() const;

    /** Loads @p fileName or, if it is empty, the file that the user picks.
     *  False if there were errors or no file. */
    Q_INVOKABLE bool openFile(QString fileName = QString());

    /** Reports the outcome of the last openFile() and returns its rows, the
     *  header first; no rows if the file was not loaded. Off the main thread
     *  each call adds its report to the error list. */
    QList<QStringList> fileContent();

    // The steps of openFile().

    /** Reads the rows of @p stream and appends what is wrong with them to the
     *  two lists. A stream that takes too much memory leaves no rows and sets
     *  the status; only where that is due to its short rows there is an error. */
    void loadFile(QTextStream& stream, QStringList& errors, QStringList& warnings);

    /** Looks for a tab, then a comma, that stands at least twice in @p line and
     *  is not the configured delimiter; if found, stores it in @p delimiter. */
    bool autoDetectDelimiter(QString& delimiter, QString line);

    /** Examines a header that has suspiciously few fields; may replace
     *  @p delimiter by a detected one. True if an error was appended. */
    bool isLineFormatError(QString line, QStringList& errors, QStringList& warnings,
                           QString& delimiter);

protected:
    enum Status {
        NoFileName = 0,
        FileNotOpened = 1, // or the dialog was cancelled
        LoadedWithErrors = 2,
        LoadedWithoutWarnings = 3,
        DelimiterDetected = 4,
        ColumnsTolerated = 5
    };

    int m_status; // a Status
    QList<QStringList> m_content;
    bool m_delimiter_detected; // outlives a load: only a refused column count clears it
    bool m_tolerate_column_mismatch;
    QStringList m_error_message_list;
    QStringList m_warning_message_list;

private:
    QString askFileName();
    void loadTable(QTextStream& stream, QStringList& errors, QStringList& warnings);
    void clearContent(CsvMemory& memory);
    void refuse();
    void loadRows(CsvRowReader& reader, CsvMemory& memory, int columns, QStringList& errors,
                  QStringList& warnings);
    bool takeFitting(const QStringList& row, const QStringList& above, int columns,
                     CsvMemory& memory) const;
    void fitToHeader(QStringList& row, int line, int columns, QStringList& errors,
                     QStringList& warnings);
    void showErrors();
    QString modificationWarning() const;
    void report(const QString& title, const QString& text);
};

#endif
