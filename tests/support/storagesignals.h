#ifndef TESTS_SUPPORT_STORAGESIGNALS_H
#define TESTS_SUPPORT_STORAGESIGNALS_H

#include "runtime/base/connectchecked.h"
#include "runtime/panel/platforminterface.h"

#include <QStringList>

/** Writes down a platform's signals, such as "mounted 1 0 true"; one thread. */
class StorageSignals : public QObject {
    Q_OBJECT

public:
    explicit StorageSignals(const PlatformInterface& platform) {
        connectChecked(&platform, SIGNAL(platDeviceMounted(int, int, bool)), this,
                       SLOT(noteMounted(int, int, bool)));
        connectChecked(&platform, SIGNAL(platDeviceInIO(int, int, bool)), this,
                       SLOT(noteInIO(int, int, bool)));
    }

    /** The signals since the last call. */
    QStringList take() {
        const QStringList taken = m_noted;
        m_noted.clear();
        return taken;
    }

public slots:
    void noteMounted(int type, int index, bool mounted) { note("mounted", type, index, mounted); }
    void noteInIO(int type, int index, bool active) { note("inIO", type, index, active); }

private:
    void note(const char* name, int type, int index, bool on) {
        m_noted << QString::fromLatin1("%1 %2 %3 %4")
                       .arg(QString::fromLatin1(name))
                       .arg(type)
                       .arg(index)
                       .arg(QString::fromLatin1(on ? "true" : "false"));
    }

    QStringList m_noted;
};

#endif
