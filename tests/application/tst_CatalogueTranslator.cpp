// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "CatalogueTranslator.h"
#include "I18nHelper.h"

#include "TestRegistry.h"

#include <KLocalizedString>

#include <QDir>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QByteArray s_header = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n\n";

} // namespace

//! Texts of Qt's own functions and of QML's "i18n", with a catalogue that is compiled here.
class tst_CatalogueTranslator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void translates_data();
    void translates();
    void qmlTextIsTranslated();
    void direction_data();
    void direction();

private:
    bool compile(const QString &language, const QByteArray &entries) const;

    const QTemporaryDir m_locale;
    CatalogueTranslator m_translator;
};

//! Writes a catalogue. @return whether it worked
bool tst_CatalogueTranslator::compile(const QString &language, const QByteArray &entries) const
{
    const QString folder = m_locale.filePath(language + QStringLiteral("/LC_MESSAGES"));
    QProcess msgfmt;
    msgfmt.start(QStringLiteral("msgfmt"),
                 {QStringLiteral("-"), QStringLiteral("-o"), folder + QStringLiteral("/loomra-kde.mo")});
    msgfmt.write(s_header + entries);
    msgfmt.closeWriteChannel();
    return QDir().mkpath(folder) && msgfmt.waitForFinished() && msgfmt.exitCode() == 0;
}

void tst_CatalogueTranslator::initTestCase()
{
    QVERIFY(compile(QStringLiteral("de"),
                    "msgid \"Revert\"\nmsgstr \"Rückgängig machen\"\n\n"
                    "msgid \"Last run: %1\"\nmsgstr \"%1 war die letzte Ausführung\"\n\n"
                    "msgid \"%1 of %2\"\nmsgstr \"von %2 nur %1\"\n"));
    QVERIFY(compile(QStringLiteral("ar"), "msgid \"Revert\"\nmsgstr \"تراجع\"\n"));
    KLocalizedString::setApplicationDomain("loomra-kde");
    KLocalizedString::addDomainLocaleDir("loomra-kde", m_locale.path());
    KLocalizedString::setLanguages({QStringLiteral("de")});
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
}

void tst_CatalogueTranslator::cleanupTestCase()
{
    QCoreApplication::removeTranslator(&m_translator);
}

void tst_CatalogueTranslator::translates_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("translation");
    QTest::newRow("text") << QByteArray("Revert") << QStringLiteral("Rückgängig machen");
    QTest::newRow("not in the catalogue") << QByteArray("Other") << QStringLiteral("Other");
    QTest::newRow("empty") << QByteArray("") << QString();
    QTest::newRow("placeholder") << QByteArray("Last run: %1") << QStringLiteral("%1 war die letzte Ausführung");
    QTest::newRow("another order") << QByteArray("%1 of %2") << QStringLiteral("von %2 nur %1");
    QTest::newRow("placeholder, not in the catalogue") << QByteArray("%2 and %1") << QStringLiteral("%2 and %1");
    QTest::newRow("gap") << QByteArray("%1 of %3") << QStringLiteral("%1 of %3");
}

void tst_CatalogueTranslator::translates()
{
    QFETCH(QByteArray, source);
    QTEST(QCoreApplication::translate("AnyContext", source.constData()), "translation");
    QTEST(QCoreApplication::translate("AnyContext", source.constData(), "comment", 2), "translation");
}

void tst_CatalogueTranslator::qmlTextIsTranslated()
{
    QCOMPARE(I18nHelper().tr(QStringLiteral("Revert")), QStringLiteral("Rückgängig machen"));
}

void tst_CatalogueTranslator::direction_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    const auto row = [](const QStringList &languages, Qt::LayoutDirection direction) {
        QTest::newRow(qPrintable(languages.join(QLatin1Char(',')))) << languages << direction;
    };
    row({QStringLiteral("de")}, Qt::LeftToRight);
    row({QStringLiteral("ar")}, Qt::RightToLeft);
    row({QStringLiteral("de"), QStringLiteral("ar")}, Qt::LeftToRight);
    // Not translated into the first language.
    row({QStringLiteral("he"), QStringLiteral("de")}, Qt::LeftToRight);
    row({QStringLiteral("fr"), QStringLiteral("ar")}, Qt::RightToLeft);
    row({QStringLiteral("he")}, Qt::LeftToRight);
}

//! Windows are mirrored only in a language that is written from right to left and that the texts are translated into.
void tst_CatalogueTranslator::direction()
{
    QFETCH(QStringList, languages);
    KLocalizedString::setLanguages(languages);
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(qApp, &change);
    QTEST(QGuiApplication::layoutDirection(), "direction");
}

REGISTER_TEST(tst_CatalogueTranslator, QGuiApplication)

#include "tst_CatalogueTranslator.moc"
