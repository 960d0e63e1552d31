// Runs an attack over all files of the folders given: what fuzzing has found stays mended, on a
// machine without a fuzzer, too. Fails where there is no file.
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
            const QByteArray bytes = file.readAll();
            std::printf("%s\n", qPrintable(file.fileName())); // the last one is the culprit
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char *>(bytes.constData()),
                                   static_cast<size_t>(bytes.size()));
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
