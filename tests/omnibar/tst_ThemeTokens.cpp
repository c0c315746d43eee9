// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MessageLog.h"
#include "TestRegistry.h"

#include <QColor>
#include <QGuiApplication>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

struct Rgba
{
    double red;
    double green;
    double blue;
    double alpha;
};

struct Token
{
    const char *name;
    Rgba dark;
    Rgba light;
    Rgba darkOpaque;
    Rgba lightOpaque;
};

// clang-format off
const Token s_tokens[] = {
    {"uiPanelBase", {0.08, 0.09, 0.11, 0.90}, {0.94, 0.95, 0.97, 0.96}, {0.10, 0.11, 0.14, 1.0}, {0.96, 0.97, 0.99, 1.0}},
    {"uiPanelBorder", {1, 1, 1, 0.13}, {0, 0, 0, 0.14}, {1, 1, 1, 0.13}, {0, 0, 0, 0.14}},
    {"uiPanelGradTop", {1, 1, 1, 0.06}, {1, 1, 1, 0.65}, {0, 0, 0, 0}, {0, 0, 0, 0}},
    {"uiPanelGradBot", {0, 0, 0, 0.10}, {0, 0, 0, 0.05}, {0, 0, 0, 0}, {0, 0, 0, 0}},
    {"uiBarTint0", {0.20, 0.10, 0.22, 0.45}, {0.92, 0.88, 0.98, 0.42}, {0, 0, 0, 0}, {0, 0, 0, 0}},
    {"uiBarTint1", {0.18, 0.08, 0.20, 0.30}, {0.90, 0.88, 0.96, 0.32}, {0, 0, 0, 0}, {0, 0, 0, 0}},
    {"uiBarTint2", {0.10, 0.10, 0.18, 0.45}, {0.86, 0.90, 0.98, 0.38}, {0, 0, 0, 0}, {0, 0, 0, 0}},
    {"uiBarTopLine", {1, 1, 1, 0.08}, {0, 0, 0, 0.07}, {1, 1, 1, 0.08}, {0, 0, 0, 0.07}},
    {"uiWelcomeBg", {1, 1, 1, 0.30}, {1, 1, 1, 0.72}, {0.12, 0.13, 0.16, 1}, {0.98, 0.99, 1, 1}},
    {"uiWelcomeBorder", {1, 1, 1, 0.08}, {0, 0, 0, 0.08}, {1, 1, 1, 0.08}, {0, 0, 0, 0.08}},
    {"uiMsgAreaBg", {1, 1, 1, 0.03}, {0, 0, 0, 0.04}, {1, 1, 1, 0.06}, {0, 0, 0, 0.06}},
    {"uiMsgAreaBorder", {1, 1, 1, 0.06}, {0, 0, 0, 0.08}, {1, 1, 1, 0.06}, {0, 0, 0, 0.08}},
    {"uiScrollTrack", {1, 1, 1, 0.05}, {0, 0, 0, 0.06}, {1, 1, 1, 0.05}, {0, 0, 0, 0.06}},
    {"uiScrollThumb", {1, 1, 1, 0.3}, {0, 0, 0, 0.28}, {1, 1, 1, 0.3}, {0, 0, 0, 0.28}},
    {"uiAsstBubble", {1, 1, 1, 0.07}, {0, 0, 0, 0.06}, {1, 1, 1, 0.07}, {0, 0, 0, 0.06}},
    {"uiAsstBubbleBorder", {1, 1, 1, 0.08}, {0, 0, 0, 0.10}, {1, 1, 1, 0.08}, {0, 0, 0, 0.10}},
    {"uiTextStrong", {1, 1, 1, 0.9}, {0.06, 0.07, 0.10, 0.95}, {1, 1, 1, 0.9}, {0.06, 0.07, 0.10, 0.95}},
    {"uiTextMed", {1, 1, 1, 0.78}, {0.16, 0.18, 0.24, 0.96}, {1, 1, 1, 0.78}, {0.16, 0.18, 0.24, 0.96}},
    {"uiTextSoft", {1, 1, 1, 0.62}, {0.28, 0.30, 0.36, 0.96}, {1, 1, 1, 0.62}, {0.28, 0.30, 0.36, 0.96}},
    {"uiTextFaint", {1, 1, 1, 0.50}, {0.38, 0.40, 0.46, 0.94}, {1, 1, 1, 0.50}, {0.38, 0.40, 0.46, 0.94}},
    {"uiTextCaption", {1, 1, 1, 0.58}, {0.30, 0.32, 0.38, 0.95}, {1, 1, 1, 0.58}, {0.30, 0.32, 0.38, 0.95}},
    {"uiSettingsDivider", {1, 1, 1, 0.12}, {0, 0, 0, 0.10}, {1, 1, 1, 0.12}, {0, 0, 0, 0.10}},
    {"uiAccentBorder", {0.55, 0.28, 0.92, 0.85}, {0.55, 0.28, 0.92, 0.85}, {0.55, 0.28, 0.92, 0.85}, {0.55, 0.28, 0.92, 0.85}},
    {"uiAccentDim", {0.55, 0.28, 0.92, 0.28}, {0.55, 0.28, 0.92, 0.18}, {0.55, 0.28, 0.92, 0.28}, {0.55, 0.28, 0.92, 0.18}},
    {"uiSegDarkOn", {0.20, 0.22, 0.28, 0.98}, {0.12, 0.13, 0.16, 1}, {0.20, 0.22, 0.28, 0.98}, {0.12, 0.13, 0.16, 1}},
    {"uiSegLightOn", {0.90, 0.91, 0.95, 0.98}, {0.99, 0.99, 1, 1}, {0.90, 0.91, 0.95, 0.98}, {0.99, 0.99, 1, 1}},
    {"uiSegTextOnDark", {0.96, 0.97, 0.99, 0.98}, {0.96, 0.97, 0.99, 0.98}, {0.96, 0.97, 0.99, 0.98}, {0.96, 0.97, 0.99, 0.98}},
    {"uiSegTextOnLight", {0.08, 0.09, 0.12, 0.95}, {0.08, 0.09, 0.12, 0.95}, {0.08, 0.09, 0.12, 0.95}, {0.08, 0.09, 0.12, 0.95}},
    {"uiInputText", {1, 1, 1, 0.92}, {0.06, 0.07, 0.10, 0.95}, {1, 1, 1, 0.92}, {0.06, 0.07, 0.10, 0.95}},
    {"uiPlaceholder", {1, 1, 1, 0.45}, {0.35, 0.37, 0.42, 0.75}, {1, 1, 1, 0.45}, {0.35, 0.37, 0.42, 0.75}},
    {"uiIconMuted", {1, 1, 1, 0.80}, {0.2, 0.22, 0.28, 0.88}, {1, 1, 1, 0.80}, {0.2, 0.22, 0.28, 0.88}},
    {"uiWellFill", {1, 1, 1, 0.08}, {0, 0, 0, 0.06}, {1, 1, 1, 0.08}, {0, 0, 0, 0.06}},
    {"uiWellBorder", {1, 1, 1, 0.07}, {0, 0, 0, 0.10}, {1, 1, 1, 0.07}, {0, 0, 0, 0.10}},
    {"uiWellFillHi", {1, 1, 1, 0.12}, {0, 0, 0, 0.10}, {1, 1, 1, 0.12}, {0, 0, 0, 0.10}},
    {"uiTopBadgeBg", {0.10, 0.11, 0.14, 0.90}, {0.96, 0.97, 0.99, 0.94}, {0.10, 0.11, 0.14, 0.90}, {0.96, 0.97, 0.99, 0.94}},
    {"uiCompactGrad0", {0.16, 0.16, 0.18, 0.80}, {0.90, 0.90, 0.93, 0.80}, {0.14, 0.14, 0.17, 1}, {0.94, 0.94, 0.97, 1}},
    {"uiCompactGrad1", {0.12, 0.12, 0.14, 0.80}, {0.88, 0.88, 0.92, 0.80}, {0.11, 0.11, 0.14, 1}, {0.92, 0.92, 0.96, 1}},
    {"uiConnDotBorder", {0.1, 0.1, 0.18, 1}, {0.85, 0.87, 0.92, 1}, {0.1, 0.1, 0.18, 1}, {0.85, 0.87, 0.92, 1}},
    {"uiMsgUserText", {1, 1, 1, 0.90}, {0.06, 0.07, 0.10, 0.95}, {1, 1, 1, 0.90}, {0.06, 0.07, 0.10, 0.95}},
    {"uiHintLine", {1, 1, 1, 0.52}, {0.35, 0.37, 0.42, 0.65}, {1, 1, 1, 0.52}, {0.35, 0.37, 0.42, 0.65}},
    {"uiPlanCardBg", {0.15, 0.35, 0.55, 0.25}, {0.82, 0.90, 0.98, 0.55}, {0.15, 0.35, 0.55, 0.25}, {0.82, 0.90, 0.98, 0.55}},
    {"uiPlanCardBorder", {0.60, 0.20, 0.98, 0.35}, {0.50, 0.30, 0.85, 0.40}, {0.60, 0.20, 0.98, 0.35}, {0.50, 0.30, 0.85, 0.40}},
    {"uiSuccessBarBg", {0.2, 0.5, 0.3, 0.3}, {0.75, 0.92, 0.82, 0.55}, {0.2, 0.5, 0.3, 0.3}, {0.75, 0.92, 0.82, 0.55}},
    {"uiSuccessBarBorder", {0.4, 0.8, 0.5, 0.4}, {0.2, 0.65, 0.45, 0.45}, {0.4, 0.8, 0.5, 0.4}, {0.2, 0.65, 0.45, 0.45}},
    {"uiUndoBarBg", {1, 1, 1, 0.06}, {0, 0, 0, 0.05}, {1, 1, 1, 0.06}, {0, 0, 0, 0.05}},
    {"uiUndoBarBorder", {1, 1, 1, 0.1}, {0, 0, 0, 0.10}, {1, 1, 1, 0.1}, {0, 0, 0, 0.10}},
};
// clang-format on

