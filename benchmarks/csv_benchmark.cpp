// Loading and saving of text tables, beside what reading every line and
// splitting it costs at the least, and beside libcsv.
#include "runtime/panel/kcsvloader.h"
#include "runtime/panel/kcsvsaver.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTextStream>

#include <benchmark/benchmark.h>
#include <csv.h>

#include <cstdlib>
#include <functional>
#include <random>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Table = QList<QStringList>;

const int Columns = 25; // a recipe program: its name and 24 values
const int UsualRows = 100000;
const int ManyRows = 1000000;

/** A table like an exported recipe file, but without its repetitions, which
 *  the loader would share: every value is random. */
Table randomTable(int rows) {
    std::mt19937 random(1);
    std::uniform_int_distribution<uint> value(0, 65535);
    Table table;
    QStringList header(QString::fromUtf8("名稱"));
    for (int column = 1; column < Columns; ++column)
        header.append(QString::fromUtf8("設定%1").arg(column));
    table.append(header);
    for (int i = 1; i < rows; ++i) {
        QStringList row(QString::fromUtf8("程序%1").arg(i));
        for (int column = 1; column < Columns; ++column)
            row.append(QString::number(value(random)));
        table.append(row);
    }
    return table;
}

/** The benchmarks' files, made at first use, gone at exit. */
class Files {
public:
    static Files& instance() {
        static Files files;
        return files;
    }

    /** A file of @p rows random rows: tabs in UTF-16LE or commas in UTF-8. */
    QString path(int rows, const char* codec) {
        const QString name = m_directory.filePath(QString("%1-%2").arg(codec).arg(rows));
        if (!QFile::exists(name)) {
            KCSVSaver saver(nullptr);
            configure(saver, codec);
            saver.saveFile(randomTable(rows), name);
        }
        return name;
    }

    static void configure(KCSVInterface& table_file, const char* codec) {
        table_file.setCodec(QTextCodec::codecForName(codec));
        if (qstrcmp(codec, "UTF-8") == 0)
            table_file.setFileFormat(KCSVInterface::CsvFormat);
    }

    QString scratch() const { return m_directory.filePath("scratch"); }

private:
    Files() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
    }

    QTemporaryDir m_directory;
};

qint64 kilobytes(const char* key) {
    QFile status("/proc/self/status");
    status.open(QIODevice::ReadOnly);
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(int(qstrlen(key))).replace("kB", "").trimmed().toLongLong();
    return 0;
}

/** Bytes by which @p work raises the memory of a process of its own at most. */
double peakBytes(const std::function<void()>& work) {
    int channel[2];
    if (pipe(channel) != 0)
        return 0;
    const pid_t child = fork();
    if (child == 0) {
        malloc_trim(0); // free memory of the parent's would hide what is used
        QFile reset("/proc/self/clear_refs");
        reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        reset.write("5"); // the high-water mark starts over
        const qint64 before = kilobytes("VmRSS:");
        work();
        const double peak = 1024.0 * double(kilobytes("VmHWM:") - before);
        const bool told = write(channel[1], &peak, sizeof peak) == sizeof peak;
        _exit(told ? 0 : 1);
    }
    close(channel[1]);
    double peak = 0;
    const bool heard = read(channel[0], &peak, sizeof peak) == sizeof peak;
    close(channel[0]);
    waitpid(child, nullptr, 0);
    return heard ? peak : 0;
}

void measure(benchmark::State& state, const QString& path, int rows,
             const std::function<void()>& work) {
    state.counters["peak_bytes_per_field"] = peakBytes(work) / (double(rows) * Columns);
    for (auto _ : state)
        work();
    state.SetBytesProcessed(int64_t(state.iterations()) * QFile(path).size());
}

/** Shows what has been loaded. */
class OpenLoader : public KCSVLoader {
public:
    using KCSVLoader::KCSVLoader;
    using KCSVLoader::m_content;
};

