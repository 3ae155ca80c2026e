#include "host/session/writejournal.h"

#include "tests/support/errorof.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <sys/wait.h>
#include <unistd.h>

using namespace host;

namespace {

class WriteJournalTest : public ::testing::Test {
protected:
    std::unique_ptr<WriteJournal> open() const {
        auto opened = WriteJournal::open(m_path);
        EXPECT_EQ(errorOf(opened), QString());
        return std::move(*opened);
    }

    const QTemporaryDir m_directory;
    const QString m_path = writeJournalPath(m_directory.path());
    const JournalEntry m_entry = {1000, QStringLiteral("a person"), QStringLiteral("Zone 1"),
                                  QString(), QStringLiteral("850")};
};

} // namespace

TEST_F(WriteJournalTest, KeepsWhoWroteWhatAndHowItEnded) {
    const auto journal = open();
    const Result<qint64> line = journal->begin(m_entry);
    ASSERT_EQ(errorOf(line), QString());
    ASSERT_EQ(errorOf(journal->end(*line, {2000, QStringLiteral("refused"), QStringLiteral("7"),
                                           QStringLiteral("end code 4AH")})),
              QString());
    const auto lines = *open()->lines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0].number, *line);
    EXPECT_EQ(lines[0].entry.begun_utc_msecs, 1000);
    EXPECT_EQ(lines[0].entry.who, QString("a person"));
    EXPECT_EQ(lines[0].entry.tag, QString("Zone 1"));
    EXPECT_EQ(lines[0].entry.old_value, QString());
    EXPECT_EQ(lines[0].entry.new_value, QString("850"));
    EXPECT_EQ(lines[0].end.ended_utc_msecs, 2000);
    EXPECT_EQ(lines[0].end.outcome, QString("refused"));
    EXPECT_EQ(lines[0].end.read_back, QString("7"));
    EXPECT_EQ(lines[0].end.why, QString("end code 4AH"));
}

TEST_F(WriteJournalTest, ShowsAWriteAsUnknownThatTheProgramsEndInterrupted) {
    const pid_t child = fork();
    if (child == 0) {
        const auto journal = WriteJournal::open(m_path);
        (*journal)->begin(m_entry);
        abort(); // as a broken invariant does
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    const auto journal = open();
    EXPECT_TRUE(journal->begin(m_entry));
    const auto lines = *journal->lines();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].end.outcome, QString("unknown"));
    EXPECT_EQ(lines[0].entry.new_value, QString("850"));
}

TEST_F(WriteJournalTest, LetsSeveralWriteIntoTheSameFile) {
    const auto one = open();
    const auto other = open();
    const Result<qint64> first = one->begin(m_entry);
    const Result<qint64> second = other->begin(m_entry);
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_TRUE(one->end(*first, {2000, QStringLiteral("confirmed"), QString(), QString()}));
    EXPECT_EQ((*other->lines())[0].end.outcome, QString("confirmed"));
    EXPECT_EQ((*other->lines())[1].end.outcome, QString("unknown"));
}

TEST_F(WriteJournalTest, SaysWhyItCannotBeOpened) {
    EXPECT_EQ(errorOf(WriteJournal::open(QStringLiteral("/nowhere/journal.sqlite"))).toStdString(),
              std::string("/nowhere/journal.sqlite: unable to open database file Error opening "
                          "database"));
}
