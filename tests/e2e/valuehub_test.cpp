// The hub of values on the built plug-in, a pty and a simulator.
#include "host/session/tagvalue.h"
#include "host/session/valuehub.h"
#include "tests/e2e/sampleproject.h"

#include <QDir>
#include <QFile>

#include <chrono>
#include <functional>
#include <thread>

using namespace host;

namespace {

constexpr int PatienceMsecs = 60000; // who waits longer waits in vain

class HubAtWork : public SampleProject {
protected:
    void start(const std::vector<const char*>& names) {
        QVector<TagDefinition> tags;
        for (const char* name : names)
            tags.append(tag(name));
        HubSetup setup;
        setup.journal_path = writeJournalPath(panelDirectory());
        m_hub = std::make_unique<ValueHub>(*m_session, tags, setup);
        m_changes = m_hub->subscribe(m_hub->allTags());
    }

    void TearDown() override {
        m_changes.reset();
        m_hub.reset();
    }

    TagId id(const char* name) const { return *m_hub->find(QLatin1String(name)); }

    int number(const TagState& state, const char* name) const {
        return formatValue(tag(name), state.data, ValueFormat::Natural).toInt();
    }

    /** Takes the changes until one satisfies @p is_it. */
    bool awaitChange(const std::function<bool(const TagChange&)>& is_it) {
        while (m_changes->mailbox().await(PatienceMsecs)) {
            for (const TagChange& change : m_changes->mailbox().take()) {
                if (is_it(change))
                    return true;
            }
        }
        return false;
    }

    bool awaitQuality(const char* name, Quality quality) {
        return awaitChange([&](const TagChange& change) {
            return change.tag == id(name) && change.state.quality == quality;
        });
    }

    WriteResult write(const char* name, const char* value) {
        return m_hub
            ->write(id(name), *parseValue(tag(name), QLatin1String(value)),
                    QStringLiteral("a test"), PatienceMsecs)
            ->await();
    }

    QVector<WriteJournal::Line> journal() const {
        return *(*WriteJournal::open(writeJournalPath(panelDirectory())))->lines();
    }

    std::unique_ptr<ValueHub> m_hub;
    std::unique_ptr<Subscription> m_changes;
};

} // namespace

TEST_F(HubAtWork, TellsEachChangeOfAControllersMemory) {
    start({"Zone 1 set point"});
    ASSERT_TRUE(awaitQuality("Zone 1 set point", Quality::Good));
    for (int value = 850; value < 855; ++value) {
        m_line.command("set 1 0x101001 " + QByteArray::number(value));
        EXPECT_TRUE(awaitChange([&](const TagChange& change) {
            return number(change.state, "Zone 1 set point") == value;
        }));
    }
}

TEST_F(HubAtWork, MakesTheSameBytesOfEveryTagAsTheDriver) {
    m_line.command("set 1 0x102000 0x80000002");
    std::vector<const char*> names;
    std::vector<QByteArray> kept;
    for (const TagDefinition& tag : m_project.tags) {
        if (tag.address.kind != AddressKind::Data)
            continue;
        kept.push_back(tag.name.toUtf8());
        names.push_back(kept.back().constData());
    }
    QVector<TagDefinition> tags;
    for (const char* name : names)
        tags.append(tag(name));
    m_session->poll(tags);
    const QVector<TagResult> expected = m_session->readAll(tags);
    start(names);
    for (const TagId id : m_hub->allTags()) {
        while (m_hub->read(id).quality != Quality::Good)
            ASSERT_TRUE(m_changes->mailbox().await(PatienceMsecs) &&
                        !m_changes->mailbox().take().empty());
        EXPECT_EQ(m_hub->read(id).data, expected[id].data) << qPrintable(m_hub->tag(id).name);
    }
}

TEST_F(HubAtWork, ReadsTheDriversOwnTagsBesideTheOthers) {
    start({"Waiting writes", "Zone 1 set point"});
    EXPECT_TRUE(awaitQuality("Waiting writes", Quality::Good));
    EXPECT_EQ(number(m_hub->read(id("Waiting writes")), "Waiting writes"), 0);
    EXPECT_EQ(write("Zone 1 set point", "850").outcome, WriteOutcome::Confirmed);
}

TEST_F(HubAtWork, TellsWhyTheDriverDoesNotStartAndStartsItWhenItCan) {
    const QString database = panelDirectory() + "/compile/database/database";
    ASSERT_TRUE(QFile::rename(database, database + ".away"));
    ASSERT_TRUE(QDir().mkdir(database)); // nobody, not even root, can read it as a file
    start({"Zone 1 set point"});
    ASSERT_TRUE(awaitQuality("Zone 1 set point", Quality::Bad));
    EXPECT_EQ(m_hub->read(0).text, QString("can not open database"));
    ASSERT_TRUE(QDir().rmdir(database) && QFile::rename(database + ".away", database));
    EXPECT_TRUE(awaitQuality("Zone 1 set point", Quality::Good));
}

