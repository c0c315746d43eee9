// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Motion.h"

#include "TestRegistry.h"

#include <KConfig>
#include <KConfigGroup>

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

//! Stores the animation speed like the desktop's settings do, which notify running programs. Null removes it.
void setFactor(const QString &factor)
{
    // A new object, as in another program: one that has the value already wouldn't notify.
    KConfig config(QStringLiteral("kdeglobals"), KConfig::SimpleConfig);
    KConfigGroup group(&config, "KDE");
    if (factor.isNull()) {
        group.deleteEntry("AnimationDurationFactor", KConfig::Notify);
    } else {
        group.writeEntry("AnimationDurationFactor", factor, KConfig::Notify);
    }
    config.sync();
}

} // namespace

//! The animation speed of the desktop, and the controls that follow it.
class tst_Motion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void factor_data();
    void factor();
    void followsTheSetting();
    void otherSettingsChangeNothing();
    void buttonFollowsTheSetting();
    void switchMoves_data();
    void switchMoves();

private:
    std::unique_ptr<QObject> create(const QByteArray &element);

    QQmlEngine m_engine;
};

void tst_Motion::initTestCase()
{
    m_engine.addImportPath(QStringLiteral("qrc:/"));
    Motion::registerSingleton();
}

void tst_Motion::cleanup()
{
    // Wait for the notification, which belongs to this test.
    Motion motion;
    setFactor(QString());
    QTRY_COMPARE(motion.durationFactor(), 1.0);
}

//! An object of the window's controls.
std::unique_ptr<QObject> tst_Motion::create(const QByteArray &element)
{
    QQmlComponent component(&m_engine);
    component.setData("import QtQuick 2.15\nimport org.kde.loomra 1.0\n"
                      "import org.kde.loomra.components.controls 1.0\n"
                          + element,
                      QUrl(QStringLiteral("qrc:/org/kde/loomra/test.qml")));
    std::unique_ptr<QObject> object(component.create());
    if (!object) {
        QTest::qFail(qPrintable(component.errorString()), __FILE__, __LINE__);
    }
    return object;
}

void tst_Motion::factor_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<double>("factor");
    const auto row = [](const char *setting, double factor) {
        QTest::newRow(setting) << QString::fromLatin1(setting) << factor;
    };
    QTest::newRow("not set") << QString() << 1.0;
    row("0", 0);
    row("0.0", 0);
    row("0.5", 0.5);
    row("1", 1);
    row("2", 2);
    row("20", 20);
    row("20.1", 1);
    row("1e300", 1);
    row("inf", 1);
    row("nan", 1);
    row("-1", 1);
    row("", 1);
    row("fast", 1);
    row("1,5", 1);
}

void tst_Motion::factor()
{
    QFETCH(QString, setting);
    setFactor(setting);
    QTEST(Motion().durationFactor(), "factor");
}

void tst_Motion::followsTheSetting()
{
    Motion motion;
    const QSignalSpy changes(&motion, &Motion::durationFactorChanged);
    setFactor(QStringLiteral("0"));
    QTRY_COMPARE(motion.durationFactor(), 0.0);
    QCOMPARE(changes.count(), 1);
    setFactor(QStringLiteral("2"));
    QTRY_COMPARE(motion.durationFactor(), 2.0);
    QCOMPARE(changes.count(), 2);
}

void tst_Motion::otherSettingsChangeNothing()
{
    Motion motion;
    const QSignalSpy changes(&motion, &Motion::durationFactorChanged);
    KConfig config(QStringLiteral("kdeglobals"), KConfig::SimpleConfig);
    KConfigGroup(&config, "KDE").writeEntry("SingleClick", true, KConfig::Notify);
    KConfigGroup(&config, "Other").writeEntry("AnimationDurationFactor", 3, KConfig::Notify);
    config.sync();
    setFactor(QStringLiteral("2")); // notified afterwards
    QTRY_COMPARE(motion.durationFactor(), 2.0);
    QCOMPARE(changes.count(), 1);
}

void tst_Motion::buttonFollowsTheSetting()
{
    const auto button = create("RoundButton { label: \"Close\" }");
    const auto fixedButton = create("RoundButton { label: \"Settings\"; hoverDuration: 120 }");
    QVERIFY(button && fixedButton);
    QCOMPARE(button->property("hoverDuration"), 120);
    setFactor(QStringLiteral("2"));
    QTRY_COMPARE(button->property("hoverDuration"), 240);
    setFactor(QStringLiteral("0"));
    QTRY_COMPARE(button->property("hoverDuration"), 0);
    QCOMPARE(fixedButton->property("hoverDuration"), 120);
}

void tst_Motion::switchMoves_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<bool>("isAtOnce");
    QTest::newRow("no animations") << QStringLiteral("0") << true;
    QTest::newRow("slow") << QStringLiteral("2") << false;
}

void tst_Motion::switchMoves()
{
    QFETCH(QString, setting);
    Motion motion;
    setFactor(setting);
    QTRY_COMPARE(motion.durationFactor(), setting.toDouble());
    const auto object = create(R"(PlainSwitch {
        readonly property real knobX: indicator.children[0].x
        width: 100
        label: "Switch"
        textColor: "black"
        onColor: "green"
        offColor: "gray"
        borderColor: "black"
        ringColor: "blue"
    })");
    QVERIFY(object);
    const double before = object->property("knobX").toDouble();
    QVERIFY(QMetaObject::invokeMethod(object.get(), "toggle"));
    QTEST(object->property("knobX").toDouble() == before + 16, "isAtOnce");
    QTRY_COMPARE(object->property("knobX").toDouble(), before + 16);
}

REGISTER_TEST(tst_Motion, QGuiApplication)

#include "tst_Motion.moc"
