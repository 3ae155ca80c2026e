#ifndef TESTS_UNIT_LINE_PTYPAIR_H
#define TESTS_UNIT_LINE_PTYPAIR_H

#include <QByteArray>
#include <QString>

/** A kernel pty. The test plays the controller on the master side; the port under
 *  test opens the slave by its path. */
class PtyPair {
public:
    PtyPair();
    PtyPair(const PtyPair&) = delete;
    PtyPair& operator=(const PtyPair&) = delete;
    ~PtyPair();

    QString slavePath() const { return m_path; }

    void send(const QByteArray& bytes);

    /** Waits until @p count bytes have come; empty after 10 s without them. */
    QByteArray receive(int count);

    /** What a pulled adapter looks like to the slave. */
    void unplug();

private:
    int m_master;
    QString m_path;
};

#endif
