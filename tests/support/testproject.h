#ifndef TESTS_SUPPORT_TESTPROJECT_H
#define TESTS_SUPPORT_TESTPROJECT_H

#include "tests/support/temporarydirectory.h"

#include <QStringList>

/** A panel project in a folder of its own: a real SQLite database as the project
 *  compiler writes it, found by the driver while this object lives. */
class TestProject {
public:
    TestProject();
    ~TestProject();

    /** Makes an empty database with its tables; nothing stands there before. */
    void createDatabase();
    /** COM2 is HMI port 1001. */
    void addLink(int link_id, int hmi_port);
    void addNode(int link_id, int station, bool is_default);
    void addTags(int link_id, const QStringList& addresses);
    void execute(const QString& statement);

    /** Link 1 on COM2 with default station @p station and @p addresses. */
    void create(int station, const QStringList& addresses);

    QString databasePath() const;

private:
    TemporaryDirectory m_directory;
};

#endif
