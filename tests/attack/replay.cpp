// Runs an attack over all files of the folders given, over each line of those that end in ".lines":
// what fuzzing has found stays fixed, on a machine without a fuzzer, too. Fails where there is no
// file.
#include <QDir>
#include <QDirIterator>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int *argc, char ***argv);

int main(int argc, char *argv[]) {
    if (LLVMFuzzerInitialize != nullptr)
        LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator files(QFile::decodeName(argv[i]), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QIODevice::ReadOnly))
                qFatal("can't read %s", qPrintable(file.fileName()));
            const bool byLines = file.fileName().endsWith(QLatin1String(".lines"));
            const QByteArray whole = file.readAll();
            for (const QByteArray &input : byLines ? whole.split('\n') : QByteArrayList{whole}) {
                // The last one is the culprit.
                std::printf("%s %s\n", qPrintable(file.fileName()), byLines ? input.data() : "");
                std::fflush(stdout);
                LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char *>(input.constData()),
                                       static_cast<size_t>(input.size()));
                ++count;
            }
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
