// SPDX-License-Identifier: MIT
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>
#include <QXmlStreamReader>

#include "tests/support/stoppable.h"

/// Source texts with their translations; an unfinished translation has no value.
using Texts = QMap<QString, QString>;

/// Texts that are the same in Russian.
static const QSet<QString> sameInRussian{
    "OK",  // an international word on buttons
    "GPS", // a name
};

class TestTranslations : public QObject
{
    Q_OBJECT

private slots:
    void everyTextIsThere_data();
    void everyTextIsThere();
    void everyTextIsFinished_data()
    {
        everyTextIsThere_data();
    }
    void everyTextIsFinished();
    void placeholdersAndTagsMatch_data()
    {
        everyTextIsThere_data();
    }
    void placeholdersAndTagsMatch();
    void russianIsRussian();
    void englishIsAsItIsInTheSources();

private:
    static QString fileOf(const QString &language)
    {
        return QStringLiteral(TROLLEO_SOURCES "/resources/i18n/trolleo_%1.ts").arg(language);
    }
    static Texts read(const QString &fileName);
};

Texts TestTranslations::read(const QString &fileName)
{
    Texts result;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        stopTest("cannot open " + fileName);
    QXmlStreamReader xml(&file);
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        // Texts of another class would need keys with a context.
        if (xml.name() == QLatin1String("context")) {
            xml.readNextStartElement();
            const QString context = xml.readElementText();
            if (context != QLatin1String("ShopWindow"))
                stopTest("texts of " + context);
        }
        if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            const bool isFinished = !xml.attributes().hasAttribute("type");
            const QString text = xml.readElementText();
            result[source] = isFinished ? text : QString();
        }
    }
    if (xml.hasError())
        stopTest(fileName + ": " + xml.errorString());
    return result;
}

void TestTranslations::everyTextIsThere_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << "en";
    QTest::newRow("Russian") << "ru";
}

void TestTranslations::everyTextIsThere()
{
    QFETCH(QString, language);
    const QTemporaryDir folder;
    const QString copy = folder.filePath("copy.ts");
    QVERIFY(QFile::copy(fileOf(language), copy));
    QStringList arguments{"-silent", "-locations", "none"};
    for (const char *source : {"app", "base", "lists", "stores", "gps", "tracking", "map",
                               "network", "widgets", "platform"})
        arguments << QStringLiteral(TROLLEO_SOURCES "/") + source;
    QProcess lupdate;
    lupdate.start(LUPDATE, arguments << "-ts" << copy);
    QVERIFY(lupdate.waitForFinished());
    QCOMPARE(lupdate.exitCode(), 0);
    // A new text would be unfinished there, and a removed one obsolete.
    const Texts here = read(fileOf(language));
    const Texts there = read(copy);
    QVERIFY(there.size() > 200);
    QCOMPARE(there, here);
}

void TestTranslations::everyTextIsFinished()
{
    QFETCH(QString, language);
    const Texts texts = read(fileOf(language));
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        QVERIFY2(!text.value().isEmpty(), qPrintable(text.key()));
}

void TestTranslations::placeholdersAndTagsMatch()
{
    QFETCH(QString, language);
    static const QRegularExpression special("%\\d+|<[^>]*>|\\*\\.\\w+");
    const auto specials = [](const QString &text) {
        QStringList result;
        for (auto match = special.globalMatch(text); match.hasNext();)
            result << match.next().captured();
        result.sort();
        return result;
    };
    const Texts texts = read(fileOf(language));
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        QCOMPARE(specials(text.value()), specials(text.key()));
        // A trailing space separates a caption from a value, so the translation needs it as well.
        QCOMPARE(text.value().endsWith(' '), text.key().endsWith(' '));
    }
}

void TestTranslations::russianIsRussian()
{
    const Texts texts = read(fileOf("ru"));
    static const QRegularExpression cyrillic("[а-яА-ЯёЁ]");
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        QCOMPARE(text.key() == text.value(), sameInRussian.contains(text.key()));
        if (!sameInRussian.contains(text.key()))
            QVERIFY2(text.value().contains(cyrillic), qPrintable(text.value()));
    }
}

void TestTranslations::englishIsAsItIsInTheSources()
{
    const Texts texts = read(fileOf("en"));
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        QCOMPARE(text.value(), text.key());
}

STOPPABLE_TEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
