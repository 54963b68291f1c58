// SPDX-License-Identifier: MIT
// Runs a harness without a fuzzer, once with each file that is named or that a named folder has.
#include <cstdio>
#include <cstdlib>

#include <QByteArray>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "fuzz/support.h"

namespace {

bool run(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return false;
    }
    const QByteArray content = file.readAll();
    // Told before: what crashes tells nothing afterwards.
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(content.constData()),
                           static_cast<std::size_t>(content.size()));
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    int inputs = 0;
    for (int index = 1; index < argc; ++index) {
        const QString path = QFile::decodeName(argv[index]);
        QStringList files{path};
        if (QFileInfo(path).isDir()) {
            files.clear();
            for (QDirIterator entry(path, QDir::Files); entry.hasNext();)
                files << entry.next();
            files.sort();
        }
        for (const QString &file : files) {
            if (!run(file))
                return EXIT_FAILURE;
            ++inputs;
        }
    }
    if (inputs == 0) {
        std::fprintf(stderr, "there is no input\n");
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
