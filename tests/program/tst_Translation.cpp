// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DesktopRun.h"
#include "ScreenReader.h"

#include "TestRegistry.h"
#include "Timeouts.h"

#include <QTest>

//! The started program in the user's language, with the catalogue of the build folder.
class tst_Translation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowIsTranslated_data();
    void windowIsTranslated();
};

void tst_Translation::windowIsTranslated_data()
{
    QTest::addColumn<QByteArray>("languages");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("button");
    const QStringList bar;
    const QStringList voiceTest {QStringLiteral("--voice-test")};
    QTest::newRow("bar, German") << QByteArray("de") << bar << QStringLiteral("Einstellungen");
    QTest::newRow("bar, no catalogue") << QByteArray("tlh") << bar << QStringLiteral("Settings");
    QTest::newRow("voice test, German") << QByteArray("de") << voiceTest << QStringLiteral("Modell neu laden");
}

void tst_Translation::windowIsTranslated()
{
    QFETCH(QByteArray, languages);
    QFETCH(QStringList, arguments);
    QFETCH(QString, button);
    const ScreenReader reader(ScreenReader::Events::None);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LANGUAGE"), QString::fromLatin1(languages));
    DesktopRun run(arguments, environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(reader.shown(QStringLiteral("push button")).contains(button), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
}

REGISTER_TEST(tst_Translation, QCoreApplication)

#include "tst_Translation.moc"