struct Pair
{
    const char *name;
    const char *dark;
    const char *light;
};

//! Colours that don't depend on translucency.
const Pair s_pairs[] = {
    {"panelFrameStart", "#6e35b1", "#b17fe6"}, {"panelFrameMiddle", "#d14b75", "#e07da0"},
    {"panelFrameEnd", "#e8782a", "#f0a060"},   {"panelFillTop", "#1a1124", "#f8f5fc"},
    {"panelFillBottom", "#0d0812", "#f0edf6"}, {"progressFill", "#4ade80", "#16a34a"},
    {"accentText", "#d8b4fe", "#4c1d95"},      {"positiveFill", "#15803d", "#15803d"},
    {"positiveHover", "#166534", "#166534"},   {"positiveText", "#4ade80", "#15803d"},
    {"dangerText", "#ff8a80", "#8c1d18"},      {"warningText", "#ffd54f", "#7a4f00"},
    {"focusRing", "#c084fc", "#7c3aed"},
};

QColor colour(const Rgba &value)
{
    return QColor::fromRgbF(value.red, value.green, value.blue, value.alpha);
}

QColor colour(const QObject *theme, const char *name)
{
    return theme->property(name).value<QColor>();
}

QByteArray words(const QColor &colour)
{
    return QStringLiteral("%1, %2, %3, %4")
        .arg(QString::number(colour.redF()), QString::number(colour.greenF()), QString::number(colour.blueF()),
             QString::number(colour.alphaF()))
        .toUtf8();
}

} // namespace

