// Feeds every file of the given folder to a fuzz target: replay FOLDER. What once
// was found stays found, also where there is no libFuzzer.
#include <QDir>
#include <QFile>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
    const QDir corpus(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    const QStringList names = corpus.entryList(QDir::Files);
    if (argc != 2 || names.isEmpty()) {
        std::fprintf(stderr, "%s: no corpus\n", argv[0]);
        return 1;
    }
    for (const QString& name : names) {
        QFile file(corpus.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: cannot be read\n", qPrintable(file.fileName()));
            return 1;
        }
        std::printf("%s\n", qPrintable(name)); // the last one is the one that failed
        std::fflush(stdout);
        const QByteArray input = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.constData()),
                               size_t(input.size()));
    }
    return 0;
}
