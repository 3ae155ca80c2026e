// Program files on the command line, without a controller.
#include "tests/e2e/programs.h"
#include "tests/e2e/stick.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

const QString Sample = QStringLiteral(SAMPLE_PROJECT "/PROG_1.txt");
const QString Golden = QStringLiteral(TEST_DATA_DIR "/recipes/");
const QRgb CurveColor = 0xFFC62828;

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

/** A folder with one program file in it. */
class ProgramFile {
public:
    explicit ProgramFile(const QByteArray& content) { write(content); }

    void write(const QByteArray& content) {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
    }
    QString path() const { return m_directory.filePath("PROG_9.txt"); }
    QString pathOf(const QString& name) const { return m_directory.filePath(name); }

private:
    QTemporaryDir m_directory;
};

/** UTF-16LE characters, for texts of one byte each. */
QByteArray wide(const QByteArray& text) {
    QByteArray bytes;
    for (char character : text)
        bytes.append(character).append('\0');
    return bytes;
}

QByteArray replaced(QByteArray content, const QByteArray& before, const QByteArray& after) {
    const int place = content.indexOf(wide(before));
    EXPECT_GE(place, 0) << before.constData();
    return content.replace(place, 2 * before.size(), wide(after));
}

int pixelsOf(const QImage& picture, QRgb color) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixel(x, y) == color;
    }
    return count;
}

} // namespace

TEST(RecipeCheckCommand, PassesGoodFiles) {
    const Ended sample = control({"recipe", "check", Sample, "--count", "14"});
    EXPECT_EQ(sample.status, 0);
    EXPECT_EQ(sample.output, Sample + ": 14 programs, good\n");
    EXPECT_EQ(sample.errors, QString());
    EXPECT_EQ(control({"recipe", "check", Golden + "PROG_template.txt", "--count", "3"}).status, 0);
}

TEST(RecipeCheckCommand, ListsWhatTheDriverWouldRefuseAndWhatItWouldChange) {
    const ProgramFile file(replaced(contentOf(Sample), "\t650\t", "\t6S0\t"));
    const Ended refused = control({"recipe", "check", file.path(), "--count", "14"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.output,
              file.path() +
                  QStringLiteral(":6:2: refused: 設定溫度 [6S0]: not a number (the driver's "
                                 "row 4 and column 1)\n") +
                  file.path() + ": 14 programs, 1 refused; the driver would write nothing\n");

    const Ended changed = control({"recipe", "check", Golden + "PROG_7.txt"});
    EXPECT_EQ(changed.status, 1);
    EXPECT_TRUE(changed.output.contains("[70000]: the controller would receive 4464"));
    EXPECT_TRUE(changed.output.endsWith("; the controller would not hold what the file says\n"));
}

TEST(RecipeCheckCommand, PrintsJson) {
    const ProgramFile file(replaced(contentOf(Sample), "\t650\t", "\t6S0\t"));
    const Ended ended = control({"recipe", "check", "--json", "--count", "14", file.path()});
    EXPECT_EQ(ended.status, 1);
    const QJsonObject result = QJsonDocument::fromJson(ended.output.toUtf8()).object();
    EXPECT_EQ(result["good"].toBool(true), false);
    EXPECT_EQ(result["programs"].toInt(), 14);
    ASSERT_EQ(result["findings"].toArray().size(), 1);
    const QJsonObject finding = result["findings"].toArray()[0].toObject();
    EXPECT_EQ(finding["severity"].toString(), QString("refused"));
    EXPECT_EQ(finding["line"].toInt(), 6);
    EXPECT_EQ(finding["field"].toInt(), 2);
    EXPECT_EQ(finding["text"].toString(), QString("6S0"));
    EXPECT_EQ(finding["driver_row"].toInt(), 4);
    EXPECT_EQ(finding["driver_column"].toInt(), 1);
}

TEST(RecipeCheckCommand, NeverTakesACutFileForTheWholeOne) {
    const QByteArray template_file = contentOf(Golden + "PROG_template.txt");
    const int titles = template_file.indexOf(wide("\n")) + 2;
    const QByteArray whole = template_file.left(template_file.indexOf(wide("\n"), titles) + 2);
    ProgramFile file(whole);
    ASSERT_EQ(control({"recipe", "check", "--count", "1", file.path()}).output,
              file.path() + ": 1 program, good\n");
    for (const int size : {0, 1, 2, titles - 2, titles - 1, titles, titles + 1, whole.size() - 3,
                           whole.size() - 2, whole.size() - 1}) {
        file.write(whole.left(size));
        EXPECT_EQ(control({"recipe", "check", "--count", "1", file.path()}).status, 1) << size;
    }
    file.write(whole);
    EXPECT_EQ(control({"recipe", "check", "--count", "3", file.path()}).status, 1);
    EXPECT_EQ(control({"recipe", "check", file.path()}).status, 1) << "cut behind a line";
}

TEST(RecipeCheckCommand, PassesWhatWasPulledFromAController) {
    SimulatedLine line;
    const QTemporaryDir stick;
    const Ended pulled =
        control({"--port", line.port(), "recipe", "pull", "4", "--stick", stick.path()});
    ASSERT_EQ(pulled.status, 0) << qPrintable(pulled.errors);
    const QString file = stick.filePath("PROG_4.txt");
    const Ended ended = control({"recipe", "check", file});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output, file + ": 32 programs, good\n");
}