//! The colours against their table.
class tst_ThemeTokens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsDarkAndTranslucent();
    void tokens_data();
    void tokens();
    void tokensAreReadOnly();
    void fixedPairs();
    void shadow();
    void emphasis();
    void bubbles();
    void notifiesOfChanges();

private:
    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QObject> m_theme;
};

void tst_ThemeTokens::init()
{
    m_log = std::make_unique<MessageLog>();
    m_engine = std::make_unique<QQmlEngine>();
    QQmlComponent component(m_engine.get(),
                            QUrl(QStringLiteral("qrc:/org/kde/loomra/contents/ui/omnibar/OmniBarTheme.qml")));
    m_theme.reset(component.create());
    QVERIFY2(m_theme, qPrintable(component.errorString()));
}

void tst_ThemeTokens::cleanup()
{
    m_theme.reset();
    m_engine.reset();
    QCOMPARE(m_log->takeWarnings(), QStringList());
    m_log.reset();
}

void tst_ThemeTokens::startsDarkAndTranslucent()
{
    QCOMPARE(m_theme->property("uiLight"), QVariant(false));
    QCOMPARE(m_theme->property("translucentBackground"), QVariant(true));
}

void tst_ThemeTokens::tokens_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < int(std::size(s_tokens)); ++i) {
        QTest::newRow(s_tokens[i].name) << i;
    }
}

void tst_ThemeTokens::tokens()
{
    QFETCH(int, index);
    const Token &token = s_tokens[index];

    struct Look
    {
        bool light;
        bool translucent;
        Rgba expected;
    };
    // From one look to the next, so that each token has to follow its inputs.
    const Look looks[] = {
        {false, true, token.dark},        {true, true, token.light}, {true, false, token.lightOpaque},
        {false, false, token.darkOpaque}, {false, true, token.dark},
    };
    for (const Look &look : looks) {
        QVERIFY(m_theme->setProperty("uiLight", look.light));
        QVERIFY(m_theme->setProperty("translucentBackground", look.translucent));
        const QColor actual = colour(m_theme.get(), token.name);
        QVERIFY2(actual == colour(look.expected), words(actual).constData());
    }
}

void tst_ThemeTokens::tokensAreReadOnly()
{
    const QMetaObject *type = m_theme->metaObject();
    for (const Token &token : s_tokens) {
        const QMetaProperty property = type->property(type->indexOfProperty(token.name));
        QVERIFY2(property.isValid(), token.name);
        QVERIFY2(!property.isWritable(), token.name);
        QCOMPARE(property.userType(), qMetaTypeId<QColor>());
    }
    // The table has all tokens.
    for (int i = QObject::staticMetaObject.propertyCount(); i < type->propertyCount(); ++i) {
        const QMetaProperty property = type->property(i);
        const QByteArray name = property.name();
        if (property.userType() == qMetaTypeId<QColor>() && name.startsWith("ui")) {
            QVERIFY2(std::any_of(std::begin(s_tokens), std::end(s_tokens),
                                 [&](const Token &token) { return name == token.name; }),
                     name.constData());
        }
    }
}

