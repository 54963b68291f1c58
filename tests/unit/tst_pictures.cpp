// SPDX-License-Identifier: MIT
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImageReader>
#include <QPixmap>
#include <QRegularExpression>
#include <QSet>
#include <QSvgRenderer>
#include <QtTest>

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
    for (const char *folder :
         {"app", "base", "lists", "stores", "gps", "tracking", "map", "widgets", "platform"}) {
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

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
