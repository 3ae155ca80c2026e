#ifndef TESTS_UNIT_PANEL_CSVTESTING_H
#define TESTS_UNIT_PANEL_CSVTESTING_H

#include "runtime/panel/kcsvloader.h"
#include "runtime/panel/kcsvsaver.h"
#include "tests/support/temporarydirectory.h"

#include <QThread>

#include <initializer_list>
#include <string>

/** The application's settings in a scratch directory, as long as it lives. */
class ScratchSettings {
public:
    ScratchSettings();
    ~ScratchSettings();

    QString defaultDir() const;
    void setDefaultDir(const QString& directory);

private:
    TemporaryDirectory m_directory;
    QString m_organisation;
};

/** A loader with its members in the open; in the main thread. */
class OpenLoader : public KCSVLoader {
public:
    explicit OpenLoader(QWidget* parent = nullptr) : KCSVLoader(parent) {}

    using KCSVInterface::m_codec;
    using KCSVInterface::m_file_filter;
    using KCSVInterface::m_file_format;
    using KCSVInterface::m_generate_byte_order_mark;
    using KCSVInterface::m_parent;
    using KCSVLoader::m_content;
    using KCSVLoader::m_delimiter_detected;
    using KCSVLoader::m_error_message_list;
    using KCSVLoader::m_status;
    using KCSVLoader::m_tolerate_column_mismatch;
    using KCSVLoader::m_warning_message_list;
};

/** Somewhere else than the main thread for an object to live. It never runs:
 *  only the object's affinity counts. */
struct Elsewhere {
    QThread elsewhere;
};

/** A loader that lives in another thread. */
class WorkerLoader : private Elsewhere, public OpenLoader {
public:
    WorkerLoader() { moveToThread(&elsewhere); }

    /** Loads @p text by loadFile(); false if that added errors. */
    bool loadText(const QString& text);

    QStringList errors; // of loadText() alone, as are the warnings
    QStringList warnings;
};

/** A saver that lives in another thread, with its members in the open. */
class WorkerSaver : private Elsewhere, public KCSVSaver {
public:
    WorkerSaver() : KCSVSaver(nullptr) { moveToThread(&elsewhere); }

    using KCSVSaver::m_quote_when_needed;
};

/** Notes a loader's progress as "description=value". */
class ProgressRecorder : public QObject {
    Q_OBJECT
public:
    explicit ProgressRecorder(const KCSVLoader& loader);

    QStringList notes;

private slots:
    void note(QString description, QVariant value);
};

/** UTF-8 to text. */
QString text(const char* utf8);

/** A row or a list of messages, written in UTF-8. */
QStringList texts(std::initializer_list<const char*> list);

/** A table of such rows. */
QList<QStringList> table(std::initializer_list<QStringList> rows);

/** @p text in UTF-16LE behind its byte-order mark. */
QByteArray utf16(const QString& text);

/** For the messages of failed comparisons: code units outside ASCII in hex. */
std::string readable(const QList<QStringList>& rows);

#endif