TEST(RecipeCheckCommand, NamesThePlacesOfTheDriversOwnLog) {
    SimulatedLine line;
    const Stick stick;
    QList<QStringList> rows = Stick::blank(5);
    rows[1][1] = "abc";
    rows[3][7] = "";
    rows[5][24] = "-1";
    stick.write("PROG_7.txt", rows);
    EXPECT_EQ(
        control({"--port", line.port(), "recipe", "push", "7", "--stick", stick.path()}).status, 1);

    const Ended ended = control({"recipe", "check", "--json", stick.file("PROG_7.txt")});
    QStringList places;
    for (const QJsonValue value :
         QJsonDocument::fromJson(ended.output.toUtf8()).object()["findings"].toArray()) {
        const QJsonObject finding = value.toObject();
        if (finding["severity"] != "refused")
            continue;
        places.append(QString("The value [%1] at row %2 and column %3 is invalid, please check it.")
                          .arg(finding["text"].toString())
                          .arg(finding["driver_row"].toInt())
                          .arg(finding["driver_column"].toInt()));
    }
    EXPECT_EQ(places.join("\n\n").toStdString() + '\n',
              stick.text("WRITE_PROG_7_ERROR.txt").toStdString());
    EXPECT_EQ(places.size(), 3);
}

TEST(RecipeCheckCommand, FailsWithoutAFile) {
    const Ended ended = control({"recipe", "check", "/nowhere/PROG_1.txt"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.errors, QString("dmc50ctl: /nowhere/PROG_1.txt: No such file or directory\n"));
    EXPECT_EQ(control({"recipe", "check"}).status, 2);
    EXPECT_EQ(control({"recipe", "check", "/dev/null"}).errors,
              QString("dmc50ctl: /dev/null: not a regular file\n"));
}

TEST(RecipeShowCommand, PrintsProgramsCourseAndEvents) {
    const Ended ended = control({"recipe", "show", "--ascii", Sample});
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    const QStringList lines = ended.output.split('\n');
    EXPECT_EQ(lines[0], QStringLiteral("PROGRAM  START    TIME     TEMP °C  SOAK     PID  EVENTS   "
                                       "INPUTS"));
    EXPECT_EQ(lines[9], QString("9        4:45:00  0:20:30  1080     +3 -3    4    1 5 6    -"));
    EXPECT_EQ(lines.filter("*").size(), 15) << qPrintable(ended.output);
    EXPECT_TRUE(lines.contains(QStringLiteral("EVENT8 測漏: 0:20 to 0:35")))
        << qPrintable(ended.output);
    for (const QString& line : lines)
        EXPECT_LE(line.size(), 80) << qPrintable(line);
}

TEST(RecipeShowCommand, DrawsTheCurveIntoAPictureWithoutADisplay) {
    const ProgramFile folder({});
    const QString path = folder.pathOf("course.png");
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "linuxfb:fb=/nowhere"); // a display that is not there
    const Ended ended = control({"recipe", "show", Sample, "--png", path});
    qputenv("QT_QPA_PLATFORM", platform);
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    const QImage picture(path);
    ASSERT_FALSE(picture.isNull());
    EXPECT_GT(pixelsOf(picture, CurveColor), 1000);
}

TEST(RecipeShowCommand, FailsWhereThePictureCannotBeWritten) {
    const Ended ended = control({"recipe", "show", Sample, "--png", "/nowhere/course.png"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(ended.errors.contains("dmc50ctl: /nowhere/course.png: No such file or directory"))
        << qPrintable(ended.errors);
}

TEST(RecipeShowCommand, ShowsWhatIsReadableAndSaysThatTheRestIsNot) {
    const ProgramFile file(replaced(contentOf(Sample), "\t650\t", "\t6S0\t"));
    const Ended ended = control({"recipe", "show", "--json", file.path()});
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(ended.errors.contains("1 refused"));
    const QJsonObject result = QJsonDocument::fromJson(ended.output.toUtf8()).object();
    EXPECT_EQ(result["segments"].toArray().size(), 13);
}