void loadOurs(const QString& path, const char* codec) {
    QFile file(path);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    QTextStream stream(&file);
    stream.setCodec(codec);
    OpenLoader loader(nullptr);
    Files::configure(loader, codec);
    QStringList errors;
    QStringList warnings;
    loader.loadFile(stream, errors, warnings);
    if (loader.m_content.isEmpty() || !errors.isEmpty() || !warnings.isEmpty())
        std::abort(); // it would be another measurement
}

void loadByReadLineAndSplit(const QString& path, const char* codec) {
    QFile file(path);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    QTextStream stream(&file);
    stream.setCodec(codec);
    const QChar delimiter = qstrcmp(codec, "UTF-8") == 0 ? ',' : '\t';
    Table table;
    while (!stream.atEnd())
        table.append(stream.readLine().split(delimiter));
    benchmark::DoNotOptimize(table);
}

struct LibcsvTable {
    Table table;
    QStringList row;
};

void appendLibcsvField(void* text, size_t size, void* context) {
    static_cast<LibcsvTable*>(context)->row.append(
        QString::fromUtf8(static_cast<const char*>(text), int(size)));
}

void appendLibcsvRow(int, void* context) {
    LibcsvTable* const result = static_cast<LibcsvTable*>(context);
    result->table.append(result->row);
    result->row = QStringList();
}

void loadByLibcsv(const QString& path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    csv_parser parser;
    csv_init(&parser, 0);
    LibcsvTable result;
    char buffer[16384];
    for (qint64 got; (got = file.read(buffer, sizeof buffer)) > 0;)
        csv_parse(&parser, buffer, size_t(got), appendLibcsvField, appendLibcsvRow, &result);
    csv_fini(&parser, appendLibcsvField, appendLibcsvRow, &result);
    csv_free(&parser);
    benchmark::DoNotOptimize(result.table);
}

void BM_LoadOurs(benchmark::State& state, const char* codec, int rows) {
    const QString path = Files::instance().path(rows, codec);
    measure(state, path, rows, [&] { loadOurs(path, codec); });
}

void BM_LoadReadLineSplit(benchmark::State& state, int rows) {
    const QString path = Files::instance().path(rows, "UTF-16LE");
    measure(state, path, rows, [&] { loadByReadLineAndSplit(path, "UTF-16LE"); });
}

void BM_LoadLibcsv(benchmark::State& state) {
    const QString path = Files::instance().path(UsualRows, "UTF-8");
    measure(state, path, UsualRows, [&] { loadByLibcsv(path); });
}

void BM_SaveOurs(benchmark::State& state, int rows) {
    const Table table = randomTable(rows);
    const QString path = Files::instance().scratch();
    KCSVSaver saver(nullptr);
    measure(state, path, rows, [&] { saver.saveFile(table, path); });
}

void BM_SaveJoin(benchmark::State& state) {
    const Table table = randomTable(UsualRows);
    const QString path = Files::instance().scratch();
    measure(state, path, UsualRows, [&] {
        QFile file(path);
        file.open(QIODevice::WriteOnly | QIODevice::Text);
        QTextStream stream(&file);
        stream.setCodec("UTF-16LE");
        stream.setGenerateByteOrderMark(true);
        for (const QStringList& row : table)
            stream << row.join('\t') << '\n';
    });
}

BENCHMARK_CAPTURE(BM_LoadOurs, utf16, "UTF-16LE", UsualRows)
    ->Name("csv_load/ours")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadReadLineSplit, utf16, UsualRows)
    ->Name("csv_load/readline_split")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadOurs, utf8, "UTF-8", UsualRows)
    ->Name("csv_load_utf8/ours")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadLibcsv)->Name("csv_load_utf8/libcsv")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveOurs, usual, UsualRows)
    ->Name("csv_save/ours")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveJoin)->Name("csv_save/join")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadOurs, million, "UTF-16LE", ManyRows)
    ->Name("csv_load_million/ours")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(BM_LoadReadLineSplit, million, ManyRows)
    ->Name("csv_load_million/readline_split")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(BM_SaveOurs, million, ManyRows)
    ->Name("csv_save_million/ours")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

} // namespace
