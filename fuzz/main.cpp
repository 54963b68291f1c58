// SPDX-License-Identifier: MIT
// Runs a harness without a fuzzer, once for each given file and each file in a given folder.
#include <cstdlib>

#include <QByteArray>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include "fuzz/support.h"

namespace {

bool run(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        QTextStream(stderr) << "cannot read " << path << Qt::endl;
        return false;
    }
    const QByteArray content = file.readAll();
    // Printed before the run, because a crash prints nothing.
    QTextStream(stdout) << path << Qt::endl;
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
        QTextStream(stderr) << "there is no input" << Qt::endl;
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