void tst_ThemeTokens::fixedPairs()
{
    for (const bool translucent : {true, false}) {
        m_theme->setProperty("translucentBackground", translucent);
        for (const Pair &pair : s_pairs) {
            m_theme->setProperty("uiLight", false);
            QCOMPARE(colour(m_theme.get(), pair.name), QColor(QLatin1String(pair.dark)));
            m_theme->setProperty("uiLight", true);
            QCOMPARE(colour(m_theme.get(), pair.name), QColor(QLatin1String(pair.light)));
        }
    }
}

void tst_ThemeTokens::shadow()
{
    QCOMPARE(colour(m_theme.get(), "panelShadow"), colour({0, 0, 0, 0.45}));
    QCOMPARE(m_theme->property("panelShadowRadius").toInt(), 24);
    QCOMPARE(colour(m_theme.get(), "headerHover"), colour({1, 1, 1, 0.10}));
    m_theme->setProperty("uiLight", true);
    QCOMPARE(colour(m_theme.get(), "panelShadow"), colour({0, 0, 0, 0.18}));
    QCOMPARE(m_theme->property("panelShadowRadius").toInt(), 16);
    QCOMPARE(colour(m_theme.get(), "headerHover"), colour({0, 0, 0, 0.08}));
}

void tst_ThemeTokens::emphasis()
{
    for (const bool isLight : {false, true}) {
        m_theme->setProperty("uiLight", isLight);
        const auto pick = [isLight](const Rgba &dark, const Rgba &light) { return colour(isLight ? light : dark); };
        QCOMPARE(colour(m_theme.get(), "chosenRow"), pick({0.60, 0.20, 0.98, 0.38}, {0.60, 0.20, 0.98, 0.22}));
        QCOMPARE(colour(m_theme.get(), "runOutline"), pick({0, 0, 0, 0}, {0.35, 0.05, 0.65, 0.75}));
        QCOMPARE(colour(m_theme.get(), "dangerFill"), colour({0.90, 0.22, 0.21, 0.18}));
        QCOMPARE(colour(m_theme.get(), "dangerHover"), colour({0.90, 0.22, 0.21, 0.35}));
    }
}

void tst_ThemeTokens::bubbles()
{
    struct Bubble
    {
        const char *role;
        Rgba fill;
        Rgba border;
        Rgba lightFill;
        Rgba lightBorder;
    };
    const Bubble expected[] = {
        {"user",
         {0.25, 0.18, 0.35, 0.40},
         {0.40, 0.25, 0.60, 0.30},
         {0.55, 0.28, 0.92, 0.12},
         {0.55, 0.28, 0.92, 0.20}},
        {"system",
         {0.40, 0.30, 0.10, 0.25},
         {0.60, 0.45, 0.15, 0.25},
         {0.60, 0.45, 0.10, 0.08},
         {0.65, 0.50, 0.15, 0.20}},
        {"assistant", {1, 1, 1, 0.03}, {1, 1, 1, 0.08}, {0, 0, 0, 0.04}, {0, 0, 0, 0.08}},
    };
    for (const Bubble &bubble : expected) {
        const auto part = [&](const char *name) {
            const QVariantMap all = m_theme->property("bubbles").toMap();
            return all.value(QLatin1String(bubble.role)).toMap().value(QLatin1String(name)).value<QColor>();
        };
        m_theme->setProperty("uiLight", false);
        QCOMPARE(part("fill"), colour(bubble.fill));
        QCOMPARE(part("border"), colour(bubble.border));
        m_theme->setProperty("uiLight", true);
        QCOMPARE(part("fill"), colour(bubble.lightFill));
        QCOMPARE(part("border"), colour(bubble.lightBorder));
    }
}

void tst_ThemeTokens::notifiesOfChanges()
{
    QSignalSpy strong(m_theme.get(), SIGNAL(uiTextStrongChanged()));
    QSignalSpy base(m_theme.get(), SIGNAL(uiPanelBaseChanged()));
    QVERIFY(strong.isValid());
    QVERIFY(base.isValid());
    m_theme->setProperty("translucentBackground", false);
    QCOMPARE(strong.size(), 0);
    QCOMPARE(base.size(), 1);
    m_theme->setProperty("uiLight", true);
    QCOMPARE(strong.size(), 1);
    QCOMPARE(base.size(), 2);
}

REGISTER_TEST(tst_ThemeTokens, QGuiApplication)

#include "tst_ThemeTokens.moc"
