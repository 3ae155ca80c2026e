#ifndef TESTS_SUPPORT_FAKEMOUNT_H
#define TESTS_SUPPORT_FAKEMOUNT_H

#include "tests/support/temporarydirectory.h"

#include <QByteArray>

/** While it lives, a `mount` without arguments found through PATH prints a table
 *  of the test's. */
class FakeMount {
public:
    FakeMount();
    ~FakeMount();
    FakeMount(const FakeMount&) = delete;
    FakeMount& operator=(const FakeMount&) = delete;

    void setTable(const QByteArray& table);

    /** The recorded table of that name in tests/data/storage. */
    void setRecordedTable(const char* file_name);

    /** No `mount` at all. */
    void remove();

private:
    TemporaryDirectory m_directory;
    QByteArray m_previous_path;
};

/** The bytes of a recording in tests/data/storage. */
QByteArray storageRecording(const char* file_name);

#endif