TEST_F(HubAtWork, KeepsTheOldValueOfASilentStationWithTheDriversText) {
    start({"Zone 1 set point", "Gas flow"});
    ASSERT_TRUE(awaitQuality("Gas flow", Quality::Good));
    m_line.command("station 2 silent");
    ASSERT_TRUE(awaitQuality("Gas flow", Quality::Stale));
    EXPECT_EQ(m_hub->read(id("Gas flow")).text.toStdString(),
              std::string("read station id#2 start address 00101001:DMC50 no response"));
    EXPECT_EQ(number(m_hub->read(id("Gas flow")), "Gas flow"), 0);
    m_line.command("set 1 0x101001 7");
    EXPECT_TRUE(awaitChange([&](const TagChange& change) {
        return change.tag == id("Zone 1 set point") && number(change.state, "Gas flow") == 7;
    }));
    m_line.command("station 2 ok");
    EXPECT_TRUE(awaitQuality("Gas flow", Quality::Good));
}

TEST_F(HubAtWork, ConfirmsAWriteByReadingItBackAndPutsItInTheJournal) {
    start({"Zone 1 set point", "Gas flow"});
    ASSERT_TRUE(awaitQuality("Zone 1 set point", Quality::Good));
    const WriteResult result = write("Zone 1 set point", "850");
    EXPECT_EQ(result.outcome, WriteOutcome::Confirmed) << qPrintable(result.why);
    EXPECT_EQ(m_line.memory(1, 0x101001), 850u);
    const QVector<WriteJournal::Line> lines = journal();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0].entry.who, QString("a test"));
    EXPECT_EQ(lines[0].entry.tag, QString("Zone 1 set point"));
    EXPECT_EQ(lines[0].entry.old_value, QString("0"));
    EXPECT_EQ(lines[0].entry.new_value, QString("850"));
    EXPECT_EQ(lines[0].end.read_back, QString("850"));
    EXPECT_EQ(lines[0].end.outcome, QString("confirmed"));
}

TEST_F(HubAtWork, ShowsAWrittenValueInItsTime) {
    start({"Zone 1 set point", "Gas flow"});
    ASSERT_TRUE(awaitQuality("Zone 1 set point", Quality::Good));
    for (const char* value : {"850", "851", "852"}) {
        EXPECT_EQ(write("Zone 1 set point", value).outcome, WriteOutcome::Confirmed);
        EXPECT_TRUE(awaitChange([&](const TagChange& change) {
            return change.tag == id("Zone 1 set point") &&
                   number(change.state, "Zone 1 set point") == QByteArray(value).toInt();
        }));
    }
}

TEST_F(HubAtWork, GoesOnReadingBetweenWritesThatWaitInALine) {
    start({"Zone 1 set point", "Gas flow"});
    ASSERT_TRUE(awaitQuality("Gas flow", Quality::Good));
    std::vector<std::shared_ptr<WriteOrder>> orders;
    for (const char* value : {"850", "851", "852", "853"})
        orders.push_back(m_hub->write(id("Zone 1 set point"),
                                      *parseValue(tag("Zone 1 set point"), QLatin1String(value)),
                                      QStringLiteral("a test"), PatienceMsecs));
    EXPECT_EQ(orders[0]->await().outcome, WriteOutcome::Confirmed);
    quint64 sequence = m_hub->read(id("Gas flow")).sequence;
    for (std::size_t i = 1; i < orders.size(); ++i) {
        EXPECT_EQ(orders[i]->await().outcome, WriteOutcome::Confirmed);
        EXPECT_GT(m_hub->read(id("Gas flow")).sequence, sequence);
        sequence = m_hub->read(id("Gas flow")).sequence;
    }
}

TEST_F(HubAtWork, RefusesAWriteToAStationThatIsDownAtOnceWithTheDriversText) {
    m_line.command("station 2 silent");
    start({"Zone 1 set point", "Gas flow"});
    ASSERT_TRUE(awaitQuality("Gas flow", Quality::Bad));
    while (m_hub->stations().at(1).health.state != StationHealth::State::Down)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const auto start = std::chrono::steady_clock::now();
    const WriteResult result = write("Gas flow", "5");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(result.outcome, WriteOutcome::Refused);
    EXPECT_EQ(result.why.toStdString(),
              std::string("read station id#2 start address 00101001:DMC50 no response"));
    EXPECT_EQ(journal()[0].end.outcome, QString("refused"));
}
