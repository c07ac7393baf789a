// Runs a fuzzer over the files of its corpus, without a fuzzing engine.

#include <QByteArray>
#include <QDirIterator>
#include <QFile>

#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator files(QFile::decodeName(argv[i]), QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "%s: cannot be read\n", qPrintable(file.fileName()));
                return 1;
            }
            std::printf("%s\n", qPrintable(file.fileName()));
            std::fflush(stdout);
            const QByteArray bytes = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                                   static_cast<std::size_t>(bytes.size()));
            ++count;
        }
    }
    if (count == 0) {
        std::fprintf(stderr, "usage: %s CORPUS-FOLDER... (no file was found in any)\n", argv[0]);
        return 1;
    }
    std::printf("%d inputs\n", count);
    return 0;
}
