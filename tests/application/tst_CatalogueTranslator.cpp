// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "CatalogueTranslator.h"
#include "I18nHelper.h"

#include "TestRegistry.h"

#include <KLocalizedString>

#include <QDir>
#include <QGuiApplication>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace
{

const QByteArray s_header = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
const QByteArray s_twoForms = "\"Plural-Forms: nplurals=2; plural=(n != 1);\\n\"\n";
const QByteArray s_polishForms =
    "\"Plural-Forms: nplurals=3; plural=(n==1 ? 0 : n%10>=2 && n%10<=4 && (n%100<10 || n%100>=20) ? 1 : 2);\\n\"\n";

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
    void plural_data();
    void plural();
    void pluralsOfOthers();
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
                    s_twoForms
                        + "\nmsgid \"Revert\"\nmsgstr \"Rückgängig machen\"\n\n"
                          "msgid \"Last run: %1\"\nmsgstr \"%1 war die letzte Ausführung\"\n\n"
                          "msgid \"%1 of %2\"\nmsgstr \"von %2 nur %1\"\n\n"
                          "msgid \"{count} row\"\nmsgid_plural \"{count} rows\"\n"
                          "msgstr[0] \"{count} row\"\nmsgstr[1] \"{count} Zeilen\"\n"));
    QVERIFY(compile(QStringLiteral("pl"),
                    s_polishForms
                        + "\nmsgid \"{count} row\"\nmsgid_plural \"{count} rows\"\nmsgstr[0] \"{count} wiersz\"\n"
                          "msgstr[1] \"{count} wiersze\"\nmsgstr[2] \"{count} wierszy\"\n"));
    QVERIFY(compile(QStringLiteral("ar"), "\nmsgid \"Revert\"\nmsgstr \"تراجع\"\n"));
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

void tst_CatalogueTranslator::plural_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("translation");
    const auto row = [](const char *language, const char *call, const char *translation) {
        QTest::newRow(qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(language), QLatin1String(call))))
            << QString::fromLatin1(language) << QString::fromLatin1(call) << QString::fromLatin1(translation);
    };
    // A translation may be the same as an English form.
    row("de", "trn('{count} row', '{count} rows', 1)", "{count} row");
    row("de", "trn('{count} row', '{count} rows', 2)", "{count} Zeilen");
    row("de", "trn('{count} row', '{count} rows', 0)", "{count} Zeilen");
    row("pl", "trn('{count} row', '{count} rows', 1)", "{count} wiersz");
    row("pl", "trn('{count} row', '{count} rows', 3)", "{count} wiersze");
    row("pl", "trn('{count} row', '{count} rows', 5)", "{count} wierszy");
    row("pl", "trn('{count} row', '{count} rows', 22)", "{count} wiersze");
    // Counts of the bridge may be anything.
    row("pl", "trn('{count} row', '{count} rows', 2.9)", "{count} wiersze");
    row("de", "trn('{count} row', '{count} rows', -1)", "{count} Zeilen");
    row("de", "trn('{count} row', '{count} rows', 4294967297)", "{count} Zeilen");
    row("de", "trn('{count} row', '{count} rows', 1e300)", "{count} Zeilen");
    row("de", "trn('{count} row', '{count} rows', NaN)", "{count} Zeilen");
    // Not in the catalogue.
    row("de", "trn('{count} word', '{count} words', 1)", "{count} word");
    row("de", "trn('{count} word', '{count} words', 2)", "{count} words");
    row("de", "trn('{count} more rows', '{count} more rows', 1)", "{count} more rows");
    row("en_US", "trn('{count} row', '{count} rows', 1)", "{count} row");
    row("en_US", "trn('{count} row', '{count} rows', 0)", "{count} rows");
}

//! The function of our scripts, in an engine.
void tst_CatalogueTranslator::plural()
{
    QFETCH(QString, language);
    QFETCH(QString, call);
    KLocalizedString::setLanguages({language});
    const auto reset = qScopeGuard([] { KLocalizedString::setLanguages({QStringLiteral("de")}); });
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/"));
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nimport org.kde.loomra.components.controls 1.0\n"
                      "QtObject { property string result: Translation."
                          + call.toUtf8() + " }",
                      QUrl(QStringLiteral("qrc:/org/kde/loomra/test.qml")));
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QTEST(object->property("result").toString(), "translation");
}

//! Qt's own texts have comments, and their plurals aren't ours.
void tst_CatalogueTranslator::pluralsOfOthers()
{
    QCOMPARE(QCoreApplication::translate("QFileDialog", "%n rows", "a comment", 1), QStringLiteral("1 rows"));
    QCOMPARE(QCoreApplication::translate("QFileDialog", "{count} rows", "{count} row", 2),
             QStringLiteral("{count} rows"));
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
