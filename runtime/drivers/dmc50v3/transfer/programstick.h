#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_PROGRAMSTICK_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_PROGRAMSTICK_H

#include <QList>
#include <QString>
#include <QStringList>

class KCSVSaver;
class TransferEnvironment;

/** The USB stick as the transfers write to it. What was written has reached the
 *  stick when a call returns, so that it can be pulled. One thread at a time. */
class ProgramStick {
public:
    /** @p environment must outlive the object. */
    explicit ProgramStick(TransferEnvironment& environment) : m_environment(environment) {}

    /** Mount directory; empty when there is no stick. */
    QString mountPath() const;

    /** Saves a table of programs or a template. False, with the reasons in @p saver,
     *  when the file cannot be opened. */
    bool saveTable(const QList<QStringList>& rows, const QString& path, KCSVSaver& saver);

    /** Replaces the log at @p path. One that cannot be opened is lost. */
    void saveLog(const QStringList& errors, const QString& path);

private:
    TransferEnvironment& m_environment;
};

#endif
