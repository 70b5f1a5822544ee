// Runs a fuzz target's entry function once over every file of its seed folders: the
// quick regression check of the regular tests, built without libFuzzer.
#include "FuzzInput.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) __attribute__((weak));

int main(int argc, char** argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    QStringList files;
    for (int i = 1; i < argc; ++i) {
        QStringList found{QString::fromLocal8Bit(argv[i])};
        if (QFileInfo(found.first()).isDir()) {
            QDirIterator walk(found.takeFirst(), QDir::Files, QDirIterator::Subdirectories);
            while (walk.hasNext())
                found << walk.next();
            found.sort();
        }
        files << found;
    }
    if (files.isEmpty()) {
        std::fprintf(stderr, "no seed files given\n");
        return 1;
    }
    for (const QString& path : files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "can't read %s\n", qPrintable(path));
            return 1;
        }
        const QByteArray bytes = file.readAll();
        // A copy of exactly the input's size, so that a read past its end is seen.
        std::vector<uint8_t> input(bytes.begin(), bytes.end());
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%lld seed inputs ran\n", static_cast<long long>(files.size()));
    return 0;
}
