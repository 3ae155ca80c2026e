// Benchmarks run inside a Qt application, as the panel's runtime does.
#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
