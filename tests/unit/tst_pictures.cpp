// SPDX-License-Identifier: MIT
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QIcon>
#include <QImageReader>
#include <QPixmap>
#include <QRegularExpression>
#include <QResource>
#include <QSet>
#include <QSvgRenderer>
#include <QtTest>

#include "widgets/pictures.h"

class TestPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void usedPicturesExist();
    void noPictureIsUnused();
    void everyPictureLoadsLargeEnough();
    void noTwoPicturesShowTheSame();
    void resourceHoldsTheWholeFolder();
    void iconsAreCrispOnDenseScreens();
    void readyPicturesShowTheirFiles();

private:
    QSet<QString> pictures;
    QSet<QString> used;
};

void TestPictures::initTestCase()
{
    Q_INIT_RESOURCE(pictures);
    for (const QString &name : QDir(":/img").entryList())
        pictures << name;
    QVERIFY(!pictures.isEmpty());

    static const QRegularExpression path(":/img/([A-Za-z0-9_-]+\\.(svg|png))");
    for (const char *folder : {"app", "base", "lists", "stores", "gps", "tracking", "map",
                               "network", "widgets", "platform"}) {
        QDirIterator files(QStringLiteral(TROLLEO_SOURCES "/") + folder, {"*.cpp", "*.h"},
                           QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(file.readAll());
            for (auto match = path.globalMatch(text); match.hasNext();)
                used << match.next().captured(1);
        }
    }
    QVERIFY(!used.isEmpty());
}

void TestPictures::usedPicturesExist()
{
    QCOMPARE(used - pictures, QSet<QString>());
}

void TestPictures::noPictureIsUnused()
{
    QCOMPARE(pictures - used, QSet<QString>());
}

void TestPictures::everyPictureLoadsLargeEnough()
{
    const int smallest = 192;
    for (const QString &name : pictures) {
        QImageReader reader(":/img/" + name);
        QCOMPARE(reader.format(), name.endsWith(".svg") ? "svg" : "png");
        const QImage image = reader.read();
        QVERIFY2(!image.isNull(), qPrintable(name));
        QCOMPARE(image.size(), QSize(image.width(), image.width()));
        QVERIFY2(image.width() >= smallest, qPrintable(name));
        if (name.endsWith(".svg"))
            QVERIFY2(QSvgRenderer(":/img/" + name).isValid(), qPrintable(name));
    }
}

void TestPictures::noTwoPicturesShowTheSame()
{
    const QSize size(48, 48);
    QHash<QString, QImage> drawings;
    for (const QString &name : pictures)
        drawings[name] =
            QImage(":/img/" + name).scaled(size).convertToFormat(QImage::Format_RGBA8888);
    for (auto one = drawings.cbegin(); one != drawings.cend(); ++one) {
        for (auto other = std::next(one); other != drawings.cend(); ++other) {
            int differing = 0;
            for (int y = 0; y < size.height(); ++y)
                for (int x = 0; x < size.width(); ++x)
                    differing += one.value().pixel(x, y) != other.value().pixel(x, y);
            // The most similar pictures, signs on the same background, differ in a sixteenth of
            // their pixels.
            QVERIFY2(differing > size.width() * size.height() / 32,
                     qPrintable(one.key() + " and " + other.key()));
        }
    }
}

void TestPictures::resourceHoldsTheWholeFolder()
{
    QSet<QString> files;
    for (const QString &name : QDir(TROLLEO_SOURCES "/resources/img").entryList({"*.svg", "*.png"}))
        files << name;
    QCOMPARE(pictures, files);
}

void TestPictures::iconsAreCrispOnDenseScreens()
{
    for (const int ratio : {1, 2, 3}) {
        const QPixmap pixmap =
            Pictures::icon(":/img/trash.svg").pixmap(QSize(40, 40), double(ratio));
        QCOMPARE(pixmap.size(), QSize(40, 40) * ratio);
        QCOMPARE(pixmap.devicePixelRatio(), double(ratio));
    }
}

/// resources/ready/ has the pictures of the first page in the sizes in which they are shown there.
/// After a change of a picture or a size, run this test with TROLLEO_READY_PICTURES=1 to write
/// them, and build again.
void TestPictures::readyPicturesShowTheirFiles()
{
    const QString folder = TROLLEO_SOURCES "/resources/ready/";
    int count = 0;
    for (QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        const QString path = files.next().mid(folder.size());
        const QString extent = path.section('/', 0, 0);
        const QStringList names =
            QDir(":/img").entryList({QFileInfo(path).completeBaseName() + ".*"});
        QCOMPARE(names.size(), 1);
        const QSize size(extent.toInt(), extent.toInt());
        const QImage drawn = QIcon(":/img/" + names.first())
                                 .pixmap(size, 1)
                                 .toImage()
                                 .convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        const QByteArray pixels(reinterpret_cast<const char *>(drawn.constBits()),
                                drawn.sizeInBytes());
        if (qEnvironmentVariableIsSet("TROLLEO_READY_PICTURES")) {
            QFile file(folder + path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(pixels) == pixels.size());
            continue;
        }
        ++count;
        const QByteArray ready = QResource(":/ready/" + path).uncompressedData();
        QCOMPARE(ready.size(), pixels.size());
        int worst = 0;
        for (qsizetype byte = 0; byte < ready.size(); ++byte)
            worst = qMax(worst, qAbs(uchar(ready.at(byte)) - uchar(pixels.at(byte))));
        // Releases of Qt round differently.
        QVERIFY2(worst <= 4, qPrintable(path + ": " + QString::number(worst)));
    }
    QVERIFY(count > 0);
}

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
