#ifndef TESTS_UNIT_TRANSFER_TRANSFERDRIVER_H
#define TESTS_UNIT_TRANSFER_TRANSFERDRIVER_H

#include "tests/unit/session/scripteddriver.h"

#include <QVector>
#include <QtEndian>

/** A driver whose transfers are a script: what its tags show, look by look. */
class TransferDriver : public ScriptedDriver {
public:
    /** One look at the tags of a transfer. */
    struct Shown {
        bool running = false;
        int percent = 0;
        bool failed = false;
    };
    enum Kind { Push, Pull }; // as the tags count

    bool write(AbstractDeviceInterface* port, const CommunicatorCommand& command,
               const QByteArray& data) override {
        const QString tag = command.address();
        if (!tag.startsWith(QLatin1String("VVT_")))
            return ScriptedDriver::write(port, command, data);
        const int value = qFromLittleEndian<qint32>(data.constData());
        written.append(QStringLiteral("%1=%2").arg(tag.mid(4)).arg(value));
        const Kind kind = tag.endsWith(QLatin1Char('0')) ? Push : Pull;
        if (tag.startsWith(QLatin1String("VVT_ERROR")))
            now[kind].failed = value != 0;
        if (tag.startsWith(QLatin1String("VVT_ENABLE")) && value != 0)
            start(kind);
        return true;
    }

    QByteArray read(AbstractDeviceInterface* port, const CommunicatorCommand& command) override {
        const QString tag = command.address();
        if (!tag.startsWith(QLatin1String("VVT_")))
            return ScriptedDriver::read(port, command);
        const Kind kind = tag.endsWith(QLatin1Char('0')) ? Push : Pull;
        if (tag.startsWith(QLatin1String("VVT_PROGRESS"))) { // the first of a look
            if (!coming[kind].isEmpty())
                now[kind] = coming[kind].takeFirst();
            return number(command, now[kind].percent);
        }
        if (on_look)
            on_look();
        return number(command, tag.startsWith(QLatin1String("VVT_ERROR")) ? now[kind].failed
                                                                          : now[kind].running);
    }

    QVector<Shown> script[2]; // of the next transfer
    QVector<Shown> coming[2]; // of the present one
    Shown now[2];
    QStringList written;                // transfer tags, without "VVT_"
    std::function<void(Kind)> on_start; // what a transfer does at once
    std::function<void()> on_look;

private:
    void start(Kind kind) {
        coming[kind] = script[kind];
        if (on_start)
            on_start(kind);
    }

    static QByteArray number(const CommunicatorCommand& command, int value) {
        QByteArray data(command.getDataSize(), '\0');
        qToLittleEndian<qint32>(value, data.data());
        return data;
    }
};

#endif
