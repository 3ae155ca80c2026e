#ifndef RUNTIME_PANEL_KCSVINTERFACE_H
#define RUNTIME_PANEL_KCSVINTERFACE_H

#include "runtime/base/panelservice.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

class QTextCodec;
class QWidget;

/** What loading and saving of text tables share: the encoding, the delimiter,
 *  the file dialogs' filter, and the question that confirms the format.
 *
 *  Used from one thread at a time. Only an object that lives in the
 *  application's own thread shows dialogs and message boxes; elsewhere their
 *  texts go to the error list of the loader or saver. */
class PANEL_SERVICE KCSVInterface : public QObject {
    Q_OBJECT

public:
    // The type is fixed so that every int is a format that can be stored.
    enum FileFormat : int { TxtFormat = 0, CsvFormat = 1 };

    /** @p parent, which may be null, only owns the dialogs shown; it is not the
     *  object's parent and must outlive it. */
    explicit KCSVInterface(QWidget* parent);

    // The order of the virtual operations is part of the contract.
    virtual QTextCodec* textCodec() const;
    virtual void setCodec(QTextCodec* codec); // owned by Qt; null is the locale's
    virtual QString delimiter() const;
    virtual void setDelimiter(const QString& delimiter);
    virtual bool askFormatEachTime() const;
    virtual void setAskFormatEachTime(bool ask);

    /** Chooses UTF-16LE. */
    void init();

    /** Tab and "*.txt", or comma and "*.csv"; another number is kept and
     *  changes nothing else. */
    void setFileFormat(KCSVInterface::FileFormat format);

    /** Asks, where that was switched on, whether to go on with the format.
     *  False if the user cancelled, or cannot be asked in this thread. */
    bool askEachTimeCheck();

signals:
    /** Progress of a load: "total lines" once, then "current line" per row. */
    void updateStatus(QString description, QVariant value);

protected:
    /** True if this object may show dialogs. */
    bool isInMainThread() const;

    /** askEachTimeCheck(), with the question's texts added to @p errors where
     *  it cannot be shown. */
    bool isFormatConfirmed(QStringList& errors);

    /** Where file dialogs start: the directory of the last file. */
    QString startDirectory() const;
    void rememberDirectoryOf(const QString& file_name);

    QWidget* m_parent;
    QTextCodec* m_codec; // owned by Qt
    bool m_generate_byte_order_mark;
    QString m_delimiter;
    FileFormat m_file_format;
    QString m_file_filter;
    bool m_ask_format_each_time;

private:
    Q_DISABLE_COPY(KCSVInterface)

    QString formatQuestion() const;
};

#endif
